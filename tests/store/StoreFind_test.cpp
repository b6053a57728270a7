#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "Store.h"
#include "StoreTest.h"
#include "TestKeys.h"

namespace {

using calljournal::EntryAction;
using calljournal::EntryKeys;
using calljournal::EntryQuery;
using calljournal::FoundEntry;

const std::string dialled = "CallLogDialledCalls";
const std::string missed = "CallLogMissedCalls";

std::string entry(const std::string& id, const std::string& time, const std::string& number = {},
                  const std::string& name = {}, const std::string& viewed = "True") {
    const auto element = [](const std::string& tag, const std::string& text) {
        return text.empty() ? std::string() : "<" + tag + ">" + text + "</" + tag + ">";
    };
    return "<Entry>" + element("UniqueId", id) + element("Surname", name) + element("Viewed", viewed) +
           element("Number", number) + element("TimeDate", time) + "</Entry>";
}

class StoreFind : public StoreTest {
protected:
    calljournal::Store& found() {
        if (!store_) {
            store_ = calljournal::openStore(file(), testKeys);
        }
        return *store_;
    }
    void write(const std::string& schema, const std::string& entries) {
        EXPECT_EQ(found().processRequest(writeRequest(schema, entries)).find("failed"), std::string::npos);
    }
    /// The ids of the entries that `query` finds, with a blank behind each.
    std::string ids(EntryQuery query) {
        if (query.schemas.empty()) {
            query.schemas = {dialled};
        }
        std::string ids;
        for (const FoundEntry& entry : found().find(query)) {
            ids += entry.id + " ";
        }
        return ids;
    }
    std::string changed(std::uint64_t& since) {
        const calljournal::StoreChanges changes = found().changes(since);
        since = changes.number;
        std::string text = changes.isWhole ? "" : "... ";
        for (const auto& change : changes.entries) {
            text += std::string(change.action == EntryAction::added     ? "+"
                                : change.action == EntryAction::removed ? "-"
                                : change.action == EntryAction::seen    ? "!"
                                                                        : "~") +
                    change.entry.id + " ";
        }
        return text;
    }
    void reopen() { store_.reset(); }

private:
    std::unique_ptr<calljournal::Store> store_;
};

TEST_F(StoreFind, GivesEntriesNewestFirst) {
    write(dialled, entry("a", "2024-01-02") + entry("b", "2024-01-03") + entry("c", "2024-01-01") + entry("d", ""));
    EXPECT_EQ(ids({}), "b a c d ");
    write(dialled, entry("c", "2024-01-04"));
    EXPECT_EQ(ids({}), "c b a d ");
}

TEST_F(StoreFind, GivesEntriesOfOneTimeTheLastInsertedFirst) {
    write(dialled, entry("a", "2024") + entry("b", "2024") + entry("c", "2024"));
    EXPECT_EQ(ids({}), "c b a ");
}

TEST_F(StoreFind, GivesTheTextOfAReply) {
    write(missed, "<Entry><UniqueId>a</UniqueId><Picture>p</Picture><Viewed>False</Viewed></Entry>");
    const std::vector<FoundEntry> entries = found().find({{missed}, "a", {}, {}, {}, {}, {}, {}, {}, {}, {}, 0});
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].text, "<UniqueId>a</UniqueId><PictureClip>p</PictureClip><Viewed>False</Viewed>");
    EXPECT_EQ(entries[0].schema, missed);
}

TEST_F(StoreFind, MixesSchemasByTime) {
    write(dialled, entry("a", "2024-01-01") + entry("b", "2024-01-03"));
    write(missed, entry("c", "2024-01-02") + entry("d", "2024-01-04"));
    EntryQuery query;
    query.schemas = {dialled, missed, "CallBacks"};
    query.limit = 3;
    EXPECT_EQ(ids(query), "d b c ");
}

TEST_F(StoreFind, KnowsNumbersByTheirKeys) {
    write(dialled, entry("a", "2024-01-01", "1") + entry("b", "2024-01-02", "12") + entry("c", "2024-01-03", "1"));
    EntryQuery query;
    query.numberKey = "1";
    EXPECT_EQ(ids(query), "c a ");
    write(dialled, entry("c", "2024-01-03", "2"));
    EXPECT_EQ(ids(query), "a ");
}

TEST_F(StoreFind, KnowsNamesByTheBeginningOfEachWord) {
    write(dialled, entry("a", "1", "", "anna maria") + entry("b", "2", "", "marianne") + entry("c", "3", "", "amaria"));
    EntryQuery query;
    query.nameBegin = "mari";
    EXPECT_EQ(ids(query), "b a ");
    query.nameBegin = "anna m";
    EXPECT_EQ(ids(query), "a ");
    query.nameBegin = "a";
    EXPECT_EQ(ids(query), "c a ");
}

TEST_F(StoreFind, KnowsWholeNames) {
    write(dialled, entry("a", "1", "", "anna") + entry("b", "2", "", "anna maria") + entry("c", "3", "", "maria") +
                       entry("d", "4", "", "anna"));
    EntryQuery query;
    query.name = "anna";
    EXPECT_EQ(ids(query), "d a ");
    query.name = "maria";
    EXPECT_EQ(ids(query), "c ");
    query.name = "ann";
    EXPECT_EQ(ids(query), "");
}

TEST_F(StoreFind, KnowsTheBeginningOfALongName) {
    const std::string name(200, 'n');
    write(dialled, entry("a", "1", "", name + "a") + entry("b", "2", "", name + "b"));
    EntryQuery query;
    query.nameBegin = name;
    EXPECT_EQ(ids(query), "b a ");
    query.nameBegin = name + "a";
    EXPECT_EQ(ids(query), "a ");
    query.nameBegin = "";
    query.name = name + "b";
    EXPECT_EQ(ids(query), "b ");
}

TEST_F(StoreFind, KnowsAnyPartOfANameOrANumber) {
    write(dialled, entry("a", "1", "123", "anna") + entry("b", "2", "345", "berta") + entry("c", "3", "5", "x"));
    EntryQuery query;
    query.namePart = "nn";
    EXPECT_EQ(ids(query), "a ");
    query.numberPart = "45";
    EXPECT_EQ(ids(query), "b a ");
    query.namePart.clear();
    EXPECT_EQ(ids(query), "b ");
}

TEST_F(StoreFind, KnowsTimesAndWhatWasSeen) {
    write(dialled, entry("a", "1") + entry("b", "2", "", "", "False") + entry("c", "3") + entry("d", "4"));
    EntryQuery query;
    query.since = "2";
    query.until = "3";
    EXPECT_EQ(ids(query), "c b ");
    query.isSeen = false;
    EXPECT_EQ(ids(query), "b ");
    EXPECT_EQ(found().count(dialled).all, 4U);
    EXPECT_EQ(found().count(dialled).unseen, 1U);
    EXPECT_EQ(found().count(missed).all, 0U);
}

TEST_F(StoreFind, GivesTheSameByAnyWayWhereManyNamesBeginAlike) {
    std::string entries;
    for (int i = 0; i < 300; ++i) {
        entries += entry(std::to_string(i), std::to_string(100000 + i * 7919 % 1000), std::to_string(i % 3),
                         "many " + std::string(i % 2 == 0 ? "even" : "odd"));
    }
    write(dialled, entries);
    EntryQuery few;
    few.nameBegin = "even";
    EntryQuery walked;
    walked.namePart = "even";
    EXPECT_EQ(ids(few), ids(walked));
    few.nameBegin = "many e";
    EXPECT_EQ(ids(few), ids(walked));
    few.nameBegin = "many";
    EXPECT_EQ(ids(few), ids({}));
}

TEST_F(StoreFind, GoesOnBehindACursorWhileEntriesComeAndGo) {
    std::string entries;
    for (int i = 10; i < 60; ++i) {
        entries += entry(std::to_string(i), "2024-" + std::to_string(100 + i / 2));
    }
    write(dialled, entries);
    EntryQuery query;
    query.schemas = {dialled};
    query.limit = 7;
    std::vector<std::string> seen;
    for (auto page = found().find(query); !page.empty(); page = found().find(query)) {
        for (const FoundEntry& entry : page) {
            seen.push_back(entry.id);
        }
        query.after = page.back().cursor;
        found().processRequest(deleteRequest(dialled, "<Entry><UniqueId>" + page.back().id + "</UniqueId></Entry>"));
        write(dialled, entry("new" + std::to_string(seen.size()), "2025"));
    }
    ASSERT_EQ(seen.size(), 50U);
    for (std::size_t i = 0; i < seen.size(); ++i) {
        EXPECT_EQ(seen[i], std::to_string(59 - i));
    }
}

TEST_F(StoreFind, GoesOnWithinOneTime) {
    std::string entries;
    for (int i = 10; i < 60; ++i) {
        entries += entry(std::to_string(i), std::to_string(2000 + i / 20), "", "all");
    }
    write(dialled, entries);
    write(missed, entries);
    for (const bool isByName : {false, true}) {
        EntryQuery query;
        query.schemas = {dialled, missed};
        query.nameBegin = isByName ? "all" : "";
        query.until = "2001";
        const auto all = found().find(query);
        ASSERT_EQ(all.size(), 60U);
        query.limit = 7;
        std::size_t count = 0;
        for (auto page = found().find(query); !page.empty(); page = found().find(query)) {
            for (const FoundEntry& entry : page) {
                ASSERT_LT(count, all.size());
                EXPECT_EQ(entry.schema + entry.id, all[count].schema + all[count].id);
                ++count;
            }
            query.after = page.back().cursor;
        }
        EXPECT_EQ(count, all.size());
    }
}

TEST_F(StoreFind, ForgetsWhatWasDeleted) {
    write(dialled, entry("a", "1", "1", "anna", "False") + entry("b", "2", "1", "anna"));
    found().processRequest(deleteRequest(dialled, "<Entry><UniqueId>a</UniqueId></Entry>"));
    EntryQuery query;
    query.numberKey = "1";
    EXPECT_EQ(ids(query), "b ");
    query = {};
    query.nameBegin = "ann";
    EXPECT_EQ(ids(query), "b ");
    EXPECT_EQ(found().count(dialled).unseen, 0U);
    EXPECT_TRUE(found().checkIndex().empty());
}

TEST_F(StoreFind, HasKeysForWhatWasWrittenWithoutAnIndexer) {
    ask(writeRequest(dialled, entry("a", "1", "1", "anna")));
    closeStore();
    EntryQuery query;
    query.numberKey = "1";
    EXPECT_EQ(ids(query), "a ");
    EXPECT_TRUE(found().checkIndex().empty());
}

TEST_F(StoreFind, NeedsAnIndexer) {
    const auto store = calljournal::openStore(file());
    EXPECT_THROW(store->find({}), std::logic_error);
    EXPECT_THROW(store->checkIndex(), std::logic_error);
    EXPECT_THROW(store->setSetting("region", "DE"), std::logic_error);
}

TEST_F(StoreFind, MakesAllKeysAnewWhenTheRegionChanges) {
    write(dialled, entry("a", "1", "1"));
    EXPECT_FALSE(found().setting("region"));
    found().setSetting("region", "DE");
    EntryQuery query;
    query.numberKey = "DE1";
    EXPECT_EQ(ids(query), "a ");
    reopen();
    EXPECT_EQ(found().setting("region"), "DE");
    write(dialled, entry("b", "2", "1"));
    EXPECT_EQ(ids(query), "b a ");
    query.numberKey = "1";
    EXPECT_EQ(ids(query), "");
    EXPECT_TRUE(found().checkIndex().empty());
}

TEST_F(StoreFind, ReportsEachChangeOnce) {
    std::uint64_t since = 0;
    EXPECT_EQ(changed(since), "");
    write(dialled, entry("a", "1") + entry("b", "2", "", "", "False") + entry("c", "3"));
    EXPECT_EQ(changed(since), "+a +b +c ");
    EXPECT_EQ(changed(since), "");
    write(dialled, entry("b", "2", "", "", "True") + entry("a", "4") + entry("c", "3"));
    EXPECT_EQ(changed(since), "!b ~a ");
    EXPECT_TRUE(found().checkIndex().empty());
    write(dialled, entry("b", "2", "", "", "") + entry("a", "4", "", "", ""));
    EXPECT_EQ(changed(since), "~b ~a ");
    EXPECT_TRUE(found().checkIndex().empty());
    found().processRequest(deleteRequest(dialled, "<Entry><UniqueId>b</UniqueId></Entry>"));
    write(dialled, entry("d", "5"));
    found().processRequest(deleteRequest(dialled, "<Entry><UniqueId>d</UniqueId></Entry>"));
    EXPECT_EQ(changed(since), "-b ");
}

TEST_F(StoreFind, ReportsTheChangesOfAnotherProcess) {
    std::uint64_t since = 0;
    changed(since);
    const auto other = calljournal::openStore(file(), testKeys);
    other->processRequest(writeRequest(missed, entry("a", "1")));
    EXPECT_EQ(changed(since), "+a ");
}

TEST_F(StoreFind, ReportsManyChangesByPages) {
    std::uint64_t since = 0;
    changed(since);
    std::string entries;
    for (int i = 0; i < 2500; ++i) {
        entries += entry("", std::to_string(i));
    }
    write(dialled, entries);
    std::size_t count = 0;
    for (auto changes = found().changes(since); !changes.entries.empty(); changes = found().changes(since)) {
        EXPECT_LE(changes.entries.size(), 1000U);
        count += changes.entries.size();
        since = changes.number;
    }
    EXPECT_EQ(count, 2500U);
}

TEST_F(StoreFind, SaysThatItHasForgottenWhatWasDeleted) {
    std::string entries;
    std::string deletions;
    for (int i = 1; i <= 1001; ++i) {
        entries += entry(std::to_string(i), "1");
        deletions += "<Entry><UniqueId>" + std::to_string(i) + "</UniqueId></Entry>";
    }
    write(dialled, entries);
    std::uint64_t since = found().changes(0).number;
    found().processRequest(deleteRequest(dialled, deletions));
    const auto changes = found().changes(since);
    EXPECT_FALSE(changes.isWhole);
    EXPECT_EQ(changes.entries.size(), 1000U);
}

TEST_F(StoreFind, ReportsKeysThatDoNotFitTheirBody) {
    write(dialled, entry("a", "1", "1", "anna") + entry("b", "2", "2", "berta"));
    reopen();
    runSql(file(), "delete from entry_number where number_key = '1'; delete from entry_name where name_key = 'berta'");
    const auto faults = found().checkIndex();
    ASSERT_EQ(faults.size(), 2U);
    EXPECT_EQ(faults[0].id + ": " + faults[0].what, "a: it is not found by one of its numbers");
    EXPECT_EQ(faults[1].id + ": " + faults[1].what, "b: it is not found by its name");
    reopen();
    runSql(file(), "update entry set newest = '5', is_seen = 0, numbers = '', name = '' where unique_id = 'a'");
    EXPECT_GE(found().checkIndex().size(), 4U);
}

TEST_F(StoreFind, MakesLostKeysAnewWhenTheRegionIsSetOnceMore) {
    found().setSetting("region", "DE");
    write(dialled, entry("a", "1", "1", "anna") + entry("b", "2", "2", "berta"));
    reopen();
    runSql(file(), "delete from entry_number where number_key = 'DE1'; delete from entry_name");
    EXPECT_EQ(found().checkIndex().size(), 3U);
    found().setSetting("region", "DE");
    EXPECT_TRUE(found().checkIndex().empty());
    EntryQuery query;
    query.numberKey = "DE1";
    EXPECT_EQ(ids(query), "a ");
}

TEST_F(StoreFind, ReportsKeysOfNoEntryAndWrongCountsAndMakesThemAnew) {
    write(dialled, entry("a", "1", "1", "anna", "False"));
    for (const char* change : {"insert into entry_number select schema_id, '5', place from entry",
                               "insert into entry_name select schema_id, 'x', place from entry",
                               "update stored_schema set unseen = 7", "update stored_schema set bytes = 7"}) {
        SCOPED_TRACE(change);
        reopen();
        runSql(file(), change);
        EXPECT_EQ(found().checkIndex().size(), 1U);
        found().setSetting("region", "");
        EXPECT_TRUE(found().checkIndex().empty());
    }
    EXPECT_EQ(found().count(dialled).unseen, 1U);
}

TEST_F(StoreFind, TakesTheFirstOfTwoMarksOfHavingBeenSeen) {
    write(dialled, "<Entry><UniqueId>a</UniqueId><Viewed>False</Viewed></Entry>");
    write(dialled, "<Entry><UniqueId>a</UniqueId><Viewed>False</Viewed><Viewed>True</Viewed></Entry>");
    EXPECT_EQ(found().count(dialled).unseen, 1U);
    EXPECT_TRUE(found().checkIndex().empty());
}

TEST_F(StoreFind, EndsAPageOfLongEntriesEarlier) {
    const std::string filling(6U << 20U, 'x');
    for (const std::string& schema : {dialled, missed}) {
        for (const char* time : {"1", "2", "3", "4", "5"}) {
            write(schema, entry(schema + time, "1", time, filling));
        }
    }
    for (const auto& schemas : {std::vector<std::string>{dialled}, std::vector<std::string>{dialled, missed}}) {
        EntryQuery query;
        query.schemas = schemas;
        query.limit = 100;
        std::vector<std::size_t> sizes;
        for (auto page = found().find(query); !page.empty(); page = found().find(query)) {
            sizes.push_back(page.size());
            query.after = page.back().cursor;
        }
        EXPECT_EQ(sizes,
                  schemas.size() == 1 ? (std::vector<std::size_t>{3, 2}) : (std::vector<std::size_t>{3, 3, 3, 1}));
        query.limit = 0;
        query.after.reset();
        EXPECT_EQ(found().find(query).size(), 5 * schemas.size());
    }
}

TEST_F(StoreFind, IsTakenBackWithTheRest) {
    write(dialled, entry("a", "1", "1"));
    try {
        found().exclusively([&] {
            write(dialled, entry("b", "2", "1"));
            EntryQuery query;
            query.numberKey = "1";
            EXPECT_EQ(ids(query), "b a ");
            throw std::runtime_error("taken back");
        });
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(ids({}), "a ");
    EXPECT_EQ(found().count(dialled).all, 1U);
    EXPECT_TRUE(found().checkIndex().empty());
}

/// What a query finds among all entries, literally.
std::string literalIds(std::vector<FoundEntry> entries, const EntryQuery& query) {
    std::string ids;
    std::size_t count = 0;
    for (const FoundEntry& entry : entries) {
        const EntryKeys keys = testKeys(entry.schema, entry.text, "");
        const std::string words = " " + keys.name;
        const bool isWanted =
            (query.numberKey.empty() || (!keys.numbers.empty() && keys.numbers[0] == query.numberKey)) &&
            words.find(query.nameBegin.empty() ? "" : " " + query.nameBegin) != std::string::npos &&
            keys.name.find(query.namePart) != std::string::npos && keys.time >= query.since &&
            (query.until.empty() || keys.time <= query.until) && (!query.isSeen || *query.isSeen == keys.isSeen);
        if (isWanted && (query.limit == 0 || count < query.limit)) {
            ids += entry.id + " ";
            ++count;
        }
    }
    return ids;
}

TEST_F(StoreFind, FindsWhatReadingEverythingFinds) {
    std::mt19937 random(20261122);
    SCOPED_TRACE("seed 20261122");
    const auto any = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    for (int round = 0; round < 600; ++round) {
        const std::string id = std::to_string(any(60));
        if (any(4) == 0) {
            found().processRequest(deleteRequest(dialled, "<Entry><UniqueId>" + id + "</UniqueId></Entry>"));
        } else {
            write(dialled, entry(id, std::to_string(10 + any(30)), any(3) == 0 ? "" : std::to_string(any(12)),
                                 std::string(1, static_cast<char>('a' + any(3))) + "b " +
                                     std::string(1, static_cast<char>('a' + any(3))),
                                 any(2) == 0 ? "True" : "False"));
        }
        EntryQuery query;
        query.schemas = {dialled};
        const auto all = found().find(query);
        query.numberKey = any(3) == 0 ? std::to_string(any(12)) : "";
        query.nameBegin = any(3) == 0 ? std::string(1, static_cast<char>('a' + any(3))) : "";
        query.namePart = any(3) == 0 ? "b " + std::string(1, static_cast<char>('a' + any(3))) : "";
        query.since = any(3) == 0 ? std::to_string(10 + any(30)) : "";
        query.until = any(3) == 0 ? std::to_string(10 + any(30)) : "";
        if (any(3) == 0) {
            query.isSeen = any(2) == 0;
        }
        query.limit = static_cast<std::size_t>(any(10));
        ASSERT_EQ(ids(query), literalIds(all, query)) << round;
        ASSERT_TRUE(std::is_sorted(all.begin(), all.end(), [](const FoundEntry& one, const FoundEntry& other) {
            return one.cursor.time > other.cursor.time;
        }));
    }
    EXPECT_TRUE(found().checkIndex().empty());
}

}  // namespace
