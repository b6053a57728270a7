#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

#include "FaultyMemory.h"
#include "HostPlatform.h"
#include "ImportContactsCSVParser.h"

namespace {

// Long texts, so that each takes memory.
const std::string tamberFile =
    "LastName;FirstName;Business1;Business2;Mobile1;Private1;Company1;Address1;Address2;Position;Email1;DefaultDial\r\n"
    "A surname longer than sixteen;A first name of that length;0123456789012345678;;0123456789012345679;;\"A "
    "\"\"quoted\"\" "
    "company; with a separator\";;;;someone.with.a.long.name@example.com;1\r\n"
    "M\xfcller from an old export, Latin 1;;;;;;;;;;;\r\n"
    "The last one has no end of line;;;;;;;;;;;0";

/// 92 columns; the third line is continued on the fourth.
std::string outlookFile() {
    std::string header = "Column 0";
    std::string record =
        "\"Title\",\"A first name of some length\",,\"A last name of some length\",,\"Company, Limited and more\"";
    std::string continued = ",\"Another first name of some length\",,\"Street 1\n12345 A town with a long name\"";
    for (int column = 1; column < 92; ++column) {
        header += ",Column " + std::to_string(column);
    }
    record += std::string(86, ',');
    continued += std::string(88, ',');
    return header + "\n" + record + "\n" + continued + "\n" + record + "\n";
}

/// The file of one import and what became of it.
struct Import {
    explicit Import(const std::string& content)
        : path(testing::TempDir() + "faults-" + std::to_string(getpid()) + ".csv") {
        std::ofstream(path, std::ios::binary) << content;
    }

    std::string path;
    std::unique_ptr<ImportContactsCSVParser> importer;
};

/// The contacts as texts, all members that a file fills.
std::vector<std::string> textsOf(const std::vector<Contact>& contacts) {
    std::vector<std::string> texts;
    for (const Contact& contact : contacts) {
        texts.push_back(contact.lastName + '|' + contact.firstName + '|' + contact.business1 + '|' + contact.mobile1 +
                        '|' + contact.company1 + '|' + contact.address1 + '|' + contact.email1 + '|' +
                        std::to_string(contact.defaultDial));
    }
    return texts;
}

/// Standard error goes nowhere while the object lives.
class SilentLog {
public:
    SilentLog() : kept_(dup(STDERR_FILENO)) {
        EXPECT_NE(std::freopen("/dev/null", "w", stderr), nullptr);
        calljournal::setLogLevel(9);
    }
    ~SilentLog() {
        calljournal::setLogLevel(0);
        std::fflush(stderr);
        dup2(kept_, STDERR_FILENO);
        close(kept_);
    }
    SilentLog(const SilentLog&) = delete;
    SilentLog& operator=(const SilentLog&) = delete;

private:
    int kept_;
};

/// Imports `content` with each piece of memory missing in turn. With all memory it comes to `code` and so many
/// contacts. Else it comes to 6 and the first ones of those; or to what the lines up to there come to (`codeOfStart`),
/// since a line that there is no memory for is the end of the file to a stream.
void expectImportsEndOrderly(const std::string& content, int code, std::size_t contacts, int codeOfStart) {
    const Import whole(content);
    const ImportContactsCSVParser importer(whole.path, 0);
    EXPECT_EQ(importer.getCSVType(), code);
    const std::vector<std::string> all = textsOf(importer.getContacts());
    ASSERT_EQ(all.size(), contacts);

    const auto prepare = [&] { return Import(content); };
    const auto work = [](Import& import) {
        import.importer = std::make_unique<ImportContactsCSVParser>(import.path, 0);
    };
    const auto check = [&](const Import& import, bool hasThrown) {
        if (hasThrown) {
            // Not even the importer itself could be had: it never began.
            EXPECT_TRUE(std::filesystem::remove(import.path));
            return;
        }
        EXPECT_FALSE(std::filesystem::exists(import.path));
        const std::vector<std::string> texts = textsOf(import.importer->getContacts());
        ASSERT_LE(texts.size(), all.size());
        EXPECT_TRUE(std::equal(texts.begin(), texts.end(), all.begin()));
        EXPECT_THAT(import.importer->getCSVType(), testing::AnyOf(6, code, codeOfStart));
    };
    EXPECT_TRUE(failAtEachPiece(prepare, work, check));
}

TEST(ImportMemory, MayBeMissingAtAnyPlaceOfATamberFile) {
    expectImportsEndOrderly(tamberFile, 7, 3, 7);
}

TEST(ImportMemory, MayBeMissingAtAnyPlaceOfAnOutlookFile) {
    // A record without its continuation has too few columns.
    expectImportsEndOrderly(outlookFile(), 8, 3, 5);
}

TEST(ImportMemory, MayBeMissingForTheLogToo) {
    const SilentLog log;
    expectImportsEndOrderly(tamberFile, 7, 3, 7);
    expectImportsEndOrderly(tamberFile + "\nC:\\temp;;;;;;;;;;;\n", 6, 3, 7);
    expectImportsEndOrderly("LastName;FirstName and something else\n", 3, 0, 3);
}

TEST(ImportMemory, MayBeMissingWhenTheContactsAreTaken) {
    Import import(tamberFile);
    const ImportContactsCSVParser importer(import.path, 0);
    const std::vector<std::string> all = textsOf(importer.getContacts());
    const auto work = [&](std::vector<Contact>& contacts) { contacts = importer.getContacts(); };
    const auto check = [&](const std::vector<Contact>& contacts, bool hasThrown) {
        EXPECT_EQ(textsOf(contacts), hasThrown ? std::vector<std::string>() : all);
        EXPECT_EQ(textsOf(importer.getContacts()), all);
    };
    EXPECT_TRUE(failAtEachPiece([] { return std::vector<Contact>(); }, work, check));
}

}  // namespace
