#include "Message.h"

#include <algorithm>
#include <set>
#include <utility>

#include "Text.h"
#include "Texts.h"

namespace calljournal {

namespace text = format::text;

namespace {

/// The names of the elements of an entry and of its calls.
std::set<std::string_view> namesIn(const Outline& outline, std::vector<std::size_t> elements) {
    std::set<std::string_view> names;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const Element& element = outline.elements[elements[i]];
        if (element.name == text::LOGLIST || element.name == text::ITEM) {
            elements.insert(elements.end(), element.children.begin(), element.children.end());
        } else {
            names.insert(element.name);
        }
    }
    return names;
}

/// How badly the names fit a kind: foreign ones first, then missing ones.
std::pair<std::size_t, std::size_t> misfit(const KindDescriptor& kind, std::set<std::string_view> names,
                                           bool hasCalls) {
    std::size_t missing = 0;
    const auto take = [&](const std::vector<FieldDescriptor>& rows, bool isExpected) {
        for (const FieldDescriptor& row : rows) {
            const bool isThere = names.erase(row.writtenAs) + names.erase(row.readAs) > 0;
            missing += !isThere && isExpected && row.isAlwaysWritten() ? 1U : 0U;
        }
    };
    take(kind.fields, true);
    take(kind.callFields, hasCalls);
    return {names.size() + (hasCalls && !kind.hasCalls() ? 1U : 0U), missing};
}

const KindDescriptor* guessedKind(const Outline& outline, const std::vector<std::size_t>& elements) {
    const std::set<std::string_view> names = namesIn(outline, elements);
    const std::size_t list = firstNamed(outline, elements, text::LOGLIST);
    const bool hasCalls = list != noElement && !outline.elements[list].children.empty();
    const std::vector<KindDescriptor>& kinds = kindDescriptors();
    return &*std::min_element(kinds.begin(), kinds.end(), [&](const KindDescriptor& a, const KindDescriptor& b) {
        return misfit(a, names, hasCalls) < misfit(b, names, hasCalls);
    });
}

/// Whether any kind has an element of that name outside of its calls.
bool isEntryElement(std::string_view name) {
    return isOneOf(name, {text::LOGLIST, text::ITEM, text::PICTURE}) ||
           std::any_of(kindDescriptors().begin(), kindDescriptors().end(), [&](const KindDescriptor& kind) {
               return std::any_of(kind.fields.begin(), kind.fields.end(),
                                  [&](const FieldDescriptor& field) { return field.isNamed(name); });
           });
}

/// Drops what every reader of a message takes: the attribute of a schema, and blanks in end tags.
void dropToleratedErrors(std::vector<SyntaxError>& errors) {
    const auto isTolerated = [](const SyntaxError& error) {
        return error.kind == FindingKind::noPlainTag ||
               (error.kind == FindingKind::attributes && error.what == text::SCHEMA);
    };
    errors.erase(std::remove_if(errors.begin(), errors.end(), isTolerated), errors.end());
}

/// Fills a message step by step.
class Recognition {
public:
    Recognition(std::string_view text, std::string_view kindName) : kindName_(kindName) {
        message_.outline = outlineOf(text);
        dropToleratedErrors(message_.outline.syntaxErrors);
    }

    Message message() {
        const Outline& outline = message_.outline;
        const std::size_t method = firstNamed(outline, outline.top, text::METHOD);
        message_.schema = firstNamed(outline, outline.top, text::SCHEMA);
        if (message_.schema != noElement) {
            takeSchema();
        } else if (firstNamed(outline, outline.top, text::ENTRY) != noElement) {
            takeEntries(outline.top);
            takeEntriesWithoutSchema(method);
        } else if (method != noElement) {
            takeNotification(method);
        } else if (std::any_of(outline.top.begin(), outline.top.end(),
                               [&](std::size_t element) { return isEntryElement(outline.elements[element].name); })) {
            takeBody();
        }
        return std::move(message_);
    }

private:
    void takeSchema() {
        const Element& schema = message_.outline.elements[message_.schema];
        message_.schemaName = schema.attribute;
        const bool isRequest = firstNamed(message_.outline, schema.children, text::REASONFORMESSAGE) != noElement;
        message_.type = isRequest ? MessageType::request : MessageType::reply;
        message_.kind = kindOfSchema(message_.schemaName);
        if (isOneOf(message_.schemaName,
                    {"", text::DAS_CALLLOG, text::DAS_CALLLOG_PHONEBOOK, text::DAS_CONVERSATIONS})) {
            message_.kind = kindOfSchema(text::DAS_CALLLOGMISSEDCALLS);
        }
        message_.reader =
            message_.kind == kindOfSchema(text::DAS_CALLLOGMISSEDCALLS) ? Reader::missedList : Reader::decoder;
        takeEntries(schema.children);
    }

    /// Entries that people cut out of a reply have a decoder for a reader, those with a method the list's.
    void takeEntriesWithoutSchema(std::size_t method) {
        message_.type = method == noElement ? MessageType::entries : MessageType::reply;
        message_.reader = method == noElement ? Reader::decoder : Reader::missedList;
        message_.kind = method == noElement ? kindOf(message_.entries.front().elements)
                                            : kindOfSchema(text::DAS_CALLLOGMISSEDCALLS);
    }

    const KindDescriptor* kindOf(const std::vector<std::size_t>& elements) const {
        return kindName_.empty() ? guessedKind(message_.outline, elements) : kindNamed(kindName_);
    }

    void takeEntries(const std::vector<std::size_t>& elements) {
        for (const std::size_t element : elements) {
            const Element& entry = message_.outline.elements[element];
            if (entry.name == text::ENTRY) {
                const Place place{entry.begin, message_.entries.size() + 1,
                                  message_.textOf(entry.children, text::UNIQUEID)};
                message_.entries.push_back({place, element, entry.children, entry.textBegin, entry.textEnd});
            }
        }
    }

    void takeNotification(std::size_t method) {
        const Outline& outline = message_.outline;
        message_.type = MessageType::notification;
        message_.method = outline.rawText(outline.elements[method]);
        message_.kind = kindOfMethod(message_.method);
        if (message_.kind == nullptr) {
            return;
        }
        const std::size_t begin = outline.elements[method].end;
        MessageEntry entry{{begin}, noElement, {}, begin, outline.text.size()};
        for (const std::size_t element : outline.top) {
            if (!isOneOf(outline.elements[element].name, {text::METHOD, text::UNIQUEIDTODELETE, text::ACTIONTYPE})) {
                entry.elements.push_back(element);
            }
        }
        message_.entries.push_back(std::move(entry));
    }

    void takeBody() {
        const Outline& outline = message_.outline;
        message_.type = MessageType::entries;
        message_.kind = kindOf(outline.top);
        message_.entries.push_back({{outline.begin}, noElement, outline.top, outline.begin, outline.text.size()});
    }

    std::string_view kindName_;
    Message message_;
};

std::string requestTitle(std::string_view reason) {
    return reason == text::READREQUEST     ? "read request, "
           : reason == text::WRITEREQUEST  ? "write request, "
           : reason == text::DELETEREQUEST ? "delete request, "
                                           : "request, ";
}

}  // namespace

std::string_view Message::textOf(const std::vector<std::size_t>& elements, std::string_view name) const {
    const std::size_t element = firstNamed(outline, elements, name);
    return element == noElement ? std::string_view() : outline.rawText(outline.elements[element]);
}

Message messageOf(std::string_view text, std::string_view kindName) {
    return Recognition(text, kindName).message();
}

std::string titleOf(const Message& message, ShowValue show) {
    const bool hasSchema = message.type == MessageType::request || message.type == MessageType::reply;
    const bool isOwnSchema = message.kind != nullptr && message.kind->schema == message.schemaName;
    const std::string kind = hasSchema && !isOwnSchema ? "schema \"" + show(message.schemaName, ValueUse::text) + '"'
                                                       : std::string(message.kind == nullptr ? "" : message.kind->name);
    const std::size_t count = message.entries.size();
    const std::string entries = std::to_string(count) + (count == 1 ? " entry" : " entries");
    switch (message.type) {
        case MessageType::request: {
            const std::string_view reason =
                message.textOf(message.outline.elements[message.schema].children, text::REASONFORMESSAGE);
            return requestTitle(reason) + kind + (reason == text::READREQUEST ? "" : ", " + entries);
        }
        case MessageType::reply:
            return "reply, " + kind + ", " + entries;
        case MessageType::notification:
            return kind.empty() ? "notification" : "notification, " + kind;
        case MessageType::entries:
            return entries + ", " + kind;
        case MessageType::unknown:
            break;
    }
    return "unknown text";
}

}  // namespace calljournal
