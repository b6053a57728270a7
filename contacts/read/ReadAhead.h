#pragma once

#include <cstddef>
#include <exception>
#include <thread>
#include <vector>

#include "AddressReader.h"
#include "RingBuffer.h"

namespace calljournal {

/// Reads an address book in a thread of its own, some records ahead of whoever takes them.
///
///     ReadAhead records(*book);
///     while (const AddressRecord* record = records.next()) { ... }
///
/// The reader belongs to that thread while the object lives. Memory: that of some hundred usual records and a few of
/// the longest ones, whatever the book holds.
class ReadAhead {
public:
    /// Throws std::system_error if there can be no thread.
    explicit ReadAhead(AddressReader& reader);
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;
    /// Stops reading, wherever it is.
    ~ReadAhead();

    /// Returns the next record, which lasts until the next call, or null at the end. What the reader throws is thrown
    /// here, behind the records before it.
    const AddressRecord* next();

    /// How many bytes of the file were taken so far, to a few records, for a progress bar.
    std::size_t bytesRead() const { return batch_ == nullptr ? 0 : batch_->bytesRead; }

private:
    struct Slot {
        AddressRecord record;
        std::size_t memory = 0;
    };
    /// Records that change hands at once: to wake a thread takes longer than to read a record.
    struct Batch {
        std::vector<Slot> slots;
        std::size_t bytesRead = 0;
        bool isLast = false;
        std::exception_ptr failure;
    };

    void read();
    void fill(Batch& batch);
    bool readInto(Batch& batch, std::size_t place);

    AddressReader& reader_;
    RingBuffer<Batch> batches_;
    Batch* batch_ = nullptr;  ///< That is being taken from.
    std::size_t place_ = 0;   ///< Of the next record in it.
    std::thread thread_;
};

}  // namespace calljournal
