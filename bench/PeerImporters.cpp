#include <boost/tokenizer.hpp>
#include <csv.h>
#include <fstream>
#include <iterator>

#include "Peers.h"

namespace bench {

namespace {

/// Takes the columns of a contact as they come.
class CsvReader {
public:
    static void takeColumn(void* text, std::size_t length, void* userData) {
        CsvReader& self = *static_cast<CsvReader*>(userData);
        if (!self.isHeader_ && length > 0) {
            self.take(std::string(static_cast<const char*>(text), length));
        }
        ++self.column_;
    }
    static void endLine(int, void* userData) {
        CsvReader& self = *static_cast<CsvReader*>(userData);
        if (!self.isHeader_) {
            self.contact_.defaultDial = self.contact_.business1.empty() ? 0 : 2;
            self.contact_.source = static_cast<Contact::eOrderedContactSource>(3);
            self.contacts.push_back(std::move(self.contact_));
            self.contact_ = Contact();
        }
        self.isHeader_ = false;
        self.column_ = 0;
    }

    std::vector<Contact> contacts;

private:
    void take(std::string&& text) {
        switch (column_) {
            case 1:
                contact_.firstName = std::move(text);
                break;
            case 3:
                contact_.lastName = std::move(text);
                break;
            case 5:
                contact_.company1 = std::move(text);
                break;
            case 7:
                contact_.position = std::move(text);
                break;
            case 8:
                contact_.address1 = std::move(text);
                break;
            case 11:
            case 13:
            case 14:
                contact_.address2 += contact_.address2.empty() ? text : ":" + text;
                break;
            case 31:
                contact_.business1 = std::move(text);
                break;
            case 32:
                contact_.business2 = std::move(text);
                break;
            case 37:
                contact_.private1 = std::move(text);
                break;
            case 40:
                contact_.mobile1 = std::move(text);
                break;
            case 57:
                contact_.email1 = std::move(text);
                break;
            default:
                break;
        }
    }

    Contact contact_;
    bool isHeader_ = true;
    std::size_t column_ = 0;
};

}  // namespace

std::vector<Contact> importWithLibcsv(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string content((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    CsvReader reader;
    csv_parser parser;
    csv_init(&parser, 0);
    csv_parse(&parser, content.data(), content.size(), &CsvReader::takeColumn, &CsvReader::endLine, &reader);
    csv_fini(&parser, &CsvReader::takeColumn, &CsvReader::endLine, &reader);
    csv_free(&parser);
    return std::move(reader.contacts);
}

std::size_t walkWithBoost(const std::string& path) {
    using Separator = boost::escaped_list_separator<char>;
    std::ifstream file(path);
    std::size_t bytes = 0;
    std::string line;
    while (std::getline(file, line)) {
        const boost::tokenizer<Separator> tokens(line);
        for (const std::string& token : tokens) {
            bytes += token.size();
        }
    }
    return bytes;
}

}  // namespace bench
