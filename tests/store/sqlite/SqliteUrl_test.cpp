#include "SqliteUrl.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "StoreError.h"

namespace {

using calljournal::sqliteFile;
using calljournal::StoreError;

std::string refusalOf(const std::string& url) {
    try {
        sqliteFile(url);
    } catch (const StoreError& error) {
        return error.what();
    }
    return {};
}

TEST(SqliteUrl, NamesAFileWithOrWithoutItsScheme) {
    EXPECT_EQ(sqliteFile("sqlite3:///var/lib/journal.db"), "/var/lib/journal.db");
    EXPECT_EQ(sqliteFile("/var/lib/journal.db"), "/var/lib/journal.db");
}

TEST(SqliteUrl, TakesARelativePathFromTheWorkingFolder) {
    const std::string here = std::filesystem::current_path().string();
    EXPECT_EQ(sqliteFile("sqlite3://journal.db"), here + "/journal.db");
    EXPECT_EQ(sqliteFile("data/journal.db"), here + "/data/journal.db");
}

TEST(SqliteUrl, TakesEveryByteOfAPathAsItIs) {
    EXPECT_EQ(sqliteFile("sqlite3:///a b/%20?mode=ro#x\"'.db"), "/a b/%20?mode=ro#x\"'.db");
    EXPECT_EQ(sqliteFile("/a:b//c"), "/a:b//c");
}

TEST(SqliteUrl, RefusesAnEmptyPath) {
    EXPECT_EQ(refusalOf("sqlite3://"), "store sqlite3://: it names no file; write sqlite3://PATH or a plain path");
    EXPECT_EQ(refusalOf(""), "store : it names no file; write sqlite3://PATH or a plain path");
}

TEST(SqliteUrl, RefusesAZeroByte) {
    EXPECT_EQ(refusalOf(std::string("/a\0b", 4)), "store /a: its path holds a zero byte; name another file");
}

}  // namespace
