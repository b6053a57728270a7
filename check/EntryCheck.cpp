#include "EntryCheck.h"

#include <algorithm>

#include "CarriedText.h"
#include "FieldsCheck.h"
#include "Texts.h"

namespace calljournal {

namespace text = format::text;

namespace {

constexpr std::size_t mostCalls = 10;

/// Finds the calls of an entry and checks them.
class CallsCheck {
public:
    CallsCheck(const Outline& outline, const EntryUnderCheck& entry, Findings& findings)
        : outline_(outline), entry_(entry), findings_(findings) {}

    /// Takes the elements that hold calls, and returns the others.
    std::vector<std::size_t> takeLists() {
        std::vector<std::size_t> fields;
        for (const std::size_t element : entry_.elements) {
            const std::string_view name = outline_.elements[element].name;
            if (name == text::LOGLIST && entry_.kind.hasCalls()) {
                takeList(element);
            } else if (name == text::ITEM && entry_.kind.hasCalls()) {
                takeLooseCall(element);
            } else if (isDecoded() || (name != text::CATEGORY && name != text::METHOD)) {
                checkBehindList(outline_.elements[element]);
                fields.push_back(element);
            }
        }
        return fields;
    }

    void run() {
        checkTooMany();
        const bool isCountExplained = checkCount();
        bool isReadAsSaid = true;
        for (std::size_t i = 0; i < calls_.size(); ++i) {
            const Element& item = outline_.elements[calls_[i]];
            const Place place = placeOf(item, i);
            if (outline_.rawText(item).empty()) {
                reportEmpty(place);
                continue;
            }
            const bool isRead = entry_.values != nullptr && i < entry_.values->calls.size();
            // Behind a call that was torn apart, the calls read are not those of the text any more.
            const bool isComparable = isRead && (isCountExplained || isReadAsSaid);
            reportFirstLooseText(place, calls_[i]);
            const FieldGroup group{entry_.kind.callFields, item.children,
                                   isComparable ? &entry_.values->calls[i] : nullptr, place};
            isReadAsSaid = checkFields(outline_, entry_, group, findings_) && isReadAsSaid;
        }
    }

private:
    bool isDecoded() const { return entry_.reader == Reader::decoder; }

    template <class... Values>
    void report(const Element& at, FindingKind kind, const Values&... values) {
        findings_.report(entry_.place.movedTo(at.begin), kind, values...);
    }

    /// Where a call is, counted from 0.
    Place placeOf(const Element& item, std::size_t call) const {
        Place place = entry_.place.movedTo(item.begin);
        place.call = call + 1;
        return place;
    }

    void reportFirstLooseText(const Place& place, std::size_t element) {
        holdsLooseText_ = holdsLooseText_ || findings_.reportLooseText(place, element);
    }

    void takeList(std::size_t element) {
        const Element& list = outline_.elements[element];
        if (list_ != nullptr) {
            report(list, isDecoded() ? FindingKind::ignoredList : FindingKind::additionalList);
        }
        if (list_ == nullptr || !isDecoded()) {
            takeCalls(list);
        }
        list_ = list_ == nullptr ? &list : list_;
        reportFirstLooseText(entry_.place, element);
    }

    void takeCalls(const Element& list) {
        for (const std::size_t child : list.children) {
            const Element& item = outline_.elements[child];
            if (item.name == text::ITEM) {
                calls_.push_back(child);
            } else {
                report(item, FindingKind::foreignInList, item.name);
            }
        }
    }

    void takeLooseCall(std::size_t element) {
        if (!isDecoded()) {
            calls_.push_back(element);
        }
        report(outline_.elements[element], isDecoded() ? FindingKind::ignoredItem : FindingKind::additionalItem);
    }

    void checkBehindList(const Element& element) {
        const std::vector<FieldDescriptor>& fields = entry_.kind.fields;
        if (list_ != nullptr && std::any_of(fields.begin(), fields.end(), [&](const FieldDescriptor& field) {
                return field.isNamed(element.name);
            })) {
            report(element, FindingKind::behindCalls, element.name);
        }
    }

    void checkTooMany() {
        if (calls_.size() <= mostCalls) {
            return;
        }
        Finding& finding = findings_.report(placeOf(outline_.elements[calls_[mostCalls]], mostCalls),
                                            FindingKind::tooManyCalls, std::to_string(calls_.size()));
        if (entry_.values != nullptr) {
            finding.values.push_back(std::to_string(entry_.values->calls.size()));
        }
    }

    void reportEmpty(const Place& place) {
        Finding& finding = findings_.report(place, isDecoded() ? FindingKind::emptyItem : FindingKind::emptyItemInList);
        if (isDecoded() && entry_.values != nullptr) {
            finding.values = {std::to_string(entry_.values->calls.size()), std::to_string(calls_.size())};
        }
    }

    /// Returns whether as many calls were read as the findings above say.
    bool checkCount() {
        if (entry_.values == nullptr || entry_.values->calls.size() == expectedCount()) {
            return true;
        }
        findings_.report(list_ == nullptr ? entry_.place : entry_.place.movedTo(list_->begin),
                         holdsHiddenTag() ? FindingKind::otherCallsForEscapes : FindingKind::otherCalls,
                         std::to_string(calls_.size()), std::to_string(entry_.values->calls.size()));
        return false;
    }

    /// Of the calls that are whole: ten for the list, and for a decoder those in front of an empty one.
    std::size_t expectedCount() const {
        std::size_t count = 0;
        for (const std::size_t call : calls_) {
            const Element& item = outline_.elements[call];
            if (isDecoded() && item.isClosed && outline_.rawText(item).empty()) {
                break;
            }
            count += item.isClosed ? 1U : 0U;
        }
        if (!isDecoded()) {
            return std::min(count, mostCalls);
        }
        return list_ != nullptr && list_->isClosed ? count : 0;
    }

    /// Whether unescaping the list once, as a decoder does first, makes or takes tags.
    bool holdsHiddenTag() const {
        if (list_ == nullptr || !isDecoded()) {
            return false;
        }
        const std::string raw(outline_.rawText(*list_));
        const std::string once = restoredText(raw, 1);
        return std::count(once.begin(), once.end(), '<') != std::count(raw.begin(), raw.end(), '<');
    }

    const Outline& outline_;
    const EntryUnderCheck& entry_;
    Findings& findings_;
    const Element* list_ = nullptr;  ///< The first list of calls.
    std::vector<std::size_t> calls_;
    bool holdsLooseText_ = false;
};

}  // namespace

void checkEntry(const Outline& outline, const EntryUnderCheck& entry, Findings& findings) {
    CallsCheck calls(outline, entry, findings);
    const std::vector<std::size_t> fields = calls.takeLists();
    const std::vector<std::string>* const values = entry.values == nullptr ? nullptr : &entry.values->fields;
    checkFields(outline, entry, {entry.kind.fields, fields, values, entry.place}, findings);
    calls.run();
}

}  // namespace calljournal
