#include "RunSql.h"

#include <sqlite3.h>
#include <stdexcept>

#include "CheckedFiles.h"

std::string runSql(const std::string& file, const std::string& sql) {
    sqlite3* database = nullptr;
    std::string values;
    const auto append = [](void* target, int columns, char** texts, char**) {
        for (int i = 0; i < columns; ++i) {
            *static_cast<std::string*>(target) += std::string(texts[i] != nullptr ? texts[i] : "NULL") + "\n";
        }
        return 0;
    };
    sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, calljournal::checkedFiles());
    const int result = sqlite3_exec(database, sql.c_str(), append, &values, nullptr);
    const std::string message = sqlite3_errmsg(database);
    sqlite3_close(database);
    if (result != SQLITE_OK) {
        throw std::runtime_error(sql + ": " + message);
    }
    return values;
}
