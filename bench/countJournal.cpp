// Runs one job on a journal once, for script/check/bench-count: with all that the store and its database do for it.

#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "CountedJob.h"
#include "Journal.h"
#include "JournalCalls.h"
#include "JournalStores.h"
#include "Store.h"

using bench::demand;
using bench::Result;
using bench::Size;
using calljournal::EntryQuery;
using calljournal::FoundEntry;
using calljournal::Journal;
using calljournal::Store;

namespace {

std::uint64_t allocations = 0;

/// A journal made anew in this folder, which has done each job once.
class Warm {
public:
    explicit Warm(std::size_t count) {
        bench::buildJournal(file, count);
        store = bench::openJournal(file);
        journal = std::make_unique<Journal>(*store);
        record(count);
        journal->markViewed(bench::idAt(1));
    }

    /// Records a call of the party at `index` and returns its entry.
    MissedCallItem record(std::size_t index) {
        return journal->record<MissedCallItem>({bench::callOf(bench::entryAt(index))}).front();
    }

    std::unique_ptr<Store> store;
    std::unique_ptr<Journal> journal;

private:
    static constexpr char file[] = "bench_count.db";
};

/// Counts what recording a call of the party at `index` takes, whose entry has `calls` then.
Result countRecord(Warm& warm, std::size_t index, std::size_t calls) {
    const auto call = bench::callOf(bench::entryAt(index));
    std::vector<MissedCallItem> written;
    const std::size_t count = bench::measure([&] { written = warm.journal->record<MissedCallItem>({call}); });
    demand(written.size() == 1 && written.front().getUniqueId() == bench::idAt(index) &&
           written.front().getMissedCallInfoList().size() == calls);
    return {0, 1, count, 0};
}

Result recordNew(Size size) {
    Warm warm(size.count);
    return countRecord(warm, size.count + 1, 1);
}

Result recordKnown(Size size) {
    Warm warm(size.count);
    return countRecord(warm, size.count / 2, 2);
}

Result markViewed(Size size) {
    Warm warm(size.count);
    const std::string id = bench::idAt(5);
    MissedCallItem seen;
    const std::size_t count = bench::measure([&] { seen = warm.journal->markViewed(id); });
    demand(seen.getUniqueId() == id && seen.getViewed());
    return {0, 1, count, 0};
}

Result remove(Size size) {
    Warm warm(size.count);
    warm.journal->remove<MissedCallItem>(bench::idAt(6));
    const std::string id = bench::idAt(size.count / 2);
    const std::size_t count = bench::measure([&] { warm.journal->remove<MissedCallItem>(id); });
    demand(warm.store->count(bench::missedSchema()).all == size.count - 1);
    return {0, 1, count, 0};
}

/// Counts what a page takes: the second time that it is asked for.
Result find(std::size_t count, EntryQuery query) {
    const Warm warm(count);
    query.schemas = {bench::missedSchema()};
    query.limit = bench::sharedEntries;
    warm.store->find(query);
    std::vector<FoundEntry> found;
    const std::size_t allocated = bench::measure([&] { found = warm.store->find(query); });
    demand(found.size() == bench::sharedEntries);
    std::size_t bytes = 0;
    for (const FoundEntry& entry : found) {
        bytes += entry.text.size();
    }
    return {bytes, found.size(), allocated, bench::allocationsOf([&] { const auto copy = found; })};
}

Result findNewest(Size size) {
    return find(size.count, {});
}

Result findNumber(Size size) {
    EntryQuery query;
    query.numberKey = bench::sharedNumber;
    return find(size.count, query);
}

const bench::Jobs jobs = {
    {"journal-record", &recordNew}, {"journal-known", &recordKnown}, {"journal-viewed", &markViewed},
    {"journal-delete", &remove},    {"journal-newest", &findNewest}, {"journal-number", &findNumber},
};

}  // namespace

void* operator new(std::size_t size) {
    ++allocations;
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

std::uint64_t bench::allocationsSoFar() {
    return allocations;
}

int main(int argc, char** argv) {
    return bench::runJob(argc, argv, jobs);
}
