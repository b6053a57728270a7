#include "ImportCheck.h"

#include <algorithm>
#include <ostream>
#include <utility>

#include "CSVType.h"
#include "ContactFields.h"
#include "Wording.h"

namespace calljournal {

namespace {

constexpr std::size_t mostPlaces = 5;
constexpr char loneQuote[] = "\"";

/// What any column takes, a number column as well.
constexpr char sample[] = "1";

}  // namespace

ImportCheck::ImportCheck(unsigned existingContacts) : ImportReplay(existingContacts) {}

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

/// The columns of the current record before the length limit cuts them.
std::vector<std::string> ImportCheck::wholeColumns() const {
    const boost::tokenizer<Separator> pieces(line, separator);
    return std::vector<std::string>(pieces.begin(), pieces.end());
}

void ImportCheck::lookAtRecord(const Contact* contact) {
    if (contact == nullptr) {
        note(noContact_, lines());
    } else {
        ++contactCount_;
    }
    const std::vector<std::string> whole = wholeColumns();
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
    const std::string place = lines() + ", " + columnName(index);
    const bool isCut = text.size() < whole.size();
    if (isCut) {
        note(cut_, place + " (" + std::to_string(whole.size()) + " bytes)");
    }
    if (text == loneQuote) {
        note(loneQuote_, place);
    }
    if (is_valid_utf8(text.c_str())) {
        return;
    }
    if (is_valid_utf8(whole.c_str())) {
        note(cutCharacter_, place);
    } else {
        note(csvType == CSV_OUTLOOK ? converted_ : notUtf8_, place);
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
        column.firstNoMail = shownText(tokens[index]) + " on " + lines();
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

void ImportCheck::note(Finding& finding, const std::string& place) {
    ++finding.count;
    if (finding.places.size() < mostPlaces) {
        finding.places.push_back(place);
    }
}

void ImportCheck::printFinding(const Finding& finding, std::ostream& out) {
    if (finding.count == 0) {
        return;
    }
    out << "  " << finding.count << ' ' << (finding.count == 1 ? finding.one : finding.many);
    const char* before = ": ";
    for (const std::string& place : finding.places) {
        out << before << place;
        before = "; ";
    }
    if (finding.count > finding.places.size()) {
        out << "; and " << finding.count - finding.places.size() << " more";
    }
    out << '\n';
}

void ImportCheck::printLostColumns(std::ostream& out) const {
    const char* before = "  not taken over: ";
    bool isAny = false;
    for (std::size_t index = 0; index < columns_.size(); ++index) {
        if (columns_[index].lost > 0) {
            out << before << columnName(index) << " (" << counted(columns_[index].lost, "record") << ')';
            before = "; ";
            isAny = true;
        }
    }
    out << (isAny ? "\n" : "");
}

void ImportCheck::printMailColumn(std::ostream& out) const {
    const auto mail =
        std::find_if(columns_.begin(), columns_.end(), [](const Column& column) { return column.isMail; });
    if (mail == columns_.end() || mail->firstNoMail.empty()) {
        return;
    }
    const auto indexOf = [&](auto column) { return static_cast<std::size_t>(column - columns_.begin()); };
    out << "  " << columnName(indexOf(mail)) << " is taken for the mail address, but "
        << counted(mail->texts - mail->addresses, "record") << (mail->texts - mail->addresses == 1 ? " has" : " have")
        << " something else there: " << mail->firstNoMail;
    const auto best = std::max_element(columns_.begin(), columns_.end(), [](const Column& one, const Column& other) {
        return one.addresses < other.addresses;
    });
    if (best != mail && best->addresses > 0) {
        out << "; mail addresses stand in " << columnName(indexOf(best));
    }
    out << '\n';
}

void ImportCheck::report(std::ostream& out) {
    if (columns_.empty()) {
        return;
    }
    const bool isOutlook = columns_.size() != static_cast<std::size_t>(TAMBER_HEADERS_SIZE);
    out << "  " << (isOutlook ? "Outlook" : "Tamber") << " layout, " << columns_.size() << " columns separated by "
        << (isCommaSeparated() ? "commas" : "semicolons") << ", " << counted(contactCount_, "contact") << '\n';
    for (const Finding* finding : {&noContact_, &cut_, &cutCharacter_, &converted_, &notUtf8_, &loneQuote_}) {
        printFinding(*finding, out);
    }
    printMailColumn(out);
    printLostColumns(out);
}

}  // namespace calljournal
