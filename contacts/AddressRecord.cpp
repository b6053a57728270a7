#include "AddressRecord.h"

#include <algorithm>

namespace calljournal {

AddressValue& AddressValues::add() {
    if (size_ == values_.size()) {
        values_.emplace_back();
    }
    return values_[size_++];
}

const std::string& firstText(const AddressRecord& record, Meaning meaning) {
    static const std::string none;
    const auto found = std::find_if(record.values.begin(), record.values.end(),
                                    [=](const AddressValue& value) { return value.meaning == meaning; });
    return found == record.values.end() ? none : found->text;
}

}  // namespace calljournal
