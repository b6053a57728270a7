#include <iostream>
#include <random>
#include <string>

#include "Rounds.h"
#include "Store.h"
#include "StoreTest.h"
#include "TestKeys.h"

namespace {

const std::string dialled = "CallLogDialledCalls";
const std::string received = "CallLogReceivedCalls";

class StoreDamage : public StoreTest {
protected:
    StoreDamage() {
        std::string entries;
        for (int i = 0; i < 60; ++i) {
            entries += "<Entry><EntryId>" +
                       std::string(static_cast<std::size_t>(i * 17), static_cast<char>('a' + i % 26)) +
                       "</EntryId></Entry>";
        }
        ask(writeRequest(dialled, entries));
        ask(writeRequest(received, entries));
        ask(deleteRequest(received, "<Entry><UniqueId>70</UniqueId></Entry>"));
    }

    std::string damage(const std::string& what) const {
        return "store " + file() + ": it is damaged (" + what +
               "); move it away, with the files beside it, and put a copy in its place; salvageStore() reads what is "
               "whole of it";
    }

    /// Writes `content` as the store's file, opens it and asks for all entries: each reply must be `before`'s or say
    /// that it failed. Returns whether the damage was reported.
    bool isReported(const std::string& content, const std::string before[2]) {
        writeFile(file(), content);
        std::string error = openingError(file());
        if (error.empty()) {
            const std::string* expected = before;
            for (const std::string& schema : {dialled, received}) {
                const std::string reply = ask(readRequest(schema));
                if (reply.find("<Result>failed</Result><Reason>store ") != std::string::npos) {
                    error = reply;
                } else {
                    EXPECT_TRUE(reply == *expected);
                }
                ++expected;
            }
            closeStore();
        }
        EXPECT_TRUE(error.empty() || error.find(file() + ": ") != std::string::npos) << error;
        return !error.empty();
    }

    /// Has isReported() look at `count` files that `change` makes of the sound one.
    template <class Change>
    void expectNothingSilent(unsigned count, Change change) {
        const std::string before[] = {ask(readRequest(dialled)), ask(readRequest(received))};
        closeStore();
        const std::string sound = contentOf(file());
        unsigned reported = 0;
        for (unsigned round = 0; round < count && !HasFailure(); ++round) {
            SCOPED_TRACE("round " + std::to_string(round));
            std::string content = sound;
            change(content);
            reported += isReported(content, before) ? 1 : 0;
        }
        EXPECT_GT(reported, count / 3);
        std::cout << "files damaged: " << count << ", of them noticed: " << reported
                  << ", the rest without effect on any entry\n";
    }
};

TEST_F(StoreDamage, OfRandomBytesIsReportedOrWithoutEffect) {
    std::mt19937 random(20250101);
    SCOPED_TRACE("seed 20250101");
    expectNothingSilent(rounds(150), [&](std::string& content) {
        for (std::size_t count = 1 + random() % 20; count > 0; --count) {
            content[random() % content.size()] = static_cast<char>(random());
        }
    });
}

TEST_F(StoreDamage, OfOneBitIsReportedOrWithoutEffect) {
    std::mt19937 random(20250102);
    SCOPED_TRACE("seed 20250102");
    expectNothingSilent(rounds(150), [&](std::string& content) {
        char& byte = content[random() % content.size()];
        byte = static_cast<char>(byte ^ (1 << random() % 8));
    });
}

TEST_F(StoreDamage, OfAWholePageIsReportedOrWithoutEffect) {
    std::mt19937 random(20250103);
    SCOPED_TRACE("seed 20250103");
    const std::size_t page = 4096;
    expectNothingSilent(rounds(60), [&](std::string& content) {
        const std::size_t from = random() % (content.size() / page) * page;
        const std::size_t to = random() % (content.size() / page) * page;
        content.replace(to, page, random() % 2 == 0 ? std::string(page, '\0') : content.substr(from, page));
    });
}

TEST_F(StoreDamage, OfAFileCutAtAnyPlaceIsReported) {
    std::mt19937 random(20250104);
    SCOPED_TRACE("seed 20250104");
    expectNothingSilent(rounds(60), [&](std::string& content) { content.resize(1 + random() % (content.size() - 1)); });
}

/// What each way to find entries finds, a line each; empty if the store says that it is damaged.
std::string foundIn(const std::string& file) {
    try {
        const auto store = calljournal::openStore(file, testKeys);
        std::string text;
        for (const char* number : {"", "3", "17"}) {
            for (const char* name : {"", "na", "name 3"}) {
                calljournal::EntryQuery query;
                query.schemas = {dialled, received};
                query.numberKey = number;
                query.nameBegin = name;
                for (const auto& entry : store->find(query)) {
                    text += entry.text + " ";
                }
                text += '\n';
            }
        }
        return store->checkIndex().empty() ? text : std::string();
    } catch (const calljournal::StoreError&) {
        return {};
    }
}

TEST_F(StoreDamage, OfWhatEntriesAreFoundByIsReportedOrWithoutEffect) {
    closeStore();
    std::string entries;
    for (int i = 0; i < 60; ++i) {
        entries += "<Entry><Surname>name " + std::to_string(i) + "</Surname><Number>" + std::to_string(i % 20) +
                   "</Number><TimeDate>" + std::to_string(1000 + i * 7 % 60) + "</TimeDate></Entry>";
    }
    calljournal::openStore(file(), testKeys)->processRequest(writeRequest(dialled, entries));
    const std::string expected = foundIn(file());
    ASSERT_NE(expected.find("name 59"), std::string::npos);
    const std::string sound = contentOf(file());
    std::mt19937 random(20261122);
    SCOPED_TRACE("seed 20261122");
    unsigned reported = 0;
    for (unsigned round = 0; round < rounds(150); ++round) {
        std::string content = sound;
        char& byte = content[random() % content.size()];
        byte = static_cast<char>(byte ^ (1 << random() % 8));
        writeFile(file(), content);
        const std::string found = foundIn(file());
        reported += found.empty() ? 1U : 0U;
        ASSERT_TRUE(found.empty() || found == expected) << round;
    }
    EXPECT_GT(reported, rounds(150) / 5);
}

TEST_F(StoreDamage, OfItsListOfTablesIsNoEmptyStore) {
    closeStore();
    std::string content = contentOf(file());
    content[103] = content[104] = '\0';  // how many tables and indices there are
    writeFile(file(), content);
    EXPECT_EQ(openingError(file()), damage("a page of it is not as it was written"));
    EXPECT_TRUE(contentOf(file()) == content);
}

TEST_F(StoreDamage, OfItsSayingThatPagesHaveChecksumsIsReported) {
    closeStore();
    std::string content = contentOf(file());
    content[20] = '\0';  // how many bytes of each page are not SQLite's
    writeFile(file(), content);
    EXPECT_EQ(openingError(file()), damage("its pages have no checksums"));
}

}  // namespace
