#include "MessageCheck.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string>

#include "EntryCheck.h"
#include "EntryReading.h"
#include "JournalServiceObserverIfc.h"
#include "StoreRequest.h"
#include "StoreWords.h"
#include "Text.h"
#include "Texts.h"
#include "Wording.h"

namespace calljournal {

namespace text = format::text;

namespace {

constexpr JournalServiceObserverIfc::ActionType actions[] = {
    JournalServiceObserverIfc::ADDED, JournalServiceObserverIfc::CHANGED, JournalServiceObserverIfc::VIEWED,
    JournalServiceObserverIfc::DELETED};

/// Whether `text` is a decimal number of 32 bits, as a count is written.
bool isSignedNumber(std::string_view text) {
    const std::string_view digits = text.substr(!text.empty() && text.front() == '-' ? 1 : 0);
    return !digits.empty() && digits.size() <= 10 && digits.find_first_not_of("0123456789") == std::string_view::npos;
}

class MessageCheck {
public:
    explicit MessageCheck(const Message& message)
        : message_(message), outline_(message.outline), findings_(message.outline) {}

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
                checkEntries();
                break;
            case MessageType::unknown:
                report(0, outline_.text == failedResult ? FindingKind::adaptersAnswer
                          : outline_.text.empty()       ? FindingKind::emptyText
                                                        : FindingKind::unknownText);
                break;
        }
        for (const auto& [element, errors] : findings_.syntaxErrors()) {
            for (const SyntaxError* error : errors) {
                findings_.report(placeOf(element), *error);
            }
        }
        return findings_.takeInOrder();
    }

private:
    template <class... Values>
    void report(std::size_t at, FindingKind kind, const Values&... values) {
        findings_.report({at}, kind, values...);
    }

    /// The place of the entry that `element` is or is inside of.
    Place placeOf(std::size_t element) const {
        const auto isBefore = [](std::size_t one, const MessageEntry& entry) { return one < entry.element; };
        const auto behind = std::upper_bound(message_.entries.begin(), message_.entries.end(), element, isBefore);
        const bool isInside = element != noElement && behind != message_.entries.begin() &&
                              outline_.elements[element].begin < outline_.elements[std::prev(behind)->element].end;
        return isInside ? std::prev(behind)->place : Place();
    }

    /// Reports an element where nobody looks for it.
    void reportForeign(const Element& element, FindingKind kind) {
        report(element.begin, kind, element.name, outline_.rawText(element));
    }

    void reportForeignBut(const std::vector<std::size_t>& elements, std::initializer_list<std::string_view> known,
                          FindingKind kind) {
        for (const std::size_t element : elements) {
            if (!isOneOf(outline_.elements[element].name, known)) {
                reportForeign(outline_.elements[element], kind);
            }
        }
    }

    void checkDeclaration() {
        if (outline_.text.substr(0, text::XMLHEADER.size()) != text::XMLHEADER) {
            report(0, FindingKind::noDeclaration, text::XMLHEADER);
        }
    }

    // Envelopes.

    const Element& schema() const { return outline_.elements[message_.schema]; }

    void checkRequest() {
        checkDeclaration();
        const std::string_view reason = message_.textOf(schema().children, text::REASONFORMESSAGE);
        checkTopElements();
        findings_.reportLooseText({}, message_.schema);
        reportForeignBut(schema().children, {text::REASONFORMESSAGE, text::ENTRY}, FindingKind::foreignInRequest);
        if (!isOneOf(reason, {text::READREQUEST, text::WRITEREQUEST, text::DELETEREQUEST})) {
            const std::size_t element = firstNamed(outline_, schema().children, text::REASONFORMESSAGE);
            report(element == noElement ? schema().begin : outline_.elements[element].begin, FindingKind::unknownReason,
                   reason);
        }
        if (isSchemaRead() && reason == text::WRITEREQUEST) {
            checkEntries();
        }
        const std::string problem = scanStoreRequest(outline_.text).problem;
        if (!problem.empty() && message_.kind != nullptr) {
            report(schema().begin, FindingKind::refusedByStore, problem);
        }
    }

    void checkReply() {
        checkDeclaration();
        checkTopElements();
        if (message_.schema == noElement) {
            return checkEntries();
        }
        findings_.reportLooseText({}, message_.schema);
        reportForeignBut(schema().children,
                         {resultElement, reasonElement, text::UNIQUEID, text::ENTRY, text::CATEGORY, text::METHOD},
                         FindingKind::foreignInReply);
        checkResult();
        if (isSchemaRead()) {
            checkEntries();
        }
    }

    void checkResult() {
        const std::size_t element = firstNamed(outline_, schema().children, resultElement);
        if (element == noElement) {
            return;
        }
        const std::string_view result = outline_.rawText(outline_.elements[element]);
        const std::size_t at = outline_.elements[element].begin;
        if (result == failedResult) {
            report(at, FindingKind::refusal, message_.textOf(schema().children, reasonElement));
        } else if (result != okResult) {
            report(at, FindingKind::unknownResult, result);
        }
    }

    /// Returns whether anybody reads the schema, and reports it if not.
    bool isSchemaRead() {
        if (message_.kind == nullptr) {
            std::vector<std::string> known;
            for (const KindDescriptor& kind : kindDescriptors()) {
                known.emplace_back(kind.schema);
            }
            report(schema().begin, FindingKind::unreadSchema, message_.schemaName, joined(known));
        }
        return message_.kind != nullptr;
    }

    void checkTopElements() {
        findings_.reportLooseText({}, noElement);
        if (message_.schema == noElement) {
            if (message_.entries.size() != 1 || message_.entries.front().element != noElement) {
                reportForeignBut(outline_.top, {text::ENTRY, text::CATEGORY, text::METHOD},
                                 FindingKind::foreignAmongEntries);
            }
            return;
        }
        for (const std::size_t element : outline_.top) {
            if (element != message_.schema) {
                reportForeign(outline_.elements[element], FindingKind::foreignAroundSchema);
            }
        }
    }

    // Notifications.

    void checkNotification() {
        checkDeclaration();
        findings_.reportLooseText({}, noElement);
        if (message_.kind != nullptr) {
            checkAction();
            checkTail();
            checkEntries();
        } else if (message_.method == text::MISSEDCALLSCOUNTUPDATE_XML) {
            checkCount();
        } else {
            std::vector<std::string> known{std::string(text::MISSEDCALLSCOUNTUPDATE_XML)};
            for (const KindDescriptor& kind : kindDescriptors()) {
                if (!kind.updateMethod.empty()) {
                    known.emplace_back(kind.updateMethod);
                }
            }
            report(outline_.begin, FindingKind::unknownMethod, message_.method, joined(known));
        }
    }

    void checkCount() {
        const std::string_view value = message_.textOf(outline_.top, text::VALUE);
        reportForeignBut(outline_.top, {text::METHOD, text::VALUE}, FindingKind::foreignInCount);
        if (!isSignedNumber(value)) {
            report(outline_.begin, FindingKind::noCount, value);
        } else if (value.front() == '-') {
            report(outline_.begin, FindingKind::negativeCount, value);
        }
    }

    void checkAction() {
        const std::size_t element = firstNamed(outline_, outline_.top, text::ACTIONTYPE);
        if (element == noElement) {
            return report(outline_.text.size(), FindingKind::missingAction);
        }
        const std::string_view action = outline_.rawText(outline_.elements[element]);
        if (std::none_of(std::begin(actions), std::end(actions),
                         [&](int known) { return action == std::to_string(known); })) {
            Place place{outline_.elements[element].begin};
            place.element = text::ACTIONTYPE;
            findings_.report(place, FindingKind::unknownAction, action);
        }
    }

    /// The id to delete and the action follow the entry.
    void checkTail() {
        std::string_view last;
        for (const std::size_t element : outline_.top) {
            const std::string_view name = outline_.elements[element].name;
            if (last == text::ACTIONTYPE || (last == text::UNIQUEIDTODELETE && name != text::ACTIONTYPE)) {
                report(outline_.elements[element].begin, FindingKind::outOfOrder, name, last);
            } else {
                last = name;
            }
        }
    }

    // Entries.

    void checkEntries() {
        const std::vector<ReadEntry> read = readEntries(message_);
        std::vector<const ReadEntry*> readOf(message_.entries.size());
        const auto closed = static_cast<std::size_t>(
            std::count_if(message_.entries.begin(), message_.entries.end(),
                          [&](const MessageEntry& entry) { return message_.isClosed(entry); }));
        if (closed == read.size()) {
            auto next = read.begin();
            std::transform(message_.entries.begin(), message_.entries.end(), readOf.begin(),
                           [&](const MessageEntry& entry) { return message_.isClosed(entry) ? &*next++ : nullptr; });
        } else {
            const bool hasPlace = !message_.entries.empty() && message_.entries.front().element != noElement;
            report(hasPlace ? message_.entries.front().place.at : outline_.begin, FindingKind::tornEntries,
                   std::to_string(closed), std::to_string(read.size()));
        }
        for (std::size_t i = 0; i < readOf.size(); ++i) {
            checkOne(message_.entries[i], readOf[i]);
        }
    }

    /// `read` is null if it is not known what was read of the entry.
    void checkOne(const MessageEntry& entry, const ReadEntry* read) {
        const EntryValues* const values = read != nullptr && read->values.has_value() ? &*read->values : nullptr;
        if (read != nullptr && values == nullptr) {
            findings_.report(
                entry.place,
                read->callLogType.empty() ? FindingKind::droppedForNothing : FindingKind::droppedForCategory,
                read->callLogType);
        }
        if (values != nullptr && message_.reader == Reader::missedList && values->calls.empty()) {
            findings_.report(entry.place, FindingKind::entryWithoutCalls);
        }
        if (entry.element != noElement) {
            findings_.reportLooseText(entry.place, entry.element);
        }
        checkEntry(outline_,
                   {*message_.kind, message_.reader, entry.elements, entry.place, values,
                    message_.type == MessageType::request},
                   findings_);
    }

    const Message& message_;
    const Outline& outline_;
    Findings findings_;
};

}  // namespace

CheckedMessage checkMessage(std::string_view text, std::string_view kindName) {
    // Captures end with a line feed that belongs to no message.
    const std::size_t end = text.find_last_not_of("\r\n");
    CheckedMessage checked{messageOf(text.substr(0, end == std::string_view::npos ? 0 : end + 1), kindName), {}};
    checked.findings = MessageCheck(checked.message).run();
    return checked;
}

}  // namespace calljournal
