#include "AddressRecord.h"

#include <algorithm>

namespace calljournal {

const std::string& firstText(const AddressRecord& record, Meaning meaning) {
    static const std::string none;
    const auto found = std::find_if(record.values.begin(), record.values.end(),
                                    [=](const AddressValue& value) { return value.meaning == meaning; });
    return found == record.values.end() ? none : found->text;
}

}  // namespace calljournal
