#include "ReadAhead.h"

namespace calljournal {

namespace {

constexpr std::size_t batchCount = 3;

/// A batch is full with so many records, or with so many bytes in them.
constexpr std::size_t mostRecords = 256;
constexpr std::size_t mostBytes = std::size_t{256} << 10;

/// A record that took more than this does not keep its memory for the next one.
constexpr std::size_t usualBytes = std::size_t{8} << 10;

std::size_t memoryOf(const AddressRecord& record) {
    std::size_t bytes = record.values.memory();
    for (const Problem& problem : record.problems) {
        bytes += sizeof problem + problem.column.size() + problem.text.size();
    }
    return bytes;
}

}  // namespace

ReadAhead::ReadAhead(AddressReader& reader) : reader_(reader), batches_(batchCount), thread_([this] { read(); }) {}

ReadAhead::~ReadAhead() {
    batches_.close();
    thread_.join();
}

const AddressRecord* ReadAhead::next() {
    while (batch_ == nullptr || place_ == batch_->slots.size()) {
        if (batch_ != nullptr) {
            if (batch_->failure) {
                std::rethrow_exception(batch_->failure);
            }
            if (batch_->isLast) {
                return nullptr;
            }
            batches_.emptied();
        }
        batch_ = batches_.toEmpty();
        place_ = 0;
    }
    return &batch_->slots[place_++].record;
}

/// What the thread does.
void ReadAhead::read() {
    for (bool isMore = true; isMore;) {
        Batch* const batch = batches_.toFill();
        if (batch == nullptr) {
            return;
        }
        fill(*batch);
        isMore = !batch->isLast;
        batches_.filled();
    }
}

void ReadAhead::fill(Batch& batch) {
    std::size_t count = 0;
    try {
        std::size_t bytes = 0;
        while (count < mostRecords && bytes < mostBytes && readInto(batch, count)) {
            bytes += batch.slots[count++].memory;
        }
        batch.isLast = count < mostRecords && bytes < mostBytes;
    } catch (...) {
        batch.failure = std::current_exception();
        batch.isLast = true;
    }
    batch.slots.resize(count);
    batch.bytesRead = reader_.bytesRead();
}

bool ReadAhead::readInto(Batch& batch, std::size_t place) {
    if (place == batch.slots.size()) {
        batch.slots.emplace_back();
    }
    Slot& slot = batch.slots[place];
    if (slot.memory > usualBytes) {
        slot = Slot();
    }
    const bool isThere = reader_.next(slot.record);
    slot.memory = memoryOf(slot.record);
    return isThere;
}

}  // namespace calljournal
