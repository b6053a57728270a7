#include "FieldsCheck.h"

#include <algorithm>

#include "CarriedText.h"
#include "FieldValue.h"
#include "Texts.h"

namespace calljournal {

namespace text = format::text;

namespace {

/// The word that a reader makes of an absent or empty element.
std::string_view wordOfNothing(const format::Words& words) {
    const auto* const nothing =
        std::find_if(words.begin, words.end, [](const format::Word& row) { return row.word.empty(); });
    const int value = nothing == words.end ? words.begin->value : nothing->value;
    return std::find_if(words.begin, words.end, [&](const format::Word& row) { return row.value == value; })->word;
}

std::string_view valueOfNothing(const FieldDescriptor& field) {
    return field.type == ValueType::text   ? std::string_view()
           : field.type == ValueType::flag ? text::FALSE
                                           : wordOfNothing(field.words);
}

/// An element that belongs to a field, and what was read as the value of that field.
struct CheckedField {
    const FieldDescriptor& field;
    std::size_t index;
    const Element& element;
    std::string said;
    const std::string* read;  ///< Null if nobody read it.

    bool isReadAsSaid() const { return read != nullptr && *read == said; }
    bool isReadOtherwise() const { return read != nullptr && *read != said; }
};

class FieldsCheck {
public:
    FieldsCheck(const Outline& outline, const EntryUnderCheck& entry, const FieldGroup& group, Findings& findings)
        : outline_(outline), entry_(entry), group_(group), findings_(findings), found_(group.fields.size() + 1) {}

    bool run() {
        for (const std::size_t element : group_.elements) {
            Found& found = found_[rowOf(element)];
            found.first = std::min(found.first, element);
            ++found.count;
        }
        for (const std::size_t element : group_.elements) {
            const std::size_t row = rowOf(element);
            if (row == group_.fields.size()) {
                reportForeign(outline_.elements[element]);
            } else if (element == found_[row].first) {
                checkOrder(row, valueOf(row));
            } else {
                reportRepeat(row, element);
            }
        }
        for (std::size_t row = 0; row < group_.fields.size(); ++row) {
            if (found_[row].count == 0) {
                checkAbsent(row);
            } else if (found_[row].count == 1) {
                checkValue(valueOf(row));
            }
        }
        return isReadAsSaid_;
    }

private:
    /// The elements of one field.
    struct Found {
        std::size_t first = noElement;
        std::size_t count = 0;
    };

    std::size_t rowOf(std::size_t element) const {
        const auto row = std::find_if(group_.fields.begin(), group_.fields.end(), [&](const FieldDescriptor& field) {
            return field.isNamed(outline_.elements[element].name);
        });
        return static_cast<std::size_t>(row - group_.fields.begin());
    }

    const std::string* readValue(std::size_t row) const {
        return group_.values == nullptr ? nullptr : &(*group_.values)[row];
    }

    CheckedField valueOf(std::size_t row, std::size_t index) const {
        const FieldDescriptor& field = group_.fields[row];
        const Element& element = outline_.elements[index];
        return {field, index, element, restoredText(std::string(outline_.rawText(element)), field.unescapes),
                readValue(row)};
    }

    CheckedField valueOf(std::size_t row) const { return valueOf(row, found_[row].first); }

    template <class... Values>
    Finding& report(std::size_t at, FindingKind kind, const Values&... values) {
        return findings_.report(group_.place.movedTo(at), kind, values...);
    }

    template <class... Values>
    Finding& reportInText(const CheckedField& value, FindingKind kind, const Values&... values) {
        Finding& finding = report(value.element.begin, kind, values...);
        finding.place.element = value.field.readAs;
        return finding;
    }

    /// Adds what became of a text that something wrong in it might have changed.
    void addOutcome(Finding& finding, const CheckedField& value) {
        if (value.isReadAsSaid()) {
            finding.outcome = Outcome::unchanged;
        } else if (value.isReadOtherwise()) {
            finding.outcome = Outcome::changed;
            finding.values.push_back(*value.read);
            isReadAsSaid_ = false;
        }
    }

    void reportForeign(const Element& element) {
        const std::string_view raw = outline_.rawText(element);
        if (element.name == text::PICTURE) {
            report(element.begin, FindingKind::pictureByOtherName, text::PICTURE, text::PICTURE_CLIP, raw);
        } else {
            report(element.begin, group_.place.call == 0 ? FindingKind::foreignInEntry : FindingKind::foreignInCall,
                   element.name, raw, entry_.kind.name);
        }
    }

    /// The decoder's cursor follows elements in the order of writing, or of reading where that differs.
    void checkOrder(std::size_t row, const CheckedField& value) {
        for (std::size_t later = row + 1; later < group_.fields.size(); ++later) {
            const std::size_t before = found_[later].first;
            if (before < value.index && group_.fields[later].readRank >= value.field.readRank) {
                Finding& finding = report(value.element.begin, FindingKind::outOfOrder, value.field.writtenAs,
                                          outline_.elements[before].name);
                // A loss is reported with the value, if there is one.
                const bool isUnchanged = found_[row].count == 1 && value.isReadAsSaid();
                finding.outcome = isUnchanged ? Outcome::unchanged : Outcome::unknown;
                return;
            }
        }
    }

    void reportRepeat(std::size_t row, std::size_t element) {
        const CheckedField value = valueOf(row, element);
        const std::string_view name = value.element.name;
        const bool isFirstTaken = name == text::UNIQUEID || name == text::SURNAME || name == text::FIRSTNAME;
        Finding& finding = report(value.element.begin,
                                  entry_.reader == Reader::decoder ? FindingKind::repeatedForDecoder
                                  : isFirstTaken                   ? FindingKind::repeatedBehindFirst
                                                                   : FindingKind::repeatedBeforeLast,
                                  name);
        if (value.read == nullptr) {
            return;
        }
        finding.values.push_back(*value.read);
        const std::string lost = value.isReadAsSaid() ? valueOf(row).said : value.said;
        if (lost != *value.read) {
            finding.values.push_back(lost);
            isReadAsSaid_ = false;
        }
    }

    void checkAbsent(std::size_t row) {
        const FieldDescriptor& field = group_.fields[row];
        const std::string* read = readValue(row);
        if (read != nullptr && *read != valueOfNothing(field)) {
            isReadAsSaid_ = false;
            report(group_.place.at, FindingKind::readFromNothing, field.readAs, *read);
        }
    }

    void checkValue(const CheckedField& value) {
        const bool isReported = checkMarkup(value);
        const bool isWhole = value.element.isClosed;
        if (isWhole && value.field.type == ValueType::word) {
            checkWord(value);
        } else if (isWhole && value.field.type == ValueType::flag) {
            checkFlag(value);
        } else if (isWhole && value.element.name != value.field.readAs && !entry_.isServedByStore) {
            isReadAsSaid_ = isReadAsSaid_ && !value.isReadOtherwise();
            report(value.element.begin, FindingKind::pictureByOtherName, value.field.writtenAs, value.field.readAs,
                   value.said);
        } else if (!isReported) {
            checkText(value);
        }
        if (value.field.readAs == text::UNIQUEID) {
            checkId(value);
        }
    }

    /// Reports markup in a text, and with it how the text is read. Returns whether there is any.
    bool checkMarkup(const CheckedField& value) {
        const std::vector<const SyntaxError*> errors = findings_.takeSyntaxErrors(value.index);
        for (const SyntaxError* error : errors) {
            Finding& finding = findings_.report(group_.place, *error);
            finding.place.element = value.element.name;
            if (error == errors.front()) {
                addOutcome(finding, value);
            }
        }
        const std::vector<std::size_t>& inside = value.element.children;
        if (errors.empty() && !inside.empty()) {
            const Element& first = outline_.elements[inside.front()];
            addOutcome(report(first.begin, FindingKind::rawMarkup, value.element.name, first.name), value);
        }
        return !errors.empty() || !inside.empty();
    }

    void checkText(const CheckedField& value) {
        if (value.isReadOtherwise()) {
            isReadAsSaid_ = false;
            report(value.element.begin,
                   holdsHiddenMarkup(value) ? FindingKind::readOtherwiseForEscapes : FindingKind::readOtherwise,
                   value.element.name, value.said, *value.read);
        }
    }

    /// The decoder unescapes a whole list of calls before it looks for the calls in it.
    bool holdsHiddenMarkup(const CheckedField& value) const {
        const std::string raw(outline_.rawText(value.element));
        return entry_.reader == Reader::decoder && group_.place.call > 0 && raw.find('<') == std::string::npos &&
               restoredText(raw, 1).find('<') != std::string::npos;
    }

    void checkFlag(const CheckedField& value) {
        if (value.said == text::TRUE || value.said == text::FALSE) {
            return checkText(value);
        }
        Finding& finding = reportInText(value, FindingKind::noFlag, value.said);
        if (value.read != nullptr) {
            finding.values.push_back(*value.read);
        }
    }

    void checkWord(const CheckedField& value) {
        const format::Words& words = value.field.words;
        const bool isKnown =
            std::any_of(words.begin, words.end, [&](const format::Word& word) { return word.word == value.said; });
        if (isKnown && !value.said.empty()) {
            return checkText(value);
        }
        const std::string_view fallback = words.begin->word;
        const std::string_view expected = value.said.empty() ? wordOfNothing(words) : fallback;
        Finding& finding =
            expected == fallback
                ? reportInText(value, FindingKind::noWord, value.said, wordList(words), fallback)
                : reportInText(value, FindingKind::emptyWord, value.said, wordList(words), expected, fallback);
        if (value.read != nullptr && *value.read != expected) {
            finding.values.push_back(*value.read);
        }
    }

    void checkId(const CheckedField& value) {
        if (entry_.kind.hasCalls() && value.said.find(':') != std::string::npos) {
            std::string written = value.said;
            written.erase(std::remove(written.begin(), written.end(), ':'), written.end());
            reportInText(value, FindingKind::colonInId, value.said, written);
        }
    }

    const Outline& outline_;
    const EntryUnderCheck& entry_;
    const FieldGroup& group_;
    Findings& findings_;
    std::vector<Found> found_;  ///< By row; behind them those of no field.
    bool isReadAsSaid_ = true;
};

}  // namespace

bool checkFields(const Outline& outline, const EntryUnderCheck& entry, const FieldGroup& group, Findings& findings) {
    return FieldsCheck(outline, entry, group, findings).run();
}

}  // namespace calljournal
