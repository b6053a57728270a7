#include "AddressRecord.h"

namespace calljournal {

AddressValue& AddressValues::add() {
    if (size_ == values_.size()) {
        values_.emplace_back();
    }
    return values_[size_++];
}

std::size_t AddressValues::memory() const {
    std::size_t bytes = 0;
    for (const AddressValue& value : values_) {
        bytes += sizeof value + value.text.capacity() + value.source.capacity();
    }
    return bytes;
}

}  // namespace calljournal
