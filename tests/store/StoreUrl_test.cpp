#include "StoreUrl.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "Store.h"

namespace {

using calljournal::defaultStoreUrl;
using calljournal::schemeOf;
using calljournal::StoreError;

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
        calljournal::openStore(url);
    } catch (const StoreError& error) {
        return error.what();
    }
    return {};
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
    for (const std::string path : {"://a", "a b://c", "[://a", "`://a", "{://a", "@://a", ":://a", "/a://b", ",://a"}) {
        EXPECT_EQ(schemeOf(path), "") << path;
    }
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
