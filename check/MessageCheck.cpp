#include "MessageCheck.h"

#include <algorithm>
#include <optional>

#include "EntryBody.h"
#include "Message.h"
#include "PrintableText.h"
#include "StoreReply.h"
#include "StoreRequest.h"
#include "Texts.h"

namespace calljournal {

namespace text = format::text;

namespace {

constexpr std::string_view resultElement = "Result";
constexpr std::string_view reasonElement = "Reason";

struct ActionName {
    std::string_view digit;
    std::string_view meaning;
};

constexpr ActionName actionNames[] = {{"0", "added"}, {"1", "changed"}, {"2", "viewed"}, {"3", "deleted"}};

/// Whether `text` is a decimal number of 32 bits, as a count is written.
bool isSignedNumber(std::string_view text) {
    const std::string_view digits = text.substr(!text.empty() && text.front() == '-' ? 1 : 0);
    return !digits.empty() && digits.size() <= 10 && digits.find_first_not_of("0123456789") == std::string_view::npos;
}

/// For each element the place that people know it by.
class Places {
public:
    Places(const Message& message) : outline_(message.outline), entryOf_(outline_.elements.size(), noElement) {
        for (std::size_t i = 0; i < message.entries.size(); ++i) {
            const MessageEntry& entry = message.entries[i];
            const std::string_view id = message.textOf(entry.elements, text::UNIQUEID);
            names_.push_back(entry.element == noElement
                                 ? std::string()
                                 : "entry " + std::to_string(i + 1) +
                                       (id.empty() ? "" : " (UniqueId " + fitted(printable(id), 40) + ")"));
            if (entry.element != noElement) {
                entryOf_[entry.element] = i;
            }
        }
        for (std::size_t i = 0; i < entryOf_.size(); ++i) {
            const std::size_t parent = outline_.elements[i].parent;
            if (entryOf_[i] == noElement && parent != noElement) {
                entryOf_[i] = entryOf_[parent];
            }
        }
    }

    const std::string& ofEntry(std::size_t index) const { return names_[index]; }

    std::string ofElement(std::size_t element) const {
        return element == noElement || entryOf_[element] == noElement ? std::string() : names_[entryOf_[element]];
    }

private:
    const Outline& outline_;
    std::vector<std::size_t> entryOf_;
    std::vector<std::string> names_;
};

/// What a reader made of each entry; nothing for one that it did not come to read.
struct EntriesRead {
    std::vector<std::optional<EntryValues>> values;
    std::vector<std::string> droppedFor;  ///< The call log type of each entry that the missed call list dropped.
    std::size_t count = 0;                ///< Of the entries that the reader saw.
};

class MessageCheck {
public:
    MessageCheck(std::string_view text, const Message& message)
        : text_(text), message_(message), outline_(message.outline), findings_(message.outline), places_(message) {}

    std::vector<Finding> run() {
        switch (message_.type) {
            case MessageType::request:
                checkRequest();
                break;
            case MessageType::reply:
                checkReply();
                break;
            case MessageType::notification:
                checkNotification();
                break;
            case MessageType::entries:
                checkTopElements();
                checkEntries(readEntries());
                break;
            case MessageType::unknown:
                checkUnknown();
                break;
        }
        addSyntaxErrors();
        std::stable_sort(findings_.all.begin(), findings_.all.end(),
                         [](const Finding& a, const Finding& b) { return a.at < b.at; });
        return std::move(findings_.all);
    }

private:
    void tell(std::size_t at, const std::string& what) { findings_.add(at, std::string(), what); }

    void addSyntaxErrors() {
        for (const SyntaxError& error : outline_.syntaxErrors) {
            if (findings_.told.count(&error) == 0) {
                findings_.add(error.at, places_.ofElement(error.element), error.what);
            }
        }
    }

    void checkUnknown() {
        tell(0, text_ == "failed" ? "the adapter's own answer: it had no data access service to ask"
                : text_.empty()   ? "the text is empty"
                                  : "no request, reply, notification or entry of a call log is here");
    }

    void checkDeclaration() {
        if (text_.substr(0, text::XMLHEADER.size()) != text::XMLHEADER) {
            tell(0, "the text does not begin with " + std::string(text::XMLHEADER));
        }
    }

    // Envelopes.

    void checkRequest() {
        checkDeclaration();
        const std::size_t before = findings_.all.size();
        const std::vector<std::size_t>& inside = outline_.elements[message_.schema].children;
        const std::string_view reason = message_.textOf(inside, text::REASONFORMESSAGE);
        checkTopElements();
        checkEnvelope({text::REASONFORMESSAGE, text::ENTRY});
        if (!isOneOf(reason, {text::READREQUEST, text::WRITEREQUEST, text::DELETEREQUEST})) {
            tell(placeOf(inside, text::REASONFORMESSAGE),
                 "the reason " + quoted(reason) + " is none of read_request, write_request, delete_request");
        }
        if (isSchemaRead() && reason == text::WRITEREQUEST) {
            checkEntries(readEntries());
        }
        const std::string problem = scanStoreRequest(text_).problem;
        if (!problem.empty() && (before == findings_.all.size() || isSchemaRead())) {
            tell(outline_.elements[message_.schema].begin, "the store refuses this request: " + problem);
        }
    }

    void checkReply() {
        checkDeclaration();
        checkTopElements();
        if (message_.schema == noElement) {
            return checkEntries(readEntries());
        }
        checkEnvelope({resultElement, reasonElement, text::UNIQUEID, text::ENTRY, text::CATEGORY, text::METHOD});
        checkResult();
        if (isSchemaRead()) {
            checkEntries(readEntries());
        }
    }

    void checkResult() {
        const std::vector<std::size_t>& inside = outline_.elements[message_.schema].children;
        const std::size_t element = firstNamed(outline_, inside, resultElement);
        if (element == noElement) {
            return;
        }
        const std::string_view result = outline_.rawText(outline_.elements[element]);
        const std::size_t at = outline_.elements[element].begin;
        if (result == "failed") {
            tell(at, "the data access service refused: " + quoted(message_.textOf(inside, reasonElement)));
        } else if (result != "ok") {
            tell(at, "the result " + quoted(result) + " is neither ok nor failed, which counts as a failure");
        }
    }

    /// Whether anybody reads the schema; tells it if not.
    bool isSchemaRead() {
        if (message_.kind != nullptr) {
            return true;
        }
        if (!isSchemaTold_) {
            isSchemaTold_ = true;
            std::string known;
            for (const KindDescriptor& kind : kindDescriptors()) {
                known += known.empty() ? "" : ", ";
                known += kind.schema;
            }
            tell(outline_.elements[message_.schema].begin, "nobody reads the schema " + quoted(message_.schemaName) +
                                                               "; all in it is lost (schemas with readers: " + known +
                                                               ")");
        }
        return false;
    }

    /// The begin of the first element of that name, or of the schema if there is none.
    std::size_t placeOf(const std::vector<std::size_t>& elements, std::string_view name) const {
        const std::size_t element = firstNamed(outline_, elements, name);
        return outline_.elements[element == noElement ? message_.schema : element].begin;
    }

    void checkEnvelope(std::initializer_list<std::string_view> known) {
        checkGaps(outline_, message_.schema, std::string(), findings_);
        for (const std::size_t element : outline_.elements[message_.schema].children) {
            checkKnown(element, known, message_.type == MessageType::request ? "a request" : "a reply");
        }
    }

    void checkKnown(std::size_t element, std::initializer_list<std::string_view> known, const std::string& whose) {
        const std::string_view name = outline_.elements[element].name;
        if (!isOneOf(name, known)) {
            tell(outline_.elements[element].begin, std::string(name) + " is no element of " + whose +
                                                       ": nobody reads " +
                                                       quoted(outline_.rawText(outline_.elements[element])));
        }
    }

    /// Checks what stands at the top of the text.
    void checkTopElements() {
        checkGaps(outline_, noElement, std::string(), findings_);
        for (const std::size_t element : outline_.top) {
            const bool isEntry = message_.entries.size() == 1 && message_.entries.front().element == noElement;
            if (message_.schema != noElement && element != message_.schema) {
                checkKnown(element, {}, "the text around the schema");
            } else if (message_.schema == noElement && !isEntry) {
                checkKnown(element, {text::ENTRY, text::CATEGORY, text::METHOD}, "a run of entries");
            }
        }
    }

    // Notifications.

    void checkNotification() {
        checkDeclaration();
        checkGaps(outline_, noElement, std::string(), findings_);
        if (message_.kind != nullptr) {
            checkUpdate();
        } else if (message_.method == text::MISSEDCALLSCOUNTUPDATE_XML) {
            checkCount();
        } else {
            std::string known(text::MISSEDCALLSCOUNTUPDATE_XML);
            for (const KindDescriptor& kind : kindDescriptors()) {
                known += kind.updateMethod.empty() ? "" : ", " + std::string(kind.updateMethod);
            }
            tell(outline_.begin,
                 "no observer knows the method " + quoted(message_.method) + " (methods: " + known + ")");
        }
    }

    void checkCount() {
        const std::string_view value = message_.textOf(outline_.top, text::VALUE);
        for (const std::size_t element : outline_.top) {
            checkKnown(element, {text::METHOD, text::VALUE}, "a count");
        }
        if (!isSignedNumber(value)) {
            tell(outline_.begin, "Value holds no number of missed calls but " + quoted(value));
        } else if (value.front() == '-') {
            tell(outline_.begin, "Value is " + std::string(value) +
                                     ": a count above 2147483647 is written as a negative number, 4294967296 less");
        }
    }

    void checkUpdate() {
        const std::string_view action = message_.textOf(outline_.top, text::ACTIONTYPE);
        const bool isKnown = std::any_of(std::begin(actionNames), std::end(actionNames),
                                         [&](const ActionName& row) { return row.digit == action; });
        if (!isKnown) {
            std::string known;
            for (const ActionName& row : actionNames) {
                known += (known.empty() ? "" : ", ") + std::string(row.digit) + " " + std::string(row.meaning);
            }
            const std::size_t element = firstNamed(outline_, outline_.top, text::ACTIONTYPE);
            if (element == noElement) {
                tell(text_.size(), "there is no ActionType: the message is cut, or it is none");
            } else {
                tell(outline_.elements[element].begin,
                     "ActionType: " + quoted(action) + " names no action (" + known + ")");
            }
        }
        checkTail();
        checkEntries(readEntries());
    }

    /// The id to delete and the action follow the entry.
    void checkTail() {
        std::string_view last;
        for (const std::size_t element : outline_.top) {
            const std::string_view name = outline_.elements[element].name;
            const bool isAction = last == text::ACTIONTYPE;
            const bool isId = last == text::UNIQUEIDTODELETE && name != text::ACTIONTYPE;
            if (isAction || isId) {
                tell(outline_.elements[element].begin, std::string(name) + " is expected before " + std::string(last) +
                                                           "; a decoder's cursor stops in front of it");
            }
            last = isAction || isId ? last : name;
        }
    }

    // Entries.

    EntriesRead readEntries() const { return message_.reader == Reader::missedList ? readByList() : readByDecoder(); }

    EntriesRead readByDecoder() const {
        EntriesRead read;
        if (!message_.entries.empty() && message_.entries.front().element == noElement) {
            read.values.emplace_back(message_.kind->decode(message_.bodyOf(message_.entries.front()).c_str()));
            read.count = 1;
        } else {
            for (const std::string& body : readEntryBodies(std::string(text_))) {
                read.values.emplace_back(message_.kind->decode(body.c_str()));
            }
            read.count = read.values.size();
        }
        read.droppedFor.resize(read.count);
        return read;
    }

    EntriesRead readByList() const {
        EntriesRead read;
        for (ListEntry& entry : readMissedList(textForList())) {
            read.values.push_back(std::move(entry.values));
            read.droppedFor.push_back(std::move(entry.callLogType));
        }
        read.count = read.values.size();
        return read;
    }

    /// The reply that the reader of the list will get: for a request to write, what the store makes of it.
    std::string textForList() const {
        if (message_.type != MessageType::request) {
            return std::string(text_);
        }
        std::string reply = "<Schema name=\"" + std::string(message_.schemaName) + "\">";
        for (const MessageEntry& entry : message_.entries) {
            if (isClosed(entry)) {
                reply += "<Entry>";
                appendWithPictureClip(message_.bodyOf(entry), reply);
                reply += "</Entry>";
            }
        }
        return reply + "</Schema>";
    }

    void checkEntries(const EntriesRead& read) {
        std::size_t closed = 0;
        for (const MessageEntry& entry : message_.entries) {
            closed += isClosed(entry) ? 1U : 0U;
        }
        const bool isWhole = closed == read.count;
        if (!isWhole) {
            const std::size_t at = message_.entries.empty() || message_.entries.front().element == noElement
                                       ? outline_.begin
                                       : outline_.elements[message_.entries.front().element].begin;
            tell(at, "whole entries here: " + std::to_string(closed) + ", entries read: " + std::to_string(read.count) +
                         "; markup in a text tears one apart");
        }
        std::size_t next = 0;
        for (std::size_t i = 0; i < message_.entries.size(); ++i) {
            const std::size_t index = isWhole && isClosed(message_.entries[i]) ? next++ : noElement;
            checkOne(i, index, read);
        }
    }

    bool isClosed(const MessageEntry& entry) const {
        return entry.element == noElement || outline_.elements[entry.element].isClosed;
    }

    void checkOne(std::size_t i, std::size_t index, const EntriesRead& read) {
        const MessageEntry& entry = message_.entries[i];
        const std::string& place = places_.ofEntry(i);
        const bool isRead = index != noElement && read.values[index].has_value();
        const std::size_t at = entry.element == noElement ? entry.begin : outline_.elements[entry.element].begin;
        if (index != noElement && !isRead) {
            findings_.add(at, place, droppedText(read.droppedFor[index]));
        }
        if (isRead && message_.reader == Reader::missedList && read.values[index]->calls.empty()) {
            findings_.add(at, place, "it holds no call; whoever reads the missed call list deletes it");
        }
        if (entry.element != noElement) {
            checkGaps(outline_, entry.element, place, findings_);
        }
        checkEntry(outline_,
                   {*message_.kind, message_.reader, entry.elements, at, place, isRead ? &*read.values[index] : nullptr,
                    message_.type == MessageType::request},
                   findings_);
    }

    static std::string droppedText(const std::string& type) {
        return "the missed call list drops it: " +
               (type.empty() ? "neither the schema nor a Category or Method says that it is Missed"
                             : "its Category, or an earlier one, is " + quoted(type) + " and not \"Missed\"");
    }

    std::string_view text_;
    const Message& message_;
    const Outline& outline_;
    Findings findings_;
    Places places_;
    bool isSchemaTold_ = false;
};

}  // namespace

CheckedMessage checkMessage(std::string_view text, std::string_view kindName) {
    // Captures end with a line feed that belongs to no message.
    const std::size_t end = text.find_last_not_of("\r\n");
    const std::string_view whole = text.substr(0, end == std::string_view::npos ? 0 : end + 1);
    const Message message = messageOf(whole, kindName);
    return {titleOf(message), MessageCheck(whole, message).run()};
}

}  // namespace calljournal
