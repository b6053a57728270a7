#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace calljournal {

/// What a request asks of the store; the word of `ReasonForMessage` beside it.
enum class StoreAction {
    read,    ///< read_request
    write,   ///< write_request
    remove,  ///< delete_request
};

/// One entry of a request. The views point into the request's text.
struct StoreEntry {
    std::string_view id;    ///< Byte for byte as in the request; empty if the entry has none.
    std::string_view body;  ///< Without the element that holds the id.
};

/// A request text taken apart. If `problem` is not empty the request is refused, and apart from `schema` the rest says
/// nothing.
struct StoreRequest {
    std::string_view schema;  ///< The schema's name, also an unknown one; empty if the text has no schema element.
    StoreAction action = StoreAction::read;
    std::vector<StoreEntry> entries;  ///< At least one for write and remove, none for read.
    std::string problem;              ///< Why the request is refused, for people.
};

/// An entry's body longer than this many bytes is refused. A call log entry holds at most ten calls.
constexpr std::size_t maximumBodySize = std::size_t{64} << 20U;

/// Takes `text`, which must outlive the result, apart by literal rules. There may be nothing before, between or behind
///
///     <?xml version="1.0" encoding="utf-8"?>
///     <Schema name="CallLogMissedCalls">
///     <ReasonForMessage>write_request</ReasonForMessage>
///     <Entry><UniqueId>7</UniqueId>...</Entry>              (any number of entries)
///     </Schema>
///
/// (which is one line). Texts are raw, so a name may tear an entry apart: one that holds `<Entry>`, or whose body is
/// not a run of whole elements (see firstElement), is refused with the request. So is an id that is empty, holds `<`,
/// or is not the body's first element. An entry to be deleted is its id alone.
StoreRequest scanStoreRequest(std::string_view text);

/// Returns whether missed calls are kept under `schema`, whose pictures their reader expects as `PictureClip`.
bool servesPictureClips(std::string_view schema);

}  // namespace calljournal
