#pragma once

#include <string_view>
#include <vector>

#include "Finding.h"
#include "Message.h"

namespace calljournal {

/// What was found in one message.
struct CheckedMessage {
    Message message;
    std::vector<Finding> findings;  ///< In the order of the text.
};

/// Recognises a captured text and finds what is wrong with it, what its reader would lose, and what it would read
/// instead. Entries of which nothing says the kind are of the kind `kindName` or, if that is empty, of the kind that
/// fits. Takes any text; it must outlive the result.
CheckedMessage checkMessage(std::string_view text, std::string_view kindName);

}  // namespace calljournal
