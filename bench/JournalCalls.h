#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "MissedCallItem.h"

namespace bench {

/// How the numbers of many parties look.
enum class Numbers {
    distinct,    ///< "+4930" and eight digits
    sameEnding,  ///< as distinct, and all end with the same four digits
    addresses    ///< SIP addresses, which are no numbers
};

/// Returns the missed entry of the party at `index`: a name, a number and a time that no other index has, and one call
/// that is otherwise as those of Form::mixed. Those at odd indices were not viewed. Made on the spot, the same each time.
MissedCallItem entryAt(std::uint64_t index, Numbers numbers = Numbers::distinct);

/// Returns the number of that party.
std::string numberAt(std::uint64_t index, Numbers numbers = Numbers::distinct);

/// Returns the word in the name of that party that no other has, in lower case.
std::string wordAt(std::uint64_t index);

/// How many entries of a journal share one number and one surname, so that a page of them can be asked for.
constexpr std::size_t sharedEntries = 50;
constexpr char sharedNumber[] = "+493023456789";
constexpr char sharedSurname[] = "Quandt";

/// Returns the entry at `index` of a journal of `count` entries: that of its party, or one of those that share number
/// and surname. Those are spread evenly, at indices that leave 3 when divided by 4. `count` is a multiple of 200.
MissedCallItem entryOfJournal(std::uint64_t index, std::size_t count);

/// Returns the call of the entry as a line of JSON, as `calljournal record --from` reads it.
std::string jsonLineOf(const MissedCallItem& entry);

}  // namespace bench
