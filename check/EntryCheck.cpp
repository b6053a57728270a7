#include "EntryCheck.h"

#include <algorithm>

#include "CarriedText.h"
#include "FieldValue.h"
#include "PrintableText.h"
#include "Texts.h"

namespace calljournal {

namespace text = format::text;

namespace {

constexpr std::size_t mostCalls = 10;
constexpr std::size_t shownLength = 60;

const std::string* valueAt(const std::vector<std::string>* values, std::size_t row) {
    return values == nullptr ? nullptr : &(*values)[row];
}

/// An entry's own elements, or those of one call.
struct Group {
    const std::vector<FieldDescriptor>& rows;
    const std::vector<std::size_t>* readRanks;  ///< Null if they are read in the order written.
    const std::vector<std::size_t>& elements;
    const std::vector<std::string>* values;  ///< Null if the group was not read.
    std::size_t at;
    std::string place;
    std::string_view whose;  ///< "an entry" or "a call".
};

std::size_t rowNamed(const std::vector<FieldDescriptor>& rows, std::string_view name) {
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const FieldDescriptor& field) {
        return field.writtenAs == name || field.readAs == name;
    });
    return static_cast<std::size_t>(row - rows.begin());
}

/// The word that a reader makes of an absent or empty element.
std::string_view wordOfNothing(format::Words words) {
    const auto* const nothing =
        std::find_if(words.begin, words.end, [](const format::Word& row) { return row.word.empty(); });
    const int value = nothing == words.end ? words.begin->value : nothing->value;
    return std::find_if(words.begin, words.end, [&](const format::Word& row) { return row.value == value; })->word;
}

std::string valueOfNothing(const FieldDescriptor& row) {
    return row.type == ValueType::text   ? std::string()
           : row.type == ValueType::flag ? std::string(text::FALSE)
                                         : std::string(wordOfNothing(row.words));
}

/// Walks over the elements of one entry or call.
class GroupCheck {
public:
    GroupCheck(const Outline& outline, const EntryUnderCheck& entry, const Group& group, Findings& findings)
        : outline_(outline), entry_(entry), group_(group), findings_(findings) {}

    /// Returns whether everything was read as it stands.
    bool run() {
        firstOfRow_.assign(group_.rows.size(), noElement);
        findRepeats();
        for (const std::size_t element : group_.elements) {
            const std::size_t row = rowNamed(group_.rows, outline_.elements[element].name);
            if (row == group_.rows.size()) {
                checkForeign(element);
            } else if (firstOfRow_[row] != noElement) {
                checkRepeat(row, element);
            } else {
                checkOrder(row, element);
                firstOfRow_[row] = element;
            }
        }
        for (std::size_t row = 0; row < group_.rows.size(); ++row) {
            if (firstOfRow_[row] == noElement) {
                checkAbsent(row);
            } else if (!isRepeated(row)) {
                checkValue(row, firstOfRow_[row]);
            }
        }
        return isSame_;
    }

private:
    void tell(std::size_t at, const std::string& what) { findings_.add(at, group_.place, what); }

    bool isRepeated(std::size_t row) const { return repeated_.count(row) > 0; }

    std::string value(std::size_t row, std::size_t element) const {
        return restoredText(std::string(outline_.rawText(outline_.elements[element])), group_.rows[row].unescapes);
    }

    void findRepeats() {
        std::vector<bool> isThere(group_.rows.size() + 1);
        for (const std::size_t element : group_.elements) {
            const std::size_t row = rowNamed(group_.rows, outline_.elements[element].name);
            if (isThere[row]) {
                repeated_.insert(row);
            }
            isThere[row] = true;
        }
    }

    /// "; ..." with what became of a text that a defect might have changed.
    std::string outcome(std::size_t row, const std::string& said) {
        const std::string* read = valueAt(group_.values, row);
        if (read == nullptr) {
            return {};
        }
        if (*read == said) {
            return "; it is still read as it stands";
        }
        isSame_ = false;
        return "; what is read is " + quoted(*read);
    }

    void checkForeign(std::size_t element) {
        const std::string_view name = outline_.elements[element].name;
        const std::size_t at = outline_.elements[element].begin;
        if (name == text::PICTURE) {
            return tell(at, "a picture under the name Picture, but its reader looks for PictureClip; " +
                                quoted(outline_.rawText(outline_.elements[element])) + " is lost");
        }
        tell(at, std::string(name) + " is no element of " + std::string(group_.whose) + " (" +
                     std::string(entry_.kind.name) + "): nobody reads " +
                     quoted(outline_.rawText(outline_.elements[element])));
    }

    /// The decoder's cursor follows elements in the order of writing, or of reading where that differs.
    void checkOrder(std::size_t row, std::size_t element) {
        const auto rank = [&](std::size_t at) { return group_.readRanks == nullptr ? at : (*group_.readRanks)[at]; };
        for (std::size_t later = row + 1; later < group_.rows.size(); ++later) {
            if (firstOfRow_[later] == noElement || rank(later) < rank(row)) {
                continue;
            }
            const Element& before = outline_.elements[firstOfRow_[later]];
            tell(outline_.elements[element].begin,
                 std::string(group_.rows[row].writtenAs) + " is expected before " + std::string(before.name) +
                     "; a decoder's cursor stops in front of it" + stillRead(row, element));
            return;
        }
    }

    /// A loss is told with the value, if there is one.
    std::string stillRead(std::size_t row, std::size_t element) const {
        const std::string* read = valueAt(group_.values, row);
        const bool isSame = read != nullptr && !isRepeated(row) && *read == value(row, element);
        return isSame ? "; it is still read as it stands" : "";
    }

    void checkRepeat(std::size_t row, std::size_t element) {
        const std::string name(outline_.elements[element].name);
        const std::string* read = valueAt(group_.values, row);
        std::string what = name + " stands here once more";
        if (read != nullptr) {
            what += "; " +
                    std::string(entry_.reader == Reader::decoder ? "the decoder takes the first"
                                : takesTheFirst(name)            ? "the list reader takes the first"
                                                                 : "the list reader takes the last") +
                    ": " + quoted(*read) + " is read";
            const std::string here = value(row, element);
            const std::string first = value(row, firstOfRow_[row]);
            const std::string& lost = here == *read ? first : here;
            what += lost == *read ? "" : ", " + quoted(lost) + " is lost";
            isSame_ = isSame_ && lost == *read;
        }
        tell(outline_.elements[element].begin, what);
    }

    static bool takesTheFirst(std::string_view name) {
        return name == text::UNIQUEID || name == text::SURNAME || name == text::FIRSTNAME;
    }

    void checkAbsent(std::size_t row) {
        const std::string* read = valueAt(group_.values, row);
        if (read != nullptr && *read != valueOfNothing(group_.rows[row])) {
            isSame_ = false;
            tell(group_.at,
                 std::string(group_.rows[row].readAs) + " is not there, and yet " + quoted(*read) + " is read");
        }
    }

    void checkValue(std::size_t row, std::size_t element) {
        const FieldDescriptor& field = group_.rows[row];
        const std::string said = value(row, element);
        const bool isTold = checkMarkup(row, element, said);
        const bool isWhole = outline_.elements[element].isClosed;
        if (isWhole && field.type == ValueType::word) {
            checkWord(row, element, said);
        } else if (isWhole && field.type == ValueType::flag) {
            checkFlag(row, element, said);
        } else if (isWhole && outline_.elements[element].name != field.readAs && !entry_.isServedByStore) {
            checkPicture(row, element, said);
        } else if (!isTold) {
            checkText(row, element, said);
        }
        if (field.readAs == text::UNIQUEID) {
            checkId(element, said);
        }
    }

    /// Tells markup in a text, and with it how the text is read.
    bool checkMarkup(std::size_t row, std::size_t element, const std::string& said) {
        const std::string name(outline_.elements[element].name);
        bool isTold = false;
        for (const SyntaxError* error : findings_.errorsOf[element]) {
            findings_.told.insert(error);
            tell(error->at, name + ": " + error->what + (isTold ? "" : outcome(row, said)));
            isTold = true;
        }
        const std::vector<std::size_t>& inside = outline_.elements[element].children;
        if (!inside.empty() && !isTold) {
            const Element& first = outline_.elements[inside.front()];
            tell(first.begin, name + " holds the raw markup <" + std::string(first.name) + ">" + outcome(row, said));
            isTold = true;
        }
        return isTold;
    }

    void checkText(std::size_t row, std::size_t element, const std::string& said) {
        const std::string* read = valueAt(group_.values, row);
        if (read == nullptr || *read == said) {
            return;
        }
        isSame_ = false;
        const Element& found = outline_.elements[element];
        tell(found.begin,
             std::string(found.name) + " says " + quoted(said) + ", but " + quoted(*read) + " is read" +
                 (isHiddenMarkup(element) ? ": text that is escaped once is markup when calls are told apart" : ""));
    }

    /// The decoder unescapes a whole list of calls before it looks for the calls in it.
    bool isHiddenMarkup(std::size_t element) const {
        const std::string raw(outline_.rawText(outline_.elements[element]));
        return entry_.reader == Reader::decoder && group_.readRanks != nullptr &&
               restoredText(raw, 1).find('<') != std::string::npos && raw.find('<') == std::string::npos;
    }

    void checkPicture(std::size_t row, std::size_t element, const std::string& said) {
        const std::string* read = valueAt(group_.values, row);
        isSame_ = isSame_ && (read == nullptr || *read == said);
        tell(outline_.elements[element].begin,
             "a picture under the name " + std::string(group_.rows[row].writtenAs) + ", but its reader looks for " +
                 std::string(group_.rows[row].readAs) + "; " + quoted(said) + " is lost");
    }

    void checkFlag(std::size_t row, std::size_t element, const std::string& said) {
        if (said == text::TRUE || said == text::FALSE) {
            return checkText(row, element, said);
        }
        const std::string* read = valueAt(group_.values, row);
        tell(outline_.elements[element].begin, std::string(group_.rows[row].readAs) + ": " + quoted(said) +
                                                   " is neither True nor False" +
                                                   (read == nullptr ? "" : "; it is read as " + *read));
    }

    void checkWord(std::size_t row, std::size_t element, const std::string& said) {
        const FieldDescriptor& field = group_.rows[row];
        const auto* const known = std::find_if(field.words.begin, field.words.end,
                                               [&](const format::Word& word) { return word.word == said; });
        if (known != field.words.end && !said.empty()) {
            return checkText(row, element, said);
        }
        const std::string* read = valueAt(group_.values, row);
        const std::string fallback(field.words.begin->word);
        std::string what =
            std::string(field.readAs) + ": " + quoted(said) + " is none of its words (" + wordList(field.words) + "); ";
        if (said.empty() && wordOfNothing(field.words) != fallback) {
            what += "an empty one is read as " + std::string(wordOfNothing(field.words)) + ", not as the fallback " +
                    fallback;
        } else {
            what += "it is read as the fallback " + fallback;
        }
        const std::string expected = said.empty() ? std::string(wordOfNothing(field.words)) : fallback;
        what += read == nullptr || *read == expected ? "" : ", here as " + *read;
        tell(outline_.elements[element].begin, what);
    }

    void checkId(std::size_t element, const std::string& said) {
        if (entry_.kind.hasCalls() && said.find(':') != std::string::npos) {
            std::string written = said;
            written.erase(std::remove(written.begin(), written.end(), ':'), written.end());
            tell(outline_.elements[element].begin, "UniqueId: a colon, which writing drops: a request that deletes " +
                                                       quoted(said) + " names " + quoted(written));
        }
    }

    const Outline& outline_;
    const EntryUnderCheck& entry_;
    const Group& group_;
    Findings& findings_;
    std::vector<std::size_t> firstOfRow_;
    std::set<std::size_t> repeated_;
    bool isSame_ = true;
};

/// Finds the calls of an entry and checks them.
class CallsCheck {
public:
    CallsCheck(const Outline& outline, const EntryUnderCheck& entry, Findings& findings)
        : outline_(outline), entry_(entry), findings_(findings) {}

    /// Takes the elements that hold calls, and leaves the others.
    std::vector<std::size_t> takeLists() {
        std::vector<std::size_t> fields;
        for (const std::size_t element : entry_.elements) {
            const std::string_view name = outline_.elements[element].name;
            if (name == text::LOGLIST && entry_.kind.hasCalls()) {
                takeList(element);
            } else if (name == text::ITEM && entry_.kind.hasCalls()) {
                takeLooseCall(element);
            } else if (entry_.reader == Reader::decoder || (name != text::CATEGORY && name != text::METHOD)) {
                checkBehindList(element);
                fields.push_back(element);
            }
        }
        return fields;
    }

    void run() {
        checkTooMany();
        const bool isCountExplained = checkCount();
        bool isSame = true;
        for (std::size_t i = 0; i < calls_.size(); ++i) {
            const Element& item = outline_.elements[calls_[i]];
            const std::string place = placeOf(i);
            if (outline_.rawText(item).empty()) {
                checkEmpty(item, place);
                continue;
            }
            const bool isRead = entry_.values != nullptr && i < entry_.values->calls.size();
            // Behind a call that was torn apart, the calls read are not those of the text any more.
            const bool isComparable = isRead && (isCountExplained || isSame);
            hasGap_ = hasGap_ || checkGaps(outline_, calls_[i], place, findings_);
            const Group group{entry_.kind.callFields,
                              &entry_.kind.readRanks,
                              item.children,
                              isComparable ? &entry_.values->calls[i] : nullptr,
                              item.begin,
                              place,
                              "a call"};
            isSame = GroupCheck(outline_, entry_, group, findings_).run() && isSame;
        }
    }

private:
    std::string placeOf(std::size_t call) const {
        return entry_.place + (entry_.place.empty() ? "" : ", ") + "call " + std::to_string(call + 1);
    }

    void takeList(std::size_t element) {
        const Element& list = outline_.elements[element];
        if (list_ != noElement) {
            findings_.add(list.begin, entry_.place,
                          entry_.reader == Reader::decoder
                              ? "a second LogList; the decoder reads the first, the calls of this one are lost"
                              : "a second LogList; the list reader takes its calls too, a decoder would not");
        }
        if (list_ == noElement || entry_.reader == Reader::missedList) {
            takeCalls(list);
        }
        if (list_ == noElement) {
            list_ = element;
        }
        hasGap_ = hasGap_ || checkGaps(outline_, element, entry_.place, findings_);
    }

    void takeCalls(const Element& list) {
        for (const std::size_t child : list.children) {
            const Element& item = outline_.elements[child];
            if (item.name == text::ITEM) {
                calls_.push_back(child);
            } else {
                findings_.add(item.begin, entry_.place,
                              std::string(item.name) +
                                  " is no element of LogList, which holds one Item for each call: "
                                  "nobody reads it there");
            }
        }
    }

    void takeLooseCall(std::size_t element) {
        const bool isTaken = entry_.reader == Reader::missedList;
        if (isTaken) {
            calls_.push_back(element);
        }
        findings_.add(outline_.elements[element].begin, entry_.place,
                      isTaken ? "an Item outside of LogList; the list reader takes it, a decoder would not"
                              : "an Item outside of LogList; the decoder does not read it");
    }

    void checkBehindList(std::size_t element) {
        if (list_ != noElement &&
            rowNamed(entry_.kind.fields, outline_.elements[element].name) < entry_.kind.fields.size()) {
            findings_.add(outline_.elements[element].begin, entry_.place,
                          std::string(outline_.elements[element].name) +
                              " is expected before LogList, where a decoder's cursor stays");
        }
    }

    void checkTooMany() {
        if (calls_.size() <= mostCalls) {
            return;
        }
        std::string what = "an entry holds at most ten calls, this one " + std::to_string(calls_.size());
        if (entry_.values != nullptr) {
            what += "; " + std::to_string(entry_.values->calls.size()) + " are read";
        }
        findings_.add(outline_.elements[calls_[mostCalls]].begin, placeOf(mostCalls), what);
    }

    void checkEmpty(const Element& item, const std::string& place) {
        if (entry_.reader == Reader::missedList) {
            findings_.add(item.begin, place,
                          "an empty Item, which ends the scan of a decoder; the list reader takes a call without "
                          "anything");
            return;
        }
        std::string what = "an empty Item, which ends the scan of the calls";
        if (entry_.values != nullptr) {
            what += "; " + std::to_string(entry_.values->calls.size()) + " of " + std::to_string(calls_.size()) +
                    " are read";
        }
        findings_.add(item.begin, place, what);
    }

    /// Returns whether as many calls were read as the findings above say.
    bool checkCount() {
        if (entry_.values == nullptr) {
            return true;
        }
        const std::size_t read = entry_.values->calls.size();
        if (read == expectedCount()) {
            return true;
        }
        const std::size_t at = list_ == noElement ? entry_.at : outline_.elements[list_].begin;
        findings_.add(at, entry_.place,
                      (calls_.size() == 1 ? "here is 1 call, but "
                                          : "here are " + std::to_string(calls_.size()) + " calls, but ") +
                          std::to_string(read) + (read == 1 ? " is read" : " are read") +
                          (holdsHiddenTag() ? ": a text that is escaped once becomes markup before the "
                                              "calls are told apart"
                                            : ""));
        return false;
    }

    /// Of the calls that are whole: ten for the list, and for a decoder those in front of an empty one.
    std::size_t expectedCount() const {
        std::size_t count = 0;
        for (const std::size_t call : calls_) {
            const Element& item = outline_.elements[call];
            if (entry_.reader == Reader::decoder && item.isClosed && outline_.rawText(item).empty()) {
                break;
            }
            count += item.isClosed ? 1U : 0U;
        }
        if (entry_.reader == Reader::missedList) {
            return std::min(count, mostCalls);
        }
        return list_ != noElement && outline_.elements[list_].isClosed ? count : 0;
    }

    bool holdsHiddenTag() const {
        if (list_ == noElement || entry_.reader == Reader::missedList) {
            return false;
        }
        const std::string raw(outline_.rawText(outline_.elements[list_]));
        const std::string once = restoredText(raw, 1);
        return std::count(once.begin(), once.end(), '<') != std::count(raw.begin(), raw.end(), '<');
    }

    const Outline& outline_;
    const EntryUnderCheck& entry_;
    Findings& findings_;
    std::size_t list_ = noElement;
    std::vector<std::size_t> calls_;
    bool hasGap_ = false;
};

}  // namespace

Findings::Findings(const Outline& outline) {
    for (const SyntaxError& error : outline.syntaxErrors) {
        errorsOf[error.element].push_back(&error);
    }
    for (auto& [element, errors] : errorsOf) {
        std::stable_sort(errors.begin(), errors.end(),
                         [](const SyntaxError* a, const SyntaxError* b) { return a->at < b->at; });
    }
}

void Findings::add(std::size_t at, const std::string& place, const std::string& what) {
    all.push_back({at, place + (place.empty() ? "" : ": ") + what});
}

std::string quoted(std::string_view text) {
    return '"' + fitted(printable(text.substr(0, 20 * shownLength)), shownLength) + '"';
}

bool checkGaps(const Outline& outline, std::size_t element, const std::string& place, Findings& findings) {
    const bool isAll = element == noElement;
    std::size_t at = isAll ? outline.begin : outline.elements[element].textBegin;
    const std::size_t end = isAll ? outline.text.size() : outline.elements[element].textEnd;
    const auto syntaxErrors = findings.errorsOf.find(element);
    const auto isTold = [&](std::size_t from, std::size_t to) {
        if (syntaxErrors == findings.errorsOf.end()) {
            return false;
        }
        const auto error =
            std::lower_bound(syntaxErrors->second.begin(), syntaxErrors->second.end(), from,
                             [](const SyntaxError* told, std::size_t begin) { return told->at < begin; });
        return error != syntaxErrors->second.end() && (*error)->at < to;
    };
    const auto check = [&](std::size_t to) {
        const bool isHarmless =
            isAll && outline.text.substr(at, to - at).find_first_not_of(" \t\r\n") == std::string::npos;
        if (at >= to || isHarmless || isTold(at, to)) {
            return false;
        }
        findings.add(
            at, place,
            "text that belongs to no element: " + quoted(outline.text.substr(at, to - at)) +
                "; a decoder's cursor stops in front of it, and the missed call list takes it for the text of the "
                "element before");
        return true;
    };
    for (const std::size_t child : outline.childrenOf(element)) {
        if (check(outline.elements[child].begin)) {
            return true;
        }
        at = outline.elements[child].end;
    }
    return check(end);
}

void checkEntry(const Outline& outline, const EntryUnderCheck& entry, Findings& findings) {
    CallsCheck calls(outline, entry, findings);
    const std::vector<std::size_t> fields = calls.takeLists();
    const Group group{
        entry.kind.fields, nullptr,     fields,    entry.values == nullptr ? nullptr : &entry.values->fields,
        entry.at,          entry.place, "an entry"};
    GroupCheck(outline, entry, group, findings).run();
    calls.run();
}

}  // namespace calljournal
