#include "AddressReader.h"

#include <fstream>
#include <gmock/gmock.h>
#include <sstream>
#include <string>

#include "AddressBooks.h"
#include "RunCommand.h"

namespace calljournal {
namespace {

using testing::HasSubstr;

TEST(AddressReader, ShowsAHeaderOfWhichNothingIsKnown) {
    EXPECT_EQ(
        refusal("Händy;Zuname;ID\n1;2;3\n"),
        "0 of 3 columns mean something:\n"
        "  Händy   not recognised\n"
        "  Zuname  not recognised\n"
        "  ID      known, not taken over\n"
        "Say what a column means with --map \"Händy=Mobile1\". The phone's own names are LastName, FirstName, "
        "Business1, Business2, Mobile1, Private1, Company1, Address1, Address2, Position and Email1; \"-\" leaves a "
        "column out.\n");
    EXPECT_EQ(refusal(""), "the file has no line with the names of its columns");
    EXPECT_EQ(refusal("\n \r\n"), "the file has no line with the names of its columns");
}

TEST(AddressReader, ShowsNoMoreThanFitsAScreenOrTwo) {
    std::string header = std::string(59, 'x') + "ü\n\x01";
    for (int i = 0; i < 200; ++i) {
        header += ",c" + std::to_string(i);
    }
    const std::string shown = refusal('"' + header.substr(0, 63) + '"' + header.substr(63) + "\n");
    EXPECT_THAT(shown,
                HasSubstr("0 of 201 columns mean something:\n  " + std::string(59, 'x') + "...  not recognised\n"));
    EXPECT_THAT(shown, HasSubstr("c98                                       not recognised\n  and 101 more\nSay what"));
    EXPECT_THAT(refusal(std::string(5000, ',') + "Notes,Name\n"), HasSubstr("0 of 1 columns"));
}

TEST(AddressReader, ShowsWhatEachColumnMeans) {
    ReadingOptions options;
    options.mappings = {columnMapping("Handy=Mobile1")};
    std::istringstream stream("Vorname;Handy;Konto\n");
    EXPECT_EQ(columnTable(openAddressBook(stream, options)->recognition()),
              "2 of 3 columns mean something:\n"
              "  Vorname  given\n"
              "  Handy    mobile (--map)\n"
              "  Konto    known, not taken over\n");
}

TEST(AddressReader, SaysWhichMappingsFitNoColumn) {
    ReadingOptions options;
    options.mappings = {columnMapping("Handy=Mobile1"), columnMapping("Hndy=Mobile1")};
    std::istringstream stream("Vorname;Handy\n");
    EXPECT_THAT(openAddressBook(stream, options)->recognition().unusedMappings, testing::ElementsAre("Hndy"));
}

TEST(AddressReader, TakesAColumnAndAMeaningForAMapping) {
    EXPECT_EQ(columnMapping("a=b=workPhone").name, "a=b");
    EXPECT_EQ(columnMapping("a=WORKPHONE").kind, FieldKind::workPhone);
    EXPECT_EQ(columnMapping("a=-").kind, FieldKind::other);
    for (const char* const wrong : {"Handy", "Handy=", "=Mobile1", "Handy=Phone", ""}) {
        try {
            columnMapping(wrong);
            ADD_FAILURE() << wrong;
        } catch (const AddressBookError& error) {
            EXPECT_EQ(error.reason(), AddressBookError::Reason::option);
            EXPECT_THAT(error.what(), HasSubstr("--map \"" + std::string(wrong) + "\" has to be"));
            EXPECT_THAT(error.what(), HasSubstr(" title, given, middle, "));
        }
    }
}

TEST(AddressReader, ReadsAFile) {
    const ::TemporaryFolder folder;
    const std::string text =
        "\xef\xbb\xbf"
        "First Name,Last Name\nA,B\n";
    const std::string path = folder.write("book.csv", text);
    const std::unique_ptr<AddressReader> book = openAddressBook(path, {});
    AddressRecord record;
    ASSERT_TRUE(book->next(record));
    EXPECT_EQ(firstText(record, FieldKind::family), "B");
    EXPECT_FALSE(book->next(record));
    EXPECT_EQ(book->bytesRead(), text.size() - 3);
    std::ofstream(path, std::ios::binary) << "x\n";
    try {
        openAddressBook(path, {});
        ADD_FAILURE();
    } catch (const AddressBookError& error) {
        EXPECT_EQ(error.reason(), AddressBookError::Reason::header);
        EXPECT_THAT(error.what(), HasSubstr(path + ": 0 of 1 columns"));
    }
}

TEST(AddressReader, SaysWhyAFileCannotBeOpened) {
    const auto complaint = [](const std::string& path) -> std::string {
        try {
            openAddressBook(path, {});
        } catch (const AddressBookError& error) {
            EXPECT_EQ(error.reason(), AddressBookError::Reason::file);
            return error.what();
        }
        return {};
    };
    EXPECT_EQ(complaint("/no/such/file"), "/no/such/file: No such file or directory");
    EXPECT_EQ(complaint("/"), "/: Is a directory");
}

TEST(AddressReader, CountsTheBytesThatItHasRead) {
    std::string text = "First Name,Last Name\n";
    while (text.size() < 1000000) {
        text += "A,B\n";
    }
    std::istringstream stream(text);
    const std::unique_ptr<AddressReader> book = openAddressBook(stream, {});
    AddressRecord record;
    book->next(record);
    EXPECT_LT(book->bytesRead(), text.size() / 2);
    while (book->next(record)) {
    }
    EXPECT_EQ(book->bytesRead(), text.size());
    std::istringstream cards("BEGIN:VCARD\nEND:VCARD\n");
    EXPECT_EQ(openAddressBook(cards, {})->bytesRead(), 0u);
}

/// Breaks when it is read for the second time.
class BreakingBuffer : public std::stringbuf {
public:
    using std::stringbuf::stringbuf;
    bool isBroken = false;

protected:
    std::streamsize xsgetn(char* target, std::streamsize size) override {
        if (isBroken) {
            throw std::runtime_error("broken");
        }
        return std::stringbuf::xsgetn(target, size);
    }
};

TEST(AddressReader, SaysThatAFileCannotBeReadOn) {
    BreakingBuffer buffer("First Name,Last Name\n" + std::string(200000, '\n') + "A,B\n", std::ios::in);
    std::istream stream(&buffer);
    const std::unique_ptr<AddressReader> book = openAddressBook(stream, {});
    buffer.isBroken = true;
    AddressRecord record;
    try {
        book->next(record);
        ADD_FAILURE();
    } catch (const AddressBookError& error) {
        EXPECT_EQ(error.reason(), AddressBookError::Reason::file);
        EXPECT_STREQ(error.what(), "the file cannot be read on");
    }
}

}  // namespace
}  // namespace calljournal
