#ifndef CALLJOURNAL_ADDRESSRECORD_H
#define CALLJOURNAL_ADDRESSRECORD_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Meaning.h"

namespace calljournal {

/// One field of a record that is not empty.
struct AddressValue {
    Meaning meaning;
    std::string text;  ///< UTF-8, line ends as they came.
    std::string_view
        source;  ///< What the file calls it, such as "Business Phone" or "TEL;TYPE=work"; the reader keeps it.
};

/// One record of an address book as its reader hands it over, before anything is chosen.
///
/// A field whose kind stands beside it ("Phone 1 - Type") comes with the meaning that the kind gives it. Several values may
/// have the same meaning; they come in the order of the file.
struct AddressRecord {
    std::uint64_t firstLine = 0;  ///< Physical lines of the file, which count from 1.
    std::uint64_t lastLine = 0;
    std::vector<AddressValue> values;
    std::string broken;              ///< Why the record cannot be used; empty for one that can.
    std::vector<std::string> notes;  ///< What the reader had to mend: "a quote in the text was taken as it stands".
};

}  // namespace calljournal

#endif
