#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Finding.h"
#include "KindDescriptor.h"
#include "Outline.h"

namespace calljournal {

/// Who reads the entries of a text.
enum class Reader { decoder, missedList };

enum class MessageType { unknown, request, reply, notification, entries };

/// One entry of a message.
struct MessageEntry {
    Place place;
    std::size_t element;                ///< Its "Entry", or noElement where the entry is by itself.
    std::vector<std::size_t> elements;  ///< What it consists of.
    std::size_t begin;                  ///< Of its body.
    std::size_t end;
};

/// A captured text taken apart and recognised. It points into the text.
struct Message {
    Outline outline;
    MessageType type = MessageType::unknown;
    std::size_t schema = noElement;  ///< The element of a request or a reply.
    std::string_view schemaName;
    std::string_view method;               ///< Of a notification.
    const KindDescriptor* kind = nullptr;  ///< Of its entries; null if nobody reads them.
    Reader reader = Reader::decoder;
    std::vector<MessageEntry> entries;

    bool isClosed(const MessageEntry& entry) const {
        return entry.element == noElement || outline.elements[entry.element].isClosed;
    }

    std::string bodyOf(const MessageEntry& entry) const {
        return std::string(outline.text.substr(entry.begin, entry.end - entry.begin));
    }

    /// The text of the first element of that name among `elements`; empty if there is none.
    std::string_view textOf(const std::vector<std::size_t>& elements, std::string_view name) const;
};

/// Recognises a request, reply, notification, run of entries or bare body. Where nothing else names the kind of the
/// entries, it is `kindName` or, if that is empty, the kind whose elements they have. `text` must outlive the result.
Message messageOf(std::string_view text, std::string_view kindName);

/// "write request, missed, 2 entries"
std::string titleOf(const Message& message, ShowValue show);

}  // namespace calljournal
