#include "AddressRecord.h"

#include <algorithm>

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

const std::string& firstText(const AddressRecord& record, FieldKind kind) {
    static const std::string none;
    const auto found = std::find_if(record.values.begin(), record.values.end(),
                                    [=](const AddressValue& value) { return value.kind == kind; });
    return found == record.values.end() ? none : found->text;
}

}  // namespace calljournal
