#include "ImportCheck.h"

#include <algorithm>
#include <utility>

#include "CSVType.h"
#include "ContactFields.h"
#include "Wording.h"

namespace calljournal {

namespace {

constexpr std::size_t mostPlaces = 5;

/// What any column takes, a number column as well.
constexpr char sample[] = "1";

}  // namespace

void ImportCheck::recordTaken(const Contact* contact) {
    if (isHeader()) {
        learnColumns();
    } else {
        lookAtRecord(contact);
    }
}

/// Asks the importer itself, with one column set at a time, where it would put it.
void ImportCheck::learnColumns() {
    columns_.assign(headers().size(), Column());
    for (std::size_t index = 0; index < columns_.size(); ++index) {
        std::vector<std::string> columns(columns_.size());
        columns[index] = sample;
        const Contact contact = contactOf(columns);
        columns_[index].isTaken = !haveSameFields(contact, Contact());
        columns_[index].isMail = !contact.email1.empty();
    }
}

/// What the importer makes of a record of these columns.
Contact ImportCheck::contactOf(std::vector<std::string>& columns) {
    Contact contact;
    initContact(contact);
    std::swap(columns, tokens);
    parseContact(contact);
    std::swap(columns, tokens);
    return contact;
}

void ImportCheck::lookAtRecord(const Contact* contact) {
    if (contact == nullptr) {
        note(noContact_, lines());
    } else {
        ++contactCount_;
    }
    // The columns before the length limit cuts them.
    const boost::tokenizer<Separator> pieces(line, separator);
    const std::vector<std::string> whole(pieces.begin(), pieces.end());
    const std::size_t count = std::min(columns_.size(), tokens.size());
    for (std::size_t index = 0; index < count; ++index) {
        if (tokens[index].empty()) {
            continue;
        }
        if (columns_[index].isTaken) {
            lookAtText(index, whole[index]);
        }
        lookForLoss(index, contact);
    }
}

void ImportCheck::lookAtText(std::size_t index, const std::string& whole) {
    const std::string& text = tokens[index];
    const auto place = [&] { return lines() + ", " + columnName(index); };
    const bool isCut = text.size() < whole.size();
    if (isCut) {
        note(cut_, place() + " (" + std::to_string(whole.size()) + " bytes)");
    }
    if (text == loneQuote) {
        note(loneQuote_, place());
    }
    if (is_valid_utf8(text.c_str())) {
        return;
    }
    if (is_valid_utf8(whole.c_str())) {
        note(cutCharacter_, place());
    } else {
        note(csvType == CSV_OUTLOOK ? converted_ : notUtf8_, place());
    }
}

/// A text is lost if the contact is the same without it.
void ImportCheck::lookForLoss(std::size_t index, const Contact* contact) {
    if (tokens[index] == loneQuote) {
        return;
    }
    Column& column = columns_[index];
    ++column.texts;
    if (tokens[index].find('@') != std::string::npos) {
        ++column.addresses;
    } else if (column.isMail && column.firstNoMail.empty()) {
        column.firstNoMail = quoted(tokens[index]) + " on " + lines();
    }
    // The Tamber layout leaves nothing behind.
    if (contact == nullptr || csvType != CSV_OUTLOOK || holdsText(*contact, tokens[index])) {
        return;
    }
    std::vector<std::string> others(tokens);
    others[index].clear();
    const bool isLost = !column.isTaken || haveSameFields(*contact, contactOf(others));
    column.lost += isLost ? 1 : 0;
}

void ImportCheck::note(Finding& finding, const Sentence& place) {
    ++finding.count;
    if (finding.places.size() < mostPlaces) {
        finding.places.push_back(place);
    }
}

/// Empty if nothing was found, as below.
Sentence ImportCheck::describe(const Finding& finding) {
    if (finding.count == 0) {
        return {};
    }
    Sentence sentence = std::to_string(finding.count) + ' ' + (finding.count == 1 ? finding.one : finding.many);
    for (const Sentence& place : finding.places) {
        sentence = sentence + (&place == finding.places.data() ? ": " : "; ") + place;
    }
    const std::size_t others = finding.count - finding.places.size();
    return others == 0 ? sentence : sentence + ("; and " + std::to_string(others) + " more");
}

Sentence ImportCheck::describeLostColumns() const {
    Sentence sentence;
    for (std::size_t index = 0; index < columns_.size(); ++index) {
        if (columns_[index].lost > 0) {
            sentence = sentence + (sentence.empty() ? "not taken over: " : "; ") + columnName(index) +
                       (" (" + counted(columns_[index].lost, "record") + ')');
        }
    }
    return sentence;
}

Sentence ImportCheck::describeMailColumn() const {
    const auto mail =
        std::find_if(columns_.begin(), columns_.end(), [](const Column& column) { return column.isMail; });
    if (mail == columns_.end() || mail->firstNoMail.empty()) {
        return {};
    }
    const auto nameOf = [&](auto column) { return columnName(static_cast<std::size_t>(column - columns_.begin())); };
    const std::size_t others = mail->texts - mail->addresses;
    const Sentence sentence = nameOf(mail) + " is taken for the mail address, but " + counted(others, "record") +
                              (others == 1 ? " has" : " have") + " something else there: " + mail->firstNoMail;
    const auto best = std::max_element(columns_.begin(), columns_.end(), [](const Column& one, const Column& other) {
        return one.addresses < other.addresses;
    });
    return best == mail || best->addresses == 0 ? sentence : sentence + "; mail addresses stand in " + nameOf(best);
}

std::vector<Sentence> ImportCheck::report() {
    if (columns_.empty()) {
        return {};
    }
    const bool isOutlook = columns_.size() != static_cast<std::size_t>(TAMBER_HEADERS_SIZE);
    std::vector<Sentence> lines = {std::string(isOutlook ? "Outlook" : "Tamber") + " layout, " +
                                   std::to_string(columns_.size()) + " columns separated by " +
                                   (isCommaSeparated() ? "commas" : "semicolons") + ", " +
                                   counted(contactCount_, "contact")};
    for (const Finding* finding : {&noContact_, &cut_, &cutCharacter_, &converted_, &notUtf8_, &loneQuote_}) {
        lines.push_back(describe(*finding));
    }
    lines.push_back(describeMailColumn());
    lines.push_back(describeLostColumns());
    lines.erase(std::remove_if(lines.begin(), lines.end(), [](const Sentence& sentence) { return sentence.empty(); }),
                lines.end());
    return lines;
}

}  // namespace calljournal
