#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "DataAccessServiceIfc.h"

namespace calljournal {

/// One message of a capture, as a view into it.
struct CapturedMessage {
    std::size_t begin;  ///< Byte offset in the capture.
    std::string_view text;
};

/// Returns the messages of a capture: at least one, the whole text if it is a single message or none. A message begins
/// on a line of its own, with the XML declaration, behind the mark that --show-xml puts in front of a request or a
/// reply.
std::vector<CapturedMessage> messagesOf(std::string_view capture);

/// Returns the reply of a data access service to the request that reads all of `schema`.
std::string readSchema(DataAccessServiceIfc& service, std::string_view schema);

}  // namespace calljournal
