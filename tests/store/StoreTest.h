#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

#include "RunSql.h"
#include "Store.h"

/// The XML declaration that requests and replies begin with.
extern const std::string declaration;

/// `content` in the envelope of a request or a reply.
std::string envelope(const std::string& schema, const std::string& content);

std::string readRequest(const std::string& schema);
std::string writeRequest(const std::string& schema, const std::string& entries);
std::string deleteRequest(const std::string& schema, const std::string& entries);

/// The reply of a request in `schema` that was refused for `reason`, which is escaped already.
std::string failed(const std::string& schema, const std::string& reason);

/// A folder of its own for each test, removed at the end, and a store in it.
class StoreTest : public testing::Test {
protected:
    StoreTest();
    ~StoreTest() override;

    std::string folder() const { return folder_; }
    std::string file(const std::string& name = "journal.db") const { return folder_ + "/" + name; }

    /// Sends a request to the store in file(), opened on first use.
    std::string ask(const std::string& request);
    calljournal::Store& store();
    void closeStore() { store_.reset(); }

    /// The whole content of the store: the replies of all schemas, one a line.
    std::string everything();

private:
    std::string folder_;
    std::unique_ptr<calljournal::Store> store_;
};

/// Opens a store on `url` and returns what the error says; empty if there is none.
std::string openingError(const std::string& url);

std::string contentOf(const std::string& file);
void writeFile(const std::string& file, const std::string& content);

/// Becomes a user who may write only what everybody may; for a child process.
void becomeNobody();

/// Another process, which runs `work` and ends; the text that `work` passes to its argument can be read line by line.
class Child {
public:
    using Say = std::function<void(const std::string& line)>;

    explicit Child(const std::function<void(const Say&)>& work);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Waits for the next line; empty when the child says no more.
    std::string nextLine();
    std::vector<std::string> allLines();
    void kill();

    /// Waits for the end of the child; true if `work` returned.
    bool endedWell();

private:
    pid_t pid_;
    int output_ = -1;
    std::string unread_;
};
