#include "StoreRequest.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "EntryBody.h"
#include "StoreWords.h"

namespace calljournal {

namespace {

struct ActionWord {
    StoreAction action;
    std::string_view word;
};

constexpr ActionWord actionWords[] = {
    {StoreAction::read, format::text::READREQUEST},
    {StoreAction::write, format::text::WRITEREQUEST},
    {StoreAction::remove, format::text::DELETEREQUEST},
};

bool isSchemaCharacter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-' ||
           c == '.';
}

/// Removes `start` from the front of `text`; false, and nothing removed, if it does not begin so.
bool takeStart(std::string_view& text, std::string_view start) {
    if (text.substr(0, start.size()) != start) {
        return false;
    }
    text.remove_prefix(start.size());
    return true;
}

/// Removes `end` from the back of `text`; false, and nothing removed, if it does not end so.
bool takeEnd(std::string_view& text, std::string_view end) {
    if (text.size() < end.size() || text.substr(text.size() - end.size()) != end) {
        return false;
    }
    text.remove_suffix(end.size());
    return true;
}

/// Removes the schema's start tag from the front of `text` and returns its name; empty if there is no such tag.
std::string_view takeSchema(std::string_view& text) {
    std::string_view rest = text;
    if (!takeStart(rest, schemaTagBegin)) {
        return {};
    }
    const auto end = std::find_if_not(rest.begin(), rest.end(), isSchemaCharacter);
    const std::string_view name = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
    rest.remove_prefix(name.size());
    if (name.empty() || !takeStart(rest, schemaTagEnd)) {
        return {};
    }
    text = rest;
    return name;
}

std::optional<StoreAction> takeAction(std::string_view& text) {
    for (const ActionWord& row : actionWords) {
        if (takeStart(text, xmlElement(format::text::REASONFORMESSAGE, row.word))) {
            return row.action;
        }
    }
    return std::nullopt;
}

/// Returns what is wrong with the id in `element`; empty if nothing is.
std::string problemOfId(const BodyElement& element) {
    if (element.text.empty()) {
        return "has an empty " + std::string(element.name);
    }
    if (element.text.find('<') != std::string_view::npos) {
        return "has a \"<\" in its " + std::string(element.name);
    }
    return {};
}

/// Checks that `body` is a run of whole elements without another id; returns what is wrong.
std::string problemOfElements(std::string_view body) {
    while (!body.empty()) {
        const std::optional<BodyElement> element = firstElement(body);
        if (!element) {
            return "is not a run of whole elements: a text in it holds markup, or it was cut";
        }
        if (element->name == format::text::UNIQUEID) {
            return "has a " + std::string(format::text::UNIQUEID) + " that is not its first element";
        }
        body.remove_prefix(element->whole.size());
    }
    return {};
}

/// Fills `entry` from the body of an entry to be written; returns what is wrong.
std::string scanWrittenEntry(std::string_view body, StoreEntry& entry) {
    if (body.empty()) {
        return "is empty";
    }
    if (body.size() > maximumBodySize) {
        return "is longer than " + std::to_string(maximumBodySize) + " bytes";
    }
    const std::optional<BodyElement> first = firstElement(body);
    if (first && first->name == format::text::UNIQUEID) {
        std::string problem = problemOfId(*first);
        if (!problem.empty()) {
            return problem;
        }
        entry.id = first->text;
        body.remove_prefix(first->whole.size());
    }
    entry.body = body;
    return problemOfElements(body);
}

/// Fills `entry` from the body of an entry to be deleted from `schema`; returns what is wrong.
std::string scanDeletedEntry(std::string_view schema, std::string_view body, StoreEntry& entry) {
    const std::optional<BodyElement> id = firstElement(body);
    const bool isId = id && (id->name == format::text::UNIQUEID ||
                             (id->name == format::text::CALLLOGID && schema == format::text::DAS_CONVERSATIONS));
    if (!isId || id->whole.size() != body.size()) {
        return schema == format::text::DAS_CONVERSATIONS ? "is not one CallLogId or UniqueId" : "is not one UniqueId";
    }
    entry.id = id->text;
    return problemOfId(*id);
}

/// Removes the entry that `text` begins with and returns its body through `body`; returns what is wrong.
std::string takeEntryBody(std::string_view& text, std::string_view& body) {
    static const std::string entryBegin = openTag(format::text::ENTRY);
    static const std::string entryEnd = closeTag(format::text::ENTRY);
    if (!takeStart(text, entryBegin)) {
        return "does not begin with <Entry>: other text stands there, or the entry before it was torn apart";
    }
    const std::size_t end = text.find(entryEnd);
    if (end == std::string_view::npos) {
        return "has no </Entry>";
    }
    body = text.substr(0, end);
    text.remove_prefix(end + entryEnd.size());
    return body.find(entryBegin) == std::string_view::npos ? std::string() : "holds another <Entry>";
}

/// Fills the entries of `request` from `text`, all that follows the reason; returns what is wrong.
std::string scanEntries(std::string_view text, StoreRequest& request) {
    while (!text.empty()) {
        StoreEntry entry;
        std::string_view body;
        std::string problem = takeEntryBody(text, body);
        if (problem.empty()) {
            problem = request.action == StoreAction::write ? scanWrittenEntry(body, entry)
                                                           : scanDeletedEntry(request.schema, body, entry);
        }
        if (!problem.empty()) {
            return "entry " + std::to_string(request.entries.size() + 1) + " " + problem;
        }
        request.entries.push_back(entry);
    }
    if (request.entries.empty()) {
        return request.action == StoreAction::write ? "the request holds no entry to write"
                                                    : "the request names no entry to delete";
    }
    return {};
}

/// Fills all of `request` but its schema from `text`, all that follows the schema's start tag; returns what is
/// wrong.
std::string scanContent(std::string_view text, StoreRequest& request) {
    if (std::find(std::begin(storedSchemas), std::end(storedSchemas), request.schema) == std::end(storedSchemas)) {
        return "unknown schema " + std::string(request.schema);
    }
    if (!takeEnd(text, closeTag(format::text::SCHEMA))) {
        return "the request is cut short: it does not end with </Schema>";
    }
    const std::optional<StoreAction> action = takeAction(text);
    if (!action) {
        return "no ReasonForMessage of read_request, write_request or delete_request follows the schema's start tag";
    }
    request.action = *action;
    if (request.action == StoreAction::read) {
        return text.empty() ? std::string() : "a read_request holds nothing but its reason";
    }
    return scanEntries(text, request);
}

}  // namespace

StoreRequest scanStoreRequest(std::string_view text) {
    StoreRequest request;
    if (!takeStart(text, format::text::XMLHEADER)) {
        request.problem = "the request does not begin with " + std::string(format::text::XMLHEADER);
        return request;
    }
    request.schema = takeSchema(text);
    request.problem =
        request.schema.empty() ? "no start tag of a schema follows the XML declaration" : scanContent(text, request);
    return request;
}

bool servesPictureClips(std::string_view schema) {
    return schema == format::text::DAS_CALLLOGMISSEDCALLS;
}

}  // namespace calljournal
