#include "DamagedJournal.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "EntryIndex.h"
#include "Store.h"

namespace {

using calljournal::Journal;
using calljournal::NewCall;

NewCall<MissedCallItem> missedCall(int party, int time) {
    NewCall<MissedCallItem> call;
    call.party.setSurname("Party " + std::to_string(party) + std::string(party % 9 == 4 ? 5000 : 30, 'x'));
    call.call.number = "+4930555" + std::to_string(1000 + party);
    call.call.timeDate = "2025-01-0" + std::to_string(1 + time) + " 10:" + std::to_string(10 + party) + ":00";
    return call;
}

struct Answer {
    std::string text;
    bool isFailure = false;  ///< The text says why.
};

/// Opens the journal and uses it.
Answer answerOf(const std::string& file, const std::function<std::string(Journal&)>& use) {
    try {
        const auto store = calljournal::openStore(file, calljournal::indexEntry);
        Journal journal(*store);
        return {use(journal)};
    } catch (const calljournal::StoreError& error) {
        return {error.what(), true};
    } catch (const calljournal::JournalError& error) {
        return {error.what(), true};
    }
}

std::string textOf(const MissedCallItem& entry) {
    return calljournal::notificationOf(entry, JournalServiceObserverIfc::CHANGED) + "\n";
}

Answer list(const std::string& file) {
    return answerOf(file, [](Journal& journal) {
        std::string text;
        for (const MissedCallItem& entry : journal.entries<MissedCallItem>()) {
            text += textOf(entry);
        }
        return text;
    });
}

Answer record(const std::string& file) {
    return answerOf(file,
                    [](Journal& journal) { return textOf(journal.record<MissedCallItem>({missedCall(7, 8)}).at(0)); });
}

Answer remove(const std::string& file) {
    return answerOf(file, [](Journal& journal) { return textOf(journal.remove<MissedCallItem>("12")); });
}

/// Returns whether nothing is wrong.
bool check(const std::string& file) {
    try {
        return calljournal::openStoreCopy(file, calljournal::indexEntry)->checkIndex().empty();
    } catch (const calljournal::StoreError&) {
        return false;
    }
}

std::string contentOf(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void writeFile(const std::string& file, const std::string& content) {
    std::ofstream(file, std::ios::binary | std::ios::trunc) << content;
}

}  // namespace

DamagedJournal::DamagedJournal(std::string folder) : folder_(std::move(folder)) {
    answerOf(file(), [](Journal& journal) {
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
    closed_ = take();
    int ends[2] = {};
    if (pipe(ends) != 0) {
        return;
    }
    const pid_t child = fork();
    if (child == 0) {
        answerOf(file(), [&](Journal& journal) -> std::string {
            for (int party = 0; party < 10; ++party) {
                journal.record<MissedCallItem>({missedCall(party, 5)});
            }
            const auto size = static_cast<std::size_t>(std::filesystem::file_size(file() + "-wal"));
            journal.record<MissedCallItem>({missedCall(0, 6)});
            // What the system does not do for a process that ends so is what it does not do for one that is killed.
            _exit(write(ends[1], &size, sizeof size) == sizeof size ? 0 : 1);
        });
        _exit(1);
    }
    waitpid(child, nullptr, 0);
    if (read(ends[0], &logBeforeLast_, sizeof logBeforeLast_) != sizeof logBeforeLast_) {
        logBeforeLast_ = 0;
    }
    close(ends[0]);
    close(ends[1]);
    killed_ = take();
}

void DamagedJournal::put(const StoreFiles& files) {
    std::filesystem::remove(file() + "-shm");
    writeFile(file(), files.database);
    if (files.log.empty()) {
        std::filesystem::remove(file() + "-wal");
    } else {
        writeFile(file() + "-wal", files.log);
    }
}

StoreFiles DamagedJournal::take() const {
    return {contentOf(file()), contentOf(file() + "-wal")};
}

DamagedJournal::Answers DamagedJournal::answersOf(const StoreFiles& sound) {
    Answers answers;
    put(sound);
    answers.list = list(file()).text;
    answers.recorded = record(file()).text;
    answers.listAfterRecord = list(file()).text;
    answers.removed = remove(file()).text;
    answers.listAfterBoth = list(file()).text;
    put(sound);
    remove(file());
    answers.listAfterRemove = list(file()).text;
    return answers;
}

DamagedJournal::Judgement DamagedJournal::judge(const StoreFiles& damaged, const Answers& right) {
    put(damaged);
    Judgement judgement;
    bool hasFailed = false;
    const auto accept = [&](const char* what, const Answer& answer, const std::string& text) {
        hasFailed = hasFailed || answer.isFailure;
        if (!answer.isFailure && answer.text != text) {
            judgement.silent = what;
        }
    };
    const bool isFine = check(file());
    accept("list", list(file()), right.list);
    const Answer recorded = record(file());
    accept("record", recorded, right.recorded);
    accept("list after record", list(file()), recorded.isFailure ? right.list : right.listAfterRecord);
    const Answer removed = remove(file());
    accept("delete", removed, right.removed);
    accept("list after delete", list(file()),
           recorded.isFailure && removed.isFailure ? right.list
           : recorded.isFailure                    ? right.listAfterRemove
           : removed.isFailure                     ? right.listAfterRecord
                                                   : right.listAfterBoth);
    if (isFine && hasFailed) {
        judgement.silent = "check";
    }
    judgement.isReported = hasFailed || !isFine;
    return judgement;
}
