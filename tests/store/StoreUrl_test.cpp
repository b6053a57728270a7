#include "StoreUrl.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "StoreError.h"

namespace {

using calljournal::defaultStoreUrl;
using calljournal::StoreError;
using calljournal::storeFile;

/// Sets or, without a value, unsets an environment variable until the end of the test.
class Variable {
public:
    Variable(const char* name, const std::optional<std::string>& value) : name_(name) {
        if (const char* before = std::getenv(name)) {
            before_ = before;
        }
        set(value);
    }
    ~Variable() { set(before_); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    void set(const std::optional<std::string>& value) {
        if (value) {
            setenv(name_, value->c_str(), 1);
        } else {
            unsetenv(name_);
        }
    }

    const char* name_;
    std::optional<std::string> before_;
};

std::string refusalOf(const std::string& url) {
    try {
        storeFile(url);
    } catch (const StoreError& error) {
        return error.what();
    }
    return {};
}

TEST(StoreUrl, NamesAFileWithOrWithoutItsScheme) {
    EXPECT_EQ(storeFile("sqlite3:///var/lib/journal.db"), "/var/lib/journal.db");
    EXPECT_EQ(storeFile("/var/lib/journal.db"), "/var/lib/journal.db");
}

TEST(StoreUrl, TakesARelativePathFromTheWorkingFolder) {
    const std::string here = std::filesystem::current_path().string();
    EXPECT_EQ(storeFile("sqlite3://journal.db"), here + "/journal.db");
    EXPECT_EQ(storeFile("data/journal.db"), here + "/data/journal.db");
}

TEST(StoreUrl, TakesEveryByteOfAPathAsItIs) {
    EXPECT_EQ(storeFile("sqlite3:///a b/%20?mode=ro#x\"'.db"), "/a b/%20?mode=ro#x\"'.db");
    EXPECT_EQ(storeFile("/a:b//c"), "/a:b//c");
}

TEST(StoreUrl, RefusesAnotherScheme) {
    EXPECT_EQ(refusalOf("postgresql://host/db"),
              "store postgresql://host/db: only SQLite files can be used; write sqlite3://PATH or a plain path");
}

TEST(StoreUrl, KnowsASchemeByItsLetters) {
    for (const std::string url : {"x://", "Z9://a", "a+b-c.d://a"}) {
        EXPECT_EQ(refusalOf(url),
                  "store " + url + ": only SQLite files can be used; write sqlite3://PATH or a plain path");
    }
    const std::string here = std::filesystem::current_path().string();
    for (const std::string path : {"://a", "a b://c", "[://a", "`://a", "{://a", "@://a", ":://a", "/a://b", ",://a"}) {
        EXPECT_EQ(refusalOf(path), "") << path;
    }
}

TEST(StoreUrl, RefusesAnEmptyPath) {
    EXPECT_EQ(refusalOf("sqlite3://"), "store sqlite3://: it names no file; write sqlite3://PATH or a plain path");
    EXPECT_EQ(refusalOf(""), "store : it names no file; write sqlite3://PATH or a plain path");
}

TEST(StoreUrl, RefusesAZeroByte) {
    EXPECT_EQ(refusalOf(std::string("/a\0b", 4)), "store /a: its path holds a zero byte; name another file");
}

TEST(StoreUrl, DefaultsToTheUsersDataFolder) {
    const Variable home("HOME", "/users/ann");
    const Variable data("XDG_DATA_HOME", "/data/ann");
    EXPECT_EQ(defaultStoreUrl(), "sqlite3:///data/ann/calljournal/journal.db");
}

TEST(StoreUrl, DefaultsBelowHomeWithoutAnAbsoluteDataFolder) {
    const Variable home("HOME", "/users/ann");
    {
        const Variable data("XDG_DATA_HOME", std::nullopt);
        EXPECT_EQ(defaultStoreUrl(), "sqlite3:///users/ann/.local/share/calljournal/journal.db");
    }
    const Variable data("XDG_DATA_HOME", "relative");
    EXPECT_EQ(defaultStoreUrl(), "sqlite3:///users/ann/.local/share/calljournal/journal.db");
}

TEST(StoreUrl, HasNoDefaultWithoutAHome) {
    const Variable home("HOME", std::nullopt);
    const Variable data("XDG_DATA_HOME", "");
    EXPECT_THROW(defaultStoreUrl(), StoreError);
}

}  // namespace
