#include "SqliteConnection.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <soci/soci.h>
#include <soci/sqlite3/soci-sqlite3.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>

#include "CheckedFiles.h"
#include "Checksum.h"

namespace calljournal {

namespace {

using sqlite_api::sqlite3;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::microseconds shortestPause{100};
constexpr std::chrono::milliseconds retryPause{10};

/// Opens the SQLite URI that it gets as connect string. SOCI's own factory cannot: its connect strings have no way to
/// write every path, and no way to read a file whose folder is read-only.
class UriFactory : public soci::backend_factory {
public:
    soci::sqlite3_session_backend* make_session(const soci::connection_parameters& parameters) const override {
        const soci::backend_factory& factory = *soci::factory_sqlite3();
        std::unique_ptr<soci::sqlite3_session_backend> backend(static_cast<soci::sqlite3_session_backend*>(
            factory.make_session(soci::connection_parameters(factory, ":memory:"))));
        sqlite_api::sqlite3_close(backend->conn_);
        backend->conn_ = nullptr;
        const int code = sqlite_api::sqlite3_open_v2(parameters.get_connect_string().c_str(), &backend->conn_,
                                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI |
                                                         SQLITE_OPEN_EXRESCODE |
                                                         SQLITE_OPEN_NOMUTEX,  // one thread at a time uses a connection
                                                     checkedFiles());
        if (code != SQLITE_OK) {
            const int systemError = sqlite_api::sqlite3_system_errno(backend->conn_);
            throw std::system_error(systemError != 0 ? systemError : EIO, std::generic_category());
        }
        return backend.release();
    }
};

/// Writes `file`, an absolute path, as an SQLite URI with every byte that could mean something else escaped.
std::string uriOf(const std::string& file) {
    constexpr char digits[] = "0123456789abcdef";
    std::string uri = "file://";
    for (const char c : file) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isPlain = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '/' ||
                             c == '.' || c == '-' || c == '_';
        if (isPlain) {
            uri += c;
        } else {
            uri.append({'%', digits[byte / 16U], digits[byte % 16U]});
        }
    }
    return uri;
}

std::string folderOf(const std::string& file) {
    return std::filesystem::path(file).parent_path().string();
}

/// Returns the SQLite result code of `failure`, the extended one where there is one.
int codeOf(const soci::soci_error& failure) {
    const auto* sqliteFailure = dynamic_cast<const soci::sqlite3_soci_error*>(&failure);
    return sqliteFailure != nullptr ? sqliteFailure->result() : SQLITE_ERROR;
}

/// Returns the result code without the details that the extended code adds.
int primaryCode(const soci::soci_error& failure) {
    return codeOf(failure) & 0xff;
}

bool isBusy(const soci::soci_error& failure) {
    return primaryCode(failure) == SQLITE_BUSY || primaryCode(failure) == SQLITE_LOCKED;
}

std::string systemMessage(int systemError) {
    return std::generic_category().message(systemError);
}

/// Has the names in `folder` survive a power cut, as far as its file system can do that.
void synchroniseFolder(const std::string& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor);
        ::close(descriptor);
    }
}

/// Creates one folder, for the user alone, since calls are private. Returns errno; 0 also if it is there already.
int makeFolder(const std::string& folder) {
    if (::mkdir(folder.c_str(), S_IRWXU) != 0) {
        return errno == EEXIST ? 0 : errno;
    }
    synchroniseFolder(folderOf(folder));
    return 0;
}

/// Creates the folder and those above it. Returns errno.
int makeFolders(const std::string& folder) {
    const int result = makeFolder(folder);
    if (result != ENOENT || folderOf(folder) == folder) {
        return result;
    }
    const int resultAbove = makeFolders(folderOf(folder));
    return resultAbove != 0 ? resultAbove : makeFolder(folder);
}

/// Creates the file for the user alone if there is none, since calls are private. What SQLite puts beside it gets the
/// same permissions. Where that fails, SQLite will, too.
void createPrivateFile(const std::string& file) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor >= 0) {
        ::close(descriptor);
    }
}

}  // namespace

SqliteConnection::SqliteConnection(std::string file, std::string name, std::chrono::milliseconds timeout)
    : file_(std::move(file)), name_(std::move(name)), timeout_(timeout) {
    const int folderError = makeFolders(folderOf(file_));
    if (folderError != 0) {
        throw error("its folder cannot be created (" + systemMessage(folderError) + "); name another file");
    }
    refuseWhatIsNoStore();
    createPrivateFile(file_);
    try {
        openFile();
    } catch (const std::system_error& failure) {
        // Where SQLite may not create the file it tries to read it, and reports only that it is not there.
        const bool mayNotCreate = failure.code().value() == ENOENT && ::access(folderOf(file_).c_str(), W_OK) != 0;
        throw error("it cannot be opened (" + systemMessage(mayNotCreate ? errno : failure.code().value()) +
                    "); name another file or give access to this one");
    } catch (const soci::soci_error& failure) {
        throw error(failure);
    }
}

SqliteConnection::~SqliteConnection() = default;

void SqliteConnection::refuseWhatIsNoStore() const {
    std::error_code ignored;  // what cannot be looked at cannot be opened either, which says why
    const std::filesystem::file_status status = std::filesystem::status(file_, ignored);
    if (!std::filesystem::exists(status)) {
        return;
    }
    if (std::filesystem::is_directory(status)) {
        throw error("it is a directory; name a file in it");
    }
    // A pipe would be waited on, a device overwritten.
    if (!std::filesystem::is_regular_file(status)) {
        throw error("it is not a regular file; name another one");
    }
    // SQLite takes a file of one byte for an empty one and overwrites it; any other it looks at itself. The byte is not
    // read here: closing the file again would drop the locks of other connections of this process.
    if (std::filesystem::file_size(file_, ignored) == 1) {
        throw error("it is not a SQLite database; name another file or move this one away");
    }
}

void SqliteConnection::openFile() {
    connect(uriOf(file_));
    try {
        probe();
    } catch (const soci::soci_error&) {
        // SQLite reads a file with a write-ahead log only if it can put an index beside it. In a folder where nobody
        // can put anything, and with no log there, the file is complete and cannot change.
        const bool isFrozen = ::access(folderOf(file_).c_str(), W_OK) != 0 && ::access(file_.c_str(), R_OK) == 0 &&
                              ::access((file_ + "-wal").c_str(), F_OK) != 0;
        if (!isFrozen) {
            throw;
        }
        connect(uriOf(file_) + "?immutable=1");
        probe();
    }
}

void SqliteConnection::connect(const std::string& uri) {
    static const UriFactory factory;  // the session keeps its address
    // A session whose constructor opens it would leave the connection open where memory runs out after that.
    session_ = std::make_unique<soci::session>();
    session_->open(factory, uri);
    // A file that is still empty gets pages with room for a checksum, any other one when it is written anew.
    int reserved = static_cast<int>(pageChecksumSize);
    sqlite_api::sqlite3_file_control(handleOf(*session_), "main", SQLITE_FCNTL_RESERVE_BYTES, &reserved);
    sqlite_api::sqlite3_busy_handler(handleOf(*session_), &wait, this);
}

int SqliteConnection::wait(void* connection, int attempt) {
    auto& self = *static_cast<SqliteConnection*>(connection);
    if (attempt == 0) {
        self.waitBegin_ = Clock::now();
    }
    if (std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - self.waitBegin_) >= self.timeout_) {
        return 0;
    }
    // Most hold a lock for less than the millisecond that SQLite would wait at least.
    std::this_thread::sleep_for(std::min<Clock::duration>(shortestPause * (attempt + 1), retryPause));
    return 1;
}

/// Reads the file for the first time; that is when SQLite looks at what it is.
void SqliteConnection::probe() {
    int tables = 0;
    *session_ << "select count(*) from sqlite_master", soci::into(tables);
}

bool SqliteConnection::isReadOnly() const {
    return sqlite_api::sqlite3_db_readonly(handleOf(*session_), "main") == 1;
}

bool SqliteConnection::hasPageChecksums() const {
    int areThere = 0;
    sqlite_api::sqlite3_file_control(handleOf(*session_), "main", areChecksumsThere, &areThere);
    return areThere == 1;
}

void SqliteConnection::givePageChecksums() {
    sqlite3* handle = handleOf(*session_);
    int pageSize = 0;
    *session_ << "pragma page_size", soci::into(pageSize);
    sqlite_api::sqlite3_file_control(handle, "main", beginChecksums, &pageSize);
    int isDone = 0;
    try {
        execute("vacuum");
        isDone = 1;
    } catch (...) {
        sqlite_api::sqlite3_file_control(handle, "main", endChecksums, &isDone);
        throw;
    }
    sqlite_api::sqlite3_file_control(handle, "main", endChecksums, &isDone);
}

bool SqliteConnection::isInTransaction() const {
    return sqlite_api::sqlite3_get_autocommit(handleOf(*session_)) == 0;
}

void SqliteConnection::makeDurable() {
    const Clock::time_point deadline = Clock::now() + timeout_;
    std::string mode;
    for (;;) {
        try {
            *session_ << "pragma journal_mode = wal", soci::into(mode);
            break;
        } catch (const soci::soci_error& failure) {
            // SQLite does not wait here by itself: two processes that switch at once would wait for each other.
            if (!isBusy(failure) || Clock::now() >= deadline) {
                throw;
            }
        }
        std::this_thread::sleep_for(retryPause);
    }
    if (mode != "wal") {
        throw error("its file system cannot carry a write-ahead log; name a file on a local disk");
    }
    *session_ << "pragma synchronous = full";
    // In kB. Where a transaction changes more pages than there is room for, some are written again and again.
    *session_ << "pragma cache_size = -32000";
}

void SqliteConnection::rollback(const char* statements) noexcept {
    sqlite_api::sqlite3_exec(handleOf(*session_), statements, nullptr, nullptr, nullptr);
}

void SqliteConnection::execute(const char* statement) {
    statements_.try_emplace(statement, *session_, statement).first->second.run();
}

int SqliteConnection::dataVersion() {
    int version = 0;
    *session_ << "pragma data_version", soci::into(version);
    return version;
}

void SqliteConnection::refuseIfMoved() const {
    int hasMoved = 0;
    sqlite_api::sqlite3_file_control(handleOf(*session_), "main", SQLITE_FCNTL_HAS_MOVED, &hasMoved);
    if (hasMoved != 0) {
        throw error("it was moved, replaced or deleted while it was open; open it again");
    }
}

StoreError SqliteConnection::error(const std::string& problem) const {
    return StoreError("store " + name_ + ": " + problem);
}

StoreError SqliteConnection::error(const soci::soci_error& failure) const {
    switch (primaryCode(failure)) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return error("another process has kept it locked for " + std::to_string(timeout_.count()) +
                         " ms; try again when that one is done");
        case SQLITE_NOTADB:
            return error("it is not a SQLite database; name another file or move this one away");
        case SQLITE_CORRUPT:
            return damage({});
        case SQLITE_READONLY:
            return error(
                "it cannot be written; make writable the file, its folder and the files beside it that end in -wal and "
                "-shm");
        case SQLITE_FULL:
            return error("the disk is full; free some space and try again");
        case SQLITE_IOERR:
            if (codeOf(failure) == SQLITE_IOERR_DATA) {
                return damage("a page of it is not as it was written");
            }
            return error("the disk fails or refuses (SQLite error " + std::to_string(codeOf(failure)) +
                         "); look for a full disk, a quota, a limit on file sizes or a broken disk");
        case SQLITE_CANTOPEN:
            return error("it cannot be opened; give access to the file and its folder");
        case SQLITE_NOMEM:
            return error("there is not enough memory");
        case SQLITE_ERROR:
        case SQLITE_MISMATCH:
        case SQLITE_CONSTRAINT:
            // Not what a statement of this program does with the tables that it made.
            return damage(failure.get_error_message());
        default:
            return error(std::string("the database says \"") + sqlite_api::sqlite3_errstr(codeOf(failure)) + "\" (" +
                         failure.get_error_message() + "); please report this");
    }
}

StoreError SqliteConnection::damage(const std::string& what) const {
    return error("it is damaged" + (what.empty() ? what : " (" + what + ")") +
                 "; move it away, with the files beside it, and put a copy in its place; salvageStore() reads what is "
                 "whole of it");
}

Transaction::Transaction(SqliteConnection& connection, Scope scope) : connection_(connection), scope_(scope) {
    connection_.execute(scope_ == Scope::savepoint ? "savepoint request"
                        : scope_ == Scope::writing ? "begin immediate"
                                                   : "begin");
}

Transaction::~Transaction() {
    if (!isDone_) {
        connection_.rollback(scope_ == Scope::savepoint ? "rollback to savepoint request; release savepoint request"
                                                        : "rollback");
    }
}

void Transaction::commit() {
    connection_.execute(scope_ == Scope::savepoint ? "release savepoint request" : "commit");
    isDone_ = true;
}

}  // namespace calljournal
