#include "Salvage.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <unistd.h>

#include "StoreTest.h"
#include "TestKeys.h"

namespace {

const std::string dialled = "CallLogDialledCalls";
const std::string received = "CallLogReceivedCalls";
constexpr std::size_t pageSize = 4096;

class SalvageTest : public StoreTest {
protected:
    /// Writes entries, some of them longer than a page, and deletes some again.
    SalvageTest() {
        const auto store = calljournal::openStore(file(), testKeys);
        for (const std::string& schema : {dialled, received}) {
            std::string entries;
            for (int i = 0; i < 200; ++i) {
                entries += "<Entry><Surname>name " + std::to_string(i) + std::string(i % 50 == 7 ? 9000 : 60, 'x') +
                           "</Surname></Entry>";
            }
            store->processRequest(writeRequest(schema, entries));
        }
        std::string some;
        for (int id = 100; id < 300; ++id) {
            some += "<Entry><UniqueId>" + std::to_string(id) + "</UniqueId></Entry>";
        }
        store->processRequest(deleteRequest(dialled, some));
        store->processRequest(deleteRequest(received, some));
    }

    static std::string keyOf(const calljournal::SalvagedEntry& entry) { return entry.schema + " " + entry.id; }

    std::map<std::string, std::string> salvaged() {
        std::map<std::string, std::string> entries;
        for (const auto& entry : calljournal::salvageStore(file()).entries) {
            EXPECT_TRUE(entries.emplace(keyOf(entry), entry.body).second) << keyOf(entry);
        }
        return entries;
    }
};

TEST_F(SalvageTest, GivesAllEntriesOfAStoreThatIsWholeInTheirOrder) {
    const calljournal::Salvage salvage = calljournal::salvageStore(file());
    EXPECT_EQ(salvage.losses, std::vector<std::string>());
    std::string replies[2];
    for (const auto& entry : salvage.entries) {
        replies[entry.schema == received ? 1 : 0] +=
            "<Entry><UniqueId>" + entry.id + "</UniqueId>" + entry.body + "</Entry>";
    }
    EXPECT_EQ(envelope(dialled, replies[0]), ask(readRequest(dialled)));
    EXPECT_EQ(envelope(received, replies[1]), ask(readRequest(received)));
    EXPECT_EQ(salvage.entries.size(), 200U);
}

TEST_F(SalvageTest, ReadsTheLogThatAKilledProcessLeft) {
    Child child([&](const Child::Say& say) {
        say(calljournal::openStore(file(), testKeys)
                ->processRequest(writeRequest(dialled, "<Entry><Surname>the last</Surname></Entry>")));
        for (;;) {
            pause();
        }
    });
    EXPECT_NE(child.nextLine(), "");
    child.kill();
    child.endedWell();
    const auto entries = salvaged();
    EXPECT_EQ(entries.size(), 201U);
    EXPECT_EQ(entries.at(dialled + " 401"), "<Surname>the last</Surname>");
}

TEST_F(SalvageTest, ReadsBehindADamagedPlaceOfALogAndSaysSo) {
    Child child([&](const Child::Say& say) {
        const auto store = calljournal::openStore(file(), testKeys);
        for (int i = 0; i < 10; ++i) {
            store->processRequest(writeRequest(dialled, "<Entry><Surname>later</Surname></Entry>"));
        }
        say("done");
        for (;;) {
            pause();
        }
    });
    EXPECT_EQ(child.nextLine(), "done");
    child.kill();
    child.endedWell();
    std::string log = contentOf(file("journal.db-wal"));
    log[5000] = static_cast<char>(log[5000] ^ 1);
    writeFile(file("journal.db-wal"), log);
    const calljournal::Salvage salvage = calljournal::salvageStore(file());
    EXPECT_EQ(salvage.entries.size(), 210U);
    EXPECT_EQ(salvage.losses,
              std::vector<std::string>{"the write-ahead log is damaged, and with it some of the last changes"});
}

TEST_F(SalvageTest, GivesWhatIsWholeAndNamesWhatIsLost) {
    const auto before = salvaged();
    const std::string sound = contentOf(file());
    std::mt19937 random(20261122);
    std::size_t whole = 0;
    for (int round = 0; round < 60; ++round) {
        std::string content = sound;
        for (std::size_t pages = 1 + random() % 4; pages > 0; --pages) {
            char& byte = content[random() % content.size()];
            byte = static_cast<char>(byte ^ (1 << random() % 8));
        }
        if (round % 4 == 0) {
            content.resize(content.size() - random() % (content.size() / 2));
        }
        writeFile(file(), content);
        const calljournal::Salvage salvage = calljournal::salvageStore(file());
        std::map<std::string, std::string> missing = before;
        for (const auto& entry : salvage.entries) {
            const auto found = missing.find(entry.schema.empty() ? dialled + " " + entry.id : keyOf(entry));
            if (found != missing.end() || !entry.schema.empty()) {
                ASSERT_TRUE(found != missing.end() && found->second == entry.body) << keyOf(entry);
                missing.erase(found);
            }
        }
        whole += salvage.entries.size();
        EXPECT_TRUE(missing.empty() || !salvage.losses.empty()) << round;
    }
    EXPECT_GT(whole, 60 * before.size() / 2);
}

TEST_F(SalvageTest, NamesEachEntryOfAPageThatIsLost) {
    const auto before = salvaged();
    const std::string sound = contentOf(file());
    int named = 0;
    for (std::size_t page = 1; page < sound.size() / pageSize; ++page) {
        std::string content = sound;
        content[page * pageSize + 50] = static_cast<char>(content[page * pageSize + 50] ^ 1);
        writeFile(file(), content);
        const calljournal::Salvage salvage = calljournal::salvageStore(file());
        auto missing = before;
        for (const auto& entry : salvage.entries) {
            missing.erase(keyOf(entry));
        }
        const std::string damaged = "1 page of " + std::to_string(sound.size() / pageSize) + " cannot be read";
        // A page that is not in use is no loss, unless it has the list of these.
        const std::string list = "the list of free pages cannot be read, so deleted entries may be among these";
        EXPECT_TRUE(salvage.losses.empty() || salvage.losses[0] == damaged || salvage.losses[0] == list);
        EXPECT_TRUE(missing.empty() || !salvage.losses.empty());
        for (const auto& [key, body] : missing) {
            const std::string sentence =
                "entry " + key.substr(key.find(' ') + 1) + " of " + key.substr(0, key.find(' ')) + " is lost";
            named += std::count(salvage.losses.begin(), salvage.losses.end(), sentence) == 1 ? 1 : 0;
        }
    }
    EXPECT_GE(named, 200);
}

TEST_F(SalvageTest, RefusesAFileThatIsNoStoreOfThisVersion) {
    const auto problem = [&] {
        try {
            calljournal::salvageStore(file());
            return std::string();
        } catch (const calljournal::StoreError& error) {
            return std::string(error.what());
        }
    };
    const std::string expected = "store " + file() + ": nothing of it is as this version writes it";
    writeFile(file(), std::string(20000, 'x'));
    EXPECT_EQ(problem(), expected);
    writeFile(file(), "");
    EXPECT_EQ(problem(), expected);
    std::filesystem::remove(file());
    EXPECT_EQ(problem(), expected);
}

}  // namespace
