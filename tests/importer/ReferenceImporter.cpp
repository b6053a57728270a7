#include "ReferenceImporter.h"

#include <stdexcept>
#include <utility>

#include "ClientUtils.h"
#include "ImportFixture.h"

namespace {

std::string withDoubledQuotesAs(const std::string& text, const std::string& replacement) {
    std::string result;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text.compare(index, 2, "\"\"") == 0) {
            result += replacement;
            ++index;
        } else {
            result += text[index];
        }
    }
    return result;
}

std::string latin1AsUtf8(const std::string& text) {
    std::string result;
    for (const char character : text) {
        const int code = static_cast<unsigned char>(character);
        if (code < 128) {
            result += character;
        } else {
            result += static_cast<char>(code < 192 ? 0xC2 : 0xC3);
            result += static_cast<char>(128 + code % 64);
        }
    }
    return result;
}

struct Range {
    unsigned char low;
    unsigned char high;
};

/// The rows of the grammar: one range for each byte of a character.
const std::vector<std::vector<Range>>& utf8Grammar() {
    static const Range tail = {0x80, 0xBF};
    static const std::vector<std::vector<Range>> grammar = {
        {{0x01, 0x7F}},
        {{0xC2, 0xDF}, tail},
        {{0xE0, 0xE0}, {0xA0, 0xBF}, tail},
        {{0xE1, 0xEC}, tail, tail},
        {{0xED, 0xED}, {0x80, 0x9F}, tail},
        {{0xEE, 0xEF}, tail, tail},
        {{0xF0, 0xF0}, {0x90, 0xBF}, tail, tail},
        {{0xF1, 0xF3}, tail, tail, tail},
        {{0xF4, 0xF4}, {0x80, 0x8F}, tail, tail},
    };
    return grammar;
}

bool startsWith(const std::string& text, const std::vector<Range>& row) {
    if (text.size() < row.size()) {
        return false;
    }
    for (std::size_t index = 0; index < row.size(); ++index) {
        const auto byte = static_cast<unsigned char>(text[index]);
        if (byte < row[index].low || byte > row[index].high) {
            return false;
        }
    }
    return true;
}

void moveDefaultNumber(Contact& contact) {
    std::string* chosen = &contact.business1;
    if (contact.defaultDial == 1) {
        chosen = &contact.private1;
    }
    if (contact.defaultDial == 3) {
        chosen = &contact.business2;
    }
    if (contact.defaultDial == 4) {
        chosen = &contact.mobile1;
    }
    if (!chosen->empty()) {
        if (*chosen == contact.business1) {
            return;
        }
        const std::string old = contact.business1;
        contact.business1 = *chosen;
        if (!old.empty()) {
            *chosen = old;
            contact.defaultDial = 2;
        }
        return;
    }
    contact.defaultDial = 0;
    if (!contact.business1.empty()) {
        contact.defaultDial = 2;
    } else if (!contact.business2.empty()) {
        contact.business1 = contact.business2;
        contact.defaultDial = 3;
    } else if (!contact.mobile1.empty()) {
        contact.business1 = contact.mobile1;
        contact.defaultDial = 4;
    } else if (!contact.private1.empty()) {
        contact.business1 = contact.private1;
        contact.defaultDial = 1;
    }
}

bool hasText(const Contact& contact) {
    const std::string all = contact.firstName + contact.lastName + contact.business1 + contact.business2 +
                            contact.mobile1 + contact.private1 + contact.email1 + contact.company1 + contact.position +
                            contact.address1 + contact.address2;
    return !all.empty();
}

}  // namespace

std::string longestFittingPrefix(const std::string& field) {
    std::string fitting;
    for (const char character : field) {
        const std::string longer = fitting + character;
        if (ClientUtils::escapeXMLString(longer).size() > 249) {
            break;
        }
        fitting = longer;
    }
    return fitting;
}

bool matchesUtf8Grammar(const char* text) {
    std::string rest = text;
    while (!rest.empty()) {
        std::size_t length = 0;
        for (const std::vector<Range>& row : utf8Grammar()) {
            if (startsWith(rest, row)) {
                length = row.size();
            }
        }
        if (length == 0) {
            return false;
        }
        rest.erase(0, length);
    }
    return true;
}

ReferenceImporter::ReferenceImporter(std::string content, unsigned existingContacts)
    : lineCount(existingContacts), content_(std::move(content)) {}

bool ReferenceImporter::readLine(std::string& into) {
    if (atEnd_) {
        return false;
    }
    into.clear();
    if (position_ == content_.size()) {
        atEnd_ = true;
        return false;
    }
    while (position_ < content_.size()) {
        const char character = content_[position_];
        ++position_;
        if (character == '\n') {
            return true;
        }
        into += character;
    }
    atEnd_ = true;
    return true;
}

void ReferenceImporter::parseFile(bool isNq) {
    try {
        fileOpen = true;
        parseLines(isNq);
    } catch (const std::runtime_error& error) {
        log.push_back(std::string("can't getCSVType: ") + error.what() + "\n");
        csvType = 6;
    }
}

void ReferenceImporter::parseLines(bool isNq) {
    const unsigned limit = isNq ? 1001 : 101;
    while (readLine(line)) {
        lineCount += 1;
        if (lineCount > limit) {
            log.emplace_back("the csv file has more contacts than contact limit or corrupt");
            csvType = 0;
            return;
        }
        ClientUtils::handleCRatEnd(line);
        if (headerPending) {
            headerLineParser();
        } else {
            lineContentParser();
        }
    }
    fileOpen = false;
}

void ReferenceImporter::tokenizeLine() {
    tokens.clear();
    if (line.empty()) {
        return;
    }
    std::string column;
    bool inQuotes = false;
    for (std::size_t index = 0; index < line.size(); ++index) {
        const char character = line[index];
        if (character == '\\') {
            ++index;
            if (index == line.size()) {
                throw std::runtime_error("cannot end with escape");
            }
            const char escaped = line[index];
            if (escaped == 'n') {
                column += '\n';
            } else if (escaped == '"' || escaped == separator || escaped == '\\') {
                column += escaped;
            } else {
                throw std::runtime_error("unknown escape sequence");
            }
        } else if (character == '"') {
            inQuotes = !inQuotes;
        } else if (character == separator && !inQuotes) {
            tokens.push_back(longestFittingPrefix(column));
            column.clear();
        } else {
            column += character;
        }
    }
    tokens.push_back(longestFittingPrefix(column));
}

void ReferenceImporter::headerLineParser() {
    headerPending = false;
    std::string withoutQuotes;
    for (const char character : line) {
        if (character != '"') {
            withoutQuotes += character;
        }
    }
    line = withoutQuotes;
    tokenizeLine();
    if (tokens.size() == 1) {
        separator = ',';
        tokenizeLine();
        if (tokens.size() == 1) {
            log.emplace_back("the csv file has invalid delimiters");
            csvType = 1;
            return;
        }
    }
    if (tokens.size() > 100) {
        log.emplace_back("too many headers, can't be a valid csv file");
        csvType = 2;
        return;
    }
    headerCount = static_cast<unsigned>(tokens.size());
    columnMap = std::vector<int>(tokens.size(), -1);
    if (tokens.size() == 12) {
        for (std::size_t index = 0; index < 12 && tokens[index] == tamberNames()[index]; ++index) {
            columnMap[index] = static_cast<int>(index);
        }
    }
    if (tokens == tamberNames()) {
        csvType = 7;
    } else if (tokens.size() == 92) {
        csvType = 8;
    } else {
        log.emplace_back("Header count is not matched with valid Outlook CSV file.");
        log.emplace_back("the file has invalid headers, can't be a valid csv file");
        csvType = 3;
    }
}

bool ReferenceImporter::fillUp() {
    const std::size_t before = tokens.size();
    while (tokens.size() < headerCount) {
        if (line.size() > 1000000) {
            throw std::logic_error("a line that does not stop growing");
        }
        line += std::string(headerCount - before, ',');
        tokenizeLine();
        if (tokens.size() == before) {
            return false;
        }
    }
    return true;
}

bool ReferenceImporter::assembleRecord() {
    bool continuation = false;
    while (!tokens.empty()) {
        if (tokens.size() >= headerCount) {
            return true;
        }
        const std::string last = line.substr(line.size() - 1);
        const std::string prev = line.size() > 1 ? line.substr(line.size() - 2, 1) : "";
        const bool opened = prev == "," && last == "\"";
        const bool stopped = last != "," && last != "\"";
        if ((opened || stopped || continuation) && readLine(nextLine)) {
            nextLine = withDoubledQuotesAs(nextLine, "");
            const std::size_t quote = nextLine.find('"');
            const std::size_t closing = nextLine.find("\",");
            if (quote < closing) {
                return false;
            }
            continuation = closing == std::string::npos;
            line += nextLine;
            ClientUtils::handleCRatEnd(line);
            tokenizeLine();
            if (tokens.size() > headerCount) {
                return false;
            }
        } else {
            if (!fillUp()) {
                return false;
            }
            continuation = false;
        }
    }
    return false;
}

void ReferenceImporter::lineContentParser() {
    line = withDoubledQuotesAs(line, "\\\"");
    tokenizeLine();
    const bool mismatch = (csvType == 8 && !assembleRecord()) || (csvType == 7 && tokens.size() != headerCount);
    if (mismatch) {
        log.emplace_back("corrupt file: lines have different number of columns");
        csvType = 5;
        return;
    }
    if (csvType == 7) {
        const std::string dial = ClientUtils::trim(tokens[11]);
        if (!ClientUtils::isAllDigits(dial) || ClientUtils::stoi(dial) < 0 || ClientUtils::stoi(dial) > 4) {
            log.emplace_back("corrupt file: default dial has to be an integer between 0 and 4");
            csvType = 4;
            return;
        }
    }
    if (csvType != 7 && csvType != 8) {
        log.emplace_back("invalid csv file type");
        return;
    }
    const Contact contact = csvType == 7 ? tamberContact() : outlookContact();
    if (hasText(contact)) {
        contacts.push_back(contact);
    }
}

Contact ReferenceImporter::tamberContact() const {
    Contact contact;
    contact.source = static_cast<Contact::eOrderedContactSource>(3);
    contact.lastName = tokens[0];
    contact.firstName = tokens[1];
    contact.business1 = tokens[2];
    contact.business2 = tokens[3];
    contact.mobile1 = tokens[4];
    contact.private1 = tokens[5];
    contact.company1 = tokens[6];
    contact.address1 = tokens[7];
    contact.address2 = tokens[8];
    contact.position = tokens[9];
    contact.email1 = tokens[10];
    contact.defaultDial = ClientUtils::stoi(tokens[11]);
    if (contact.defaultDial < 0 || contact.defaultDial > 4) {
        contact.defaultDial = 0;
    }
    if (isTq2) {
        moveDefaultNumber(contact);
    }
    return contact;
}

Contact ReferenceImporter::outlookContact() const {
    const auto column = [this](std::size_t index) {
        const std::string text = index < tokens.size() ? tokens[index] : "";
        return matchesUtf8Grammar(text.c_str()) ? text : latin1AsUtf8(text);
    };
    Contact contact;
    contact.source = static_cast<Contact::eOrderedContactSource>(3);
    contact.lastName = column(3);
    contact.firstName = column(1);
    contact.business1 = column(31).empty() ? column(44) : column(31);
    contact.business2 = column(32);
    contact.mobile1 = column(40).empty() ? column(34) : column(40);
    contact.private1 = column(37);
    contact.company1 = column(5);
    contact.address1 = column(8);
    contact.position = column(7);
    contact.email1 = column(57);
    contact.address2 = column(11);
    if (!contact.address2.empty()) {
        contact.address2 += ":";
    }
    contact.address2 += column(13);
    if (!contact.address2.empty()) {
        contact.address2 += ":";
    }
    contact.address2 += column(14);
    contact.defaultDial = !contact.business1.empty()   ? 2
                          : !contact.business2.empty() ? 3
                          : !contact.mobile1.empty()   ? 4
                          : !contact.private1.empty()  ? 1
                                                       : 0;
    return contact;
}
