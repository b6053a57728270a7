#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <string>
#include <unistd.h>

#include "EntryIndex.h"
#include "Journal.h"
#include "Rounds.h"
#include "Store.h"
#include "StoreCheck.h"
#include "StoreTest.h"

namespace {

using calljournal::Journal;
using calljournal::NewCall;

constexpr std::size_t pageSize = 4096;
constexpr unsigned seed = 20261122;

NewCall<MissedCallItem> missedCall(int party, int time) {
    NewCall<MissedCallItem> call;
    call.party.setSurname("Party " + std::to_string(party) + std::string(party % 9 == 4 ? 5000 : 30, 'x'));
    call.call.number = "+4930555" + std::to_string(1000 + party);
    call.call.timeDate = "2025-01-0" + std::to_string(1 + time) + " 10:" + std::to_string(10 + party) + ":00";
    return call;
}

/// What a damaged store answered: what it found out, or that it failed and said why.
struct Answer {
    std::string text;
    bool isFailure = false;
};

template <class Work>
Answer answerOf(const Work& work) {
    try {
        return {work()};
    } catch (const calljournal::StoreError& error) {
        return {error.what(), true};
    } catch (const calljournal::JournalError& error) {
        return {error.what(), true};
    }
}

std::string entryText(const MissedCallItem& entry) {
    return calljournal::notificationOf(entry, JournalServiceObserverIfc::CHANGED) + "\n";
}

/// A journal in a file that is damaged in every way. Whatever is done with it afterwards is right, or fails.
class DamagedJournal : public StoreTest {
protected:
    DamagedJournal() {
        useJournal([](Journal& journal) {
            for (int time = 0; time < 4; ++time) {
                std::vector<NewCall<MissedCallItem>> calls;
                for (int party = 0; party < 40; ++party) {
                    calls.push_back(missedCall(party, time));
                }
                journal.record(calls);
            }
            for (int id = 30; id < 36; ++id) {
                journal.remove<MissedCallItem>(std::to_string(id));
            }
            return std::string();
        });
        database_ = contentOf(file());
        Child child([&](const Child::Say& say) {
            useJournal([&](Journal& journal) {
                for (int party = 0; party < 10; ++party) {
                    journal.record<MissedCallItem>({missedCall(party, 5)});
                }
                say(std::to_string(std::filesystem::file_size(log())));
                journal.record<MissedCallItem>({missedCall(0, 6)});
                say("done");
                pause();
                return std::string();
            });
        });
        logBeforeLast_ = std::stoul(child.nextLine());
        EXPECT_EQ(child.nextLine(), "done");
        child.kill();
        child.endedWell();
        log_ = contentOf(log());
        databaseUnderLog_ = contentOf(file());
    }

    std::string log() const { return file("journal.db-wal"); }

    Answer useJournal(const std::function<std::string(Journal&)>& use) {
        return answerOf([&] {
            const auto store = calljournal::openStore(file(), calljournal::indexEntry);
            Journal journal(*store);
            return use(journal);
        });
    }

    Answer list() {
        return useJournal([](Journal& journal) {
            std::string text;
            for (const MissedCallItem& entry : journal.entries<MissedCallItem>()) {
                text += entryText(entry);
            }
            return text;
        });
    }

    Answer record() {
        return useJournal(
            [](Journal& journal) { return entryText(journal.record<MissedCallItem>({missedCall(7, 8)}).at(0)); });
    }

    Answer remove() {
        return useJournal([](Journal& journal) { return entryText(journal.remove<MissedCallItem>("12")); });
    }

    /// Returns whether nothing is wrong.
    bool check() {
        return answerOf([&] {
                   const auto store = calljournal::openStore(file(), calljournal::indexEntry);
                   return calljournal::checkIndex(*store).empty() ? std::string("fine") : std::string();
               }).text == "fine";
    }

    void put(const std::string& database, const std::string& log) {
        std::filesystem::remove(file("journal.db-shm"));
        writeFile(file(), database);
        if (log.empty()) {
            std::filesystem::remove(this->log());
        } else {
            writeFile(this->log(), log);
        }
    }

    /// What is right.
    struct Expected {
        std::string list;
        std::string recorded;
        std::string removed;
        std::string listAfterRecord;
        std::string listAfterRemove;
        std::string listAfterBoth;
    };

    Expected expectedOf(const std::string& database, const std::string& log) {
        Expected expected;
        put(database, log);
        expected.list = list().text;
        expected.recorded = record().text;
        expected.listAfterRecord = list().text;
        expected.removed = remove().text;
        expected.listAfterBoth = list().text;
        put(database, log);
        remove();
        expected.listAfterRemove = list().text;
        return expected;
    }

    /// Does everything with the damaged files, whose answers must be the expected ones or failures, and returns whether
    /// the damage was reported.
    bool isReported(const Expected& expected) {
        const bool isFine = check();
        bool hasFailed = false;
        const auto accept = [&](const Answer& answer, const std::string& text) {
            hasFailed = hasFailed || answer.isFailure;
            EXPECT_TRUE(answer.isFailure || answer.text == text);
        };
        accept(list(), expected.list);
        const Answer recorded = record();
        accept(recorded, expected.recorded);
        accept(list(), recorded.isFailure ? expected.list : expected.listAfterRecord);
        const Answer removed = remove();
        accept(removed, expected.removed);
        accept(list(), recorded.isFailure && removed.isFailure ? expected.list
                       : recorded.isFailure                    ? expected.listAfterRemove
                       : removed.isFailure                     ? expected.listAfterRecord
                                                               : expected.listAfterBoth);
        EXPECT_TRUE(!isFine || !hasFailed);
        return hasFailed || !isFine;
    }

    /// Has isReported() look at files that `change` makes of the sound ones.
    template <class Change>
    void expectNothingSilent(const std::string& database, const std::string& log, const Change& change) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        const Expected expected = expectedOf(database, log);
        ASSERT_NE(expected.recorded.find("Party 7"), std::string::npos);
        ASSERT_NE(expected.listAfterBoth, expected.listAfterRecord);
        int reported = 0;
        const int count = rounds(250);
        for (int round = 0; round < count && !HasFailure(); ++round) {
            SCOPED_TRACE("round " + std::to_string(round));
            std::string damagedDatabase = database;
            std::string damagedLog = log;
            change(damagedDatabase, damagedLog, random);
            put(damagedDatabase, damagedLog);
            reported += isReported(expected) ? 1 : 0;
        }
        EXPECT_GT(reported, count / 3);
        std::cout << "files damaged: " << count << ", of them noticed: " << reported
                  << ", the rest without effect on any entry\n";
    }

    std::string database_;
    std::string databaseUnderLog_;
    std::string log_;
    std::size_t logBeforeLast_ = 0;  ///< Its size before the last transaction.
};

/// Damages `content`, made of pieces of `unit` bytes, in one of the ways that disks know.
void damage(std::string& content, std::mt19937& random, std::size_t unit) {
    const auto flip = [&](std::size_t at) { content[at] = static_cast<char>(content[at] ^ (1 << random() % 8)); };
    switch (random() % 8) {
        case 0:
            content.resize(1 + random() % (content.size() - 1));
            break;
        case 1: {
            const std::size_t from = random() % (content.size() / unit) * unit;
            const std::size_t to = random() % (content.size() / unit) * unit;
            content.replace(to, unit, random() % 2 == 0 ? std::string(unit, '\0') : content.substr(from, unit));
            break;
        }
        case 2:
            for (std::size_t at = random() % (content.size() - 512), end = at + 512; at < end; ++at) {
                content[at] = static_cast<char>(random());
            }
            break;
        default:
            flip(random() % content.size());
    }
}

TEST_F(DamagedJournal, IsNeverReadOrWrittenWrongWithoutAWord) {
    expectNothingSilent(database_, {}, [](std::string& database, std::string&, std::mt19937& random) {
        damage(database, random, pageSize);
    });
}

TEST_F(DamagedJournal, IsNeverReadOrWrittenWrongWithoutAWordAfterAKill) {
    expectNothingSilent(databaseUnderLog_, log_, [this](std::string& database, std::string& log, std::mt19937& random) {
        if (random() % 4 == 0) {
            damage(database, random, pageSize);
            return;
        }
        // A log that lost its end is that of a moment before; nobody can tell.
        char& byte = log[random() % logBeforeLast_];
        byte = static_cast<char>(byte ^ (1 << random() % 8));
    });
}

}  // namespace
