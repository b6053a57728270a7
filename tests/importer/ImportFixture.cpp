#include "ImportFixture.h"

#include <filesystem>
#include <fstream>
#include <unistd.h>
#include <utility>

#include "ImportContactsCSVParser.h"

const char* const columnMismatch = "corrupt file: lines have different number of columns";
const char* const invalidType = "invalid csv file type";
const char* const tooManyLines = "the csv file has more contacts than contact limit or corrupt";

namespace {

const std::pair<const char*, std::string Contact::*> members[] = {
    {"firstName", &Contact::firstName}, {"lastName", &Contact::lastName}, {"business1", &Contact::business1},
    {"business2", &Contact::business2}, {"mobile1", &Contact::mobile1},   {"private1", &Contact::private1},
    {"email1", &Contact::email1},       {"company1", &Contact::company1}, {"position", &Contact::position},
    {"address1", &Contact::address1},   {"address2", &Contact::address2}, {"pictureClip", &Contact::pictureClip},
};

}  // namespace

TemporaryFile::TemporaryFile(const std::string& content) {
    static unsigned number = 0;
    path_ = testing::TempDir() + "contacts-" + std::to_string(getpid()) + "-" + std::to_string(++number) + ".csv";
    std::ofstream(path_, std::ios::binary) << content;
}

TemporaryFile::~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
}

bool TemporaryFile::exists() const {
    return std::filesystem::exists(path_);
}

Outcome importText(const std::string& content, unsigned existingContacts) {
    const TemporaryFile file(content);
    fakePlatform().log.clear();
    fakePlatform().deletedFiles.clear();
    const ImportContactsCSVParser importer(file.path(), existingContacts);
    EXPECT_FALSE(file.exists());
    EXPECT_EQ(fakePlatform().deletedFiles, Texts{file.path()});
    for (const LogLine& line : fakePlatform().log) {
        EXPECT_EQ(line.module, "ImportContactscSVParser");
        EXPECT_EQ(line.sourceFile, "ImportContactsCSVParser");
        EXPECT_EQ(line.level, 2);
    }
    return {importer.getCSVType(), describe(importer.getContacts()), fakePlatform().logTexts()};
}

std::string describe(const Contact& contact) {
    std::string text = "dial=" + std::to_string(contact.defaultDial) + " source=" + std::to_string(contact.source);
    for (const auto& member : members) {
        if (!(contact.*member.second).empty()) {
            text += std::string(" ") + member.first + "=" + contact.*member.second;
        }
    }
    return text;
}

Texts describe(const std::vector<Contact>& contacts) {
    Texts texts;
    for (const Contact& contact : contacts) {
        texts.push_back(describe(contact));
    }
    return texts;
}

std::string imported(int defaultDial, const std::vector<std::pair<std::string, std::string>>& values) {
    Contact contact;
    contact.defaultDial = defaultDial;
    contact.source = static_cast<Contact::eOrderedContactSource>(3);
    for (const auto& value : values) {
        bool known = false;
        for (const auto& member : members) {
            if (value.first == member.first) {
                contact.*member.second = value.second;
                known = true;
            }
        }
        EXPECT_TRUE(known) << value.first;
    }
    return describe(contact);
}

std::string join(const Texts& columns, char separator) {
    std::string line;
    for (std::size_t index = 0; index < columns.size(); ++index) {
        if (index != 0) {
            line += separator;
        }
        line += columns[index];
    }
    return line;
}

const Texts& tamberNames() {
    static const Texts names = {"LastName", "FirstName", "Business1", "Business2", "Mobile1", "Private1",
                                "Company1", "Address1",  "Address2",  "Position",  "Email1",  "DefaultDial"};
    return names;
}

std::string tamberHeader(char separator) {
    return join(tamberNames(), separator) + "\n";
}

std::string anyHeader(std::size_t count, char separator) {
    Texts names;
    for (std::size_t index = 0; index < count; ++index) {
        names.push_back("Column " + std::to_string(index));
    }
    return join(names, separator) + "\n";
}

std::string outlookHeader(char separator) {
    return anyHeader(92, separator);
}

std::string outlookColumns(const std::map<std::size_t, std::string>& texts, std::size_t from, std::size_t to,
                           char separator) {
    Texts columns;
    for (std::size_t index = from; index < to; ++index) {
        const auto text = texts.find(index);
        columns.push_back(text == texts.end() ? std::string() : text->second);
    }
    return join(columns, separator);
}

ImportTest::ImportTest() {
    fakePlatform().reset();
    fakePlatform().switchOn("ImportContactscSVParser", 2);
}
