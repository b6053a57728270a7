#ifndef CALLJOURNAL_MESSAGECHECK_H
#define CALLJOURNAL_MESSAGECHECK_H

#include <string>
#include <string_view>
#include <vector>

#include "EntryCheck.h"

namespace calljournal {

/// What was found in one message.
struct CheckedMessage {
    std::string title;              ///< What it is: "write request, missed, 2 entries".
    std::vector<Finding> findings;  ///< In the order of the text.
};

/// Recognises a captured text and says what is wrong with it, what its reader would lose, and what it would read
/// instead. Entries of which nothing tells the kind are of the kind `kindName` or, if that is empty, of the kind that
/// fits. Takes any text.
CheckedMessage checkMessage(std::string_view text, std::string_view kindName);

}  // namespace calljournal

#endif
