#pragma once

#include <cstddef>
#include <string>

#include "Journal.h"

/// The files of a store.
struct StoreFiles {
    std::string database;
    std::string log;  ///< Empty if there is none.
};

/// Says whether whatever is done with the damaged files of a journal is right, or fails with a reason.
class DamagedJournal {
public:
    /// Makes a journal of missed calls in `folder`, with short and long entries and some deleted ones, and keeps its files.
    explicit DamagedJournal(std::string folder);

    /// The files of a journal that was closed.
    const StoreFiles& closed() const { return closed_; }

    /// Those that a process left that was killed after it had recorded calls.
    const StoreFiles& killed() const { return killed_; }

    /// The size of the killed one's log before its last transaction.
    std::size_t logBeforeLast() const { return logBeforeLast_; }

    /// What is right with one or the other.
    struct Answers {
        std::string list;
        std::string recorded;
        std::string removed;
        std::string listAfterRecord;
        std::string listAfterRemove;
        std::string listAfterBoth;
    };
    Answers answersOf(const StoreFiles& sound);

    struct Judgement {
        std::string silent;       ///< Which operation was wrong without a word; empty if none was.
        bool isReported = false;  ///< Some operation failed, or the check found something.
    };

    /// Checks, lists, records a call of a known party, deletes an entry, and lists after each.
    Judgement judge(const StoreFiles& damaged, const Answers& right);

private:
    std::string file() const { return folder_ + "/journal.db"; }
    void put(const StoreFiles& files);
    StoreFiles take() const;

    std::string folder_;
    StoreFiles closed_;
    StoreFiles killed_;
    std::size_t logBeforeLast_ = 0;
};
