#include <algorithm>
#include <gmock/gmock.h>
#include <string>
#include <vector>

#include "AddressBooks.h"

namespace calljournal {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

const std::string header = "First Name,Last Name,Mobile Phone\n";

TEST(CsvReader, FindsColumnsByNameWhateverTheirPlace) {
    EXPECT_EQ(read("Mobile Phone,Nonsense,Last Name\n0171,x,Schmidt\n"),
              "1 (2-2)\n"
              "  mobile 0171 [Mobile Phone]\n"
              "  family Schmidt [Last Name]\n");
}

TEST(CsvReader, TakesNamesInAnyCaseWithOtherBlanksAccentsAndPunctuation) {
    EXPECT_EQ(read("PRENOM ,  nom,E MAIL  adresse\nAnne,Petit,a@example.org\n"),
              "1 (2-2)\n"
              "  given Anne [PRENOM]\n"
              "  family Petit [nom]\n"
              "  email1 a@example.org [E MAIL  adresse]\n");
}

TEST(CsvReader, FindsTheDelimiterThatMakesMostNamesKnown) {
    EXPECT_EQ(recognised("First Name,Last Name\n"), "UTF-8 (nothing speaks against it), ,, Outlook en");
    EXPECT_EQ(recognised("First Name;Last Name\n"), "UTF-8 (nothing speaks against it), ;, Outlook en");
    EXPECT_EQ(recognised("First Name\tLast Name\n"), "UTF-8 (nothing speaks against it), tab, Outlook en");
    EXPECT_EQ(read("First Name;Last, Name;Mobile Phone\nA;B;1,2\n"),
              "1 (2-2)\n"
              "  given A [First Name]\n"
              "  family B [Last, Name]\n"
              "  mobile 1,2 [Mobile Phone]\n");
}

TEST(CsvReader, BelievesALineThatNamesTheDelimiter) {
    EXPECT_EQ(read("sep=;\r\nFirst Name;Last Name,Company\r\nA;B\r\n"),
              "1 (3-3)\n"
              "  given A [First Name]\n");
    EXPECT_EQ(read("\"sep=\t\"\nFirst Name\tLast Name\nA\tB\n"),
              "1 (3-3)\n"
              "  given A [First Name]\n"
              "  family B [Last Name]\n");
    EXPECT_THAT(refusal("sep=|\nFirst Name|Last Name\n"), HasSubstr("0 of 1 columns"));
}

TEST(CsvReader, KeepsDelimitersQuotesAndLineBreaksInQuotes) {
    EXPECT_EQ(read(header + "\"A,B\",\"the \"\"boss\"\"\",\"1\r\n2\r3\n4\"\nC,D,5\n"),
              "1 (2-5)\n"
              "  given A,B [First Name]\n"
              "  family the \"boss\" [Last Name]\n"
              "  mobile 1\n2\n3\n4 [Mobile Phone]\n"
              "2 (6-6)\n"
              "  given C [First Name]\n"
              "  family D [Last Name]\n"
              "  mobile 5 [Mobile Phone]\n");
}

TEST(CsvReader, CountsLinesOfEveryKindAndSkipsEmptyOnes) {
    EXPECT_EQ(read("First Name,Last Name\rA,B\r\n\n \t\r\rC,D\nE,F"),
              "1 (2-2)\n"
              "  given A [First Name]\n"
              "  family B [Last Name]\n"
              "2 (6-6)\n"
              "  given C [First Name]\n"
              "  family D [Last Name]\n"
              "3 (7-7)\n"
              "  given E [First Name]\n"
              "  family F [Last Name]\n");
}

TEST(CsvReader, TakesARowOfEmptyCellsForARecordWithoutValues) {
    EXPECT_EQ(read(header + "\"\",\"\",\"\"\n"), "1 (2-2)\n");
}

TEST(CsvReader, DropsBlanksAndControlCharacters) {
    EXPECT_EQ(read(header + "\" A\x01\x42 \",\"\x02 \",\t1\n"),
              "1 (2-2)\n"
              "  given A B [First Name]\n"
              "  mobile 1 [Mobile Phone]\n");
}

TEST(CsvReader, TakesMissingColumnsForEmptyAndSaysSo) {
    EXPECT_EQ(read(header + "A\n"),
              "1 (2-2)\n"
              "  given A [First Name]\n"
              "  ! 2 it has 1 columns, the header 3; the others were taken for empty\n");
}

TEST(CsvReader, RefusesARecordWithMoreTextsThanTheHeader) {
    EXPECT_EQ(read(header + "A,B,1,2\nC,D,3,,\n"),
              "1 (2-2) it has 4 columns, the header 3\n"
              "2 (3-3)\n"
              "  given C [First Name]\n"
              "  family D [Last Name]\n"
              "  mobile 3 [Mobile Phone]\n");
}

TEST(CsvReader, ReadsQuotesOutOfPlaceAsTheyAreIfTheColumnsAgree) {
    EXPECT_EQ(read(header + "Joe \"the boss\",B \"C\",1\nD,E,2\n"),
              "1 (2-2)\n"
              "  given Joe \"the boss\" [First Name]\n"
              "  family B \"C\" [Last Name]\n"
              "  mobile 1 [Mobile Phone]\n"
              "  ! 2 its quotes are out of place and were read as they stand\n"
              "2 (3-3)\n"
              "  given D [First Name]\n"
              "  family E [Last Name]\n"
              "  mobile 2 [Mobile Phone]\n");
}

TEST(CsvReader, LosesOneLineToAQuoteThatIsNeverClosed) {
    EXPECT_EQ(read(header + "A,\"B,1\nC,D,2\nE,F,3\n"),
              "1 (2-2) a quote is out of place or never closed\n"
              "2 (3-3)\n"
              "  given C [First Name]\n"
              "  family D [Last Name]\n"
              "  mobile 2 [Mobile Phone]\n"
              "3 (4-4)\n"
              "  given E [First Name]\n"
              "  family F [Last Name]\n"
              "  mobile 3 [Mobile Phone]\n");
}

TEST(CsvReader, DoesNotBelieveAQuoteThatSwallowsLinesUntilTheNextOne) {
    EXPECT_EQ(read(header + "A,\"B,1\nC,D\",2,x,y\nE,F,3\n"),
              "1 (2-2) a quote is out of place or never closed\n"
              "2 (3-3) a quote is out of place or never closed\n"
              "3 (4-4)\n"
              "  given E [First Name]\n"
              "  family F [Last Name]\n"
              "  mobile 3 [Mobile Phone]\n");
}

TEST(CsvReader, KeepsALastCellWhoseQuoteIsStillOpenAtTheEnd) {
    EXPECT_EQ(read(header + "A,B,\"1"),
              "1 (2-2)\n"
              "  given A [First Name]\n"
              "  family B [Last Name]\n"
              "  mobile 1 [Mobile Phone]\n"
              "  ! 2 its quotes are out of place and were read as they stand\n");
}

TEST(CsvReader, SkipsALineThatIsTooLongAndReadsOn) {
    const std::string text = header + std::string(3 * longestRecord, 'x') + ",B,1\r\nC,D,2\n";
    EXPECT_EQ(read(text),
              "1 (2-2) the line is longer than 1048576 bytes\n"
              "2 (3-3)\n"
              "  given C [First Name]\n"
              "  family D [Last Name]\n"
              "  mobile 2 [Mobile Phone]\n");
    EXPECT_EQ(read(header + std::string(3 * longestRecord, 'x')), "1 (2-2) the line is longer than 1048576 bytes\n");
    EXPECT_EQ(read(header + std::string(3 * longestRecord, ' ') + "\n"),
              "1 (2-2) the line is longer than 1048576 bytes\n");
}

TEST(CsvReader, GivesUpOnARecordThatIsTooLongAndReadsItsOtherLines) {
    std::string text = header + "A,\"B,1\n";
    const std::size_t rows = longestRecord / 8 + 1000;
    for (std::size_t i = 0; i < rows; ++i) {
        text += "C,D,234\n";
    }
    const std::vector<AddressRecord> records = recordsOf(text);
    ASSERT_THAT(records, SizeIs(rows + 1));
    EXPECT_EQ(records[0].fault, "a quote is out of place or never closed");
    const auto isWhole = [](const AddressRecord& record) { return record.fault.empty() && record.values.size() == 3; };
    EXPECT_TRUE(std::all_of(records.begin() + 1, records.end(), isWhole));
    EXPECT_EQ(records.back().lastLine, rows + 2);
}

TEST(CsvReader, TakesOneRecordAtMostForEachLineOfBrokenQuotes) {
    std::string text = header;
    constexpr std::size_t rows = 20000;
    for (std::size_t i = 0; i < rows; ++i) {
        text += "A,\"B\n";
    }
    const std::vector<AddressRecord> records = recordsOf(text);
    EXPECT_THAT(records, SizeIs(rows));
    EXPECT_TRUE(std::none_of(records.begin(), records.end(), [](const AddressRecord& r) { return r.fault.empty(); }));
}

TEST(CsvReader, GivesPhonesTheirKindFromTheCellBesideThem) {
    EXPECT_EQ(read("Name,Phone 1 - Type,Phone 1 - Value,Phone 2 - Type,Phone 2 - Value,Phone 3 - Label,Phone 3 - Value,"
                   "Phone 4 - Label,Phone 4 - Value,Phone 5 - Type,Phone 5 - Value\n"
                   "Anna,Work,1 ::: 2,* Mobile,3,,4,Ski hut,5,home,\n"),
              "1 (2-2)\n"
              "  displayName Anna [Name]\n"
              "  workPhone 1 [Phone 1 - Value (Work)]\n"
              "  workPhone2 2 [Phone 1 - Value (Work)]\n"
              "  mobile 3 [Phone 2 - Value (Mobile)]\n"
              "  primaryPhone 4 [Phone 3 - Value]\n"
              "  otherPhone 5 [Phone 4 - Value (Ski hut)]\n");
    EXPECT_EQ(read("Phone 1 - Type,Phone 1 - Value,E-mail 1 - Value\nPrivat,1 ::: 2,a@b ::: c@d\n"),
              "1 (2-2)\n"
              "  email1 a@b [E-mail 1 - Value]\n"
              "  email1 c@d [E-mail 1 - Value]\n"
              "  homePhone 1 [Phone 1 - Value (Privat)]\n"
              "  homePhone2 2 [Phone 1 - Value (Privat)]\n");
}

TEST(CsvReader, GivesAddressesTheirKindFromTheCellBesideThem) {
    EXPECT_EQ(read("Address 1 - Type,Address 1 - Formatted,Address 1 - Street,Address 1 - City,Address 1 - PO Box,"
                   "Address 1 - Region,Address 1 - Postal Code,Address 1 - Country,Address 1 - Extended Address,"
                   "Address 2 - Type,Address 2 - Street,Address 2 - City\n"
                   "Home,all,Weg 1,Berlin,77,BE,10115,DE,Hof,Castle,Hill 1,\n"),
              "1 (2-2)\n"
              "  homeAddress all [Address 1 - Formatted (Home)]\n"
              "  homeStreet Weg 1 [Address 1 - Street (Home)]\n"
              "  homeCity Berlin [Address 1 - City (Home)]\n"
              "  homePoBox 77 [Address 1 - PO Box (Home)]\n"
              "  homeState BE [Address 1 - Region (Home)]\n"
              "  homePostcode 10115 [Address 1 - Postal Code (Home)]\n"
              "  homeCountry DE [Address 1 - Country (Home)]\n"
              "  homeStreet2 Hof [Address 1 - Extended Address (Home)]\n"
              "  otherStreet Hill 1 [Address 2 - Street (Castle)]\n");
}

TEST(CsvReader, PutsTheColumnsThatTheUserMappedFirst) {
    ReadingOptions options;
    options.mappings = {columnMapping("handy=Mobile1"), columnMapping("Last Name=-")};
    EXPECT_EQ(read("First Name,Last Name,Mobile Phone,Handy\nA,B,1,2\n", options),
              "1 (2-2)\n"
              "  mobile 2 [Handy]\n"
              "  given A [First Name]\n"
              "  mobile 1 [Mobile Phone]\n");
}

TEST(CsvReader, SaysWhatCouldNotBeReadAsACharacter) {
    ReadingOptions options;
    options.charset = "utf-8";
    EXPECT_EQ(read(header + "J\xfcrg,B,1\n", options),
              "1 (2-2)\n"
              "  given J\ufffdrg [First Name]\n"
              "  family B [Last Name]\n"
              "  mobile 1 [Mobile Phone]\n"
              "  ! 2 [First Name] it has characters that could not be read\n");
}

TEST(CsvReader, EndsTheSameWhereverAFileIsCut) {
    const std::string text = header + "\"A,B\",\"the \"\"boss\"\"\",\"1\r\n2\"\r\nC,D,5\r\n";
    for (std::size_t size = header.size(); size <= text.size(); ++size) {
        for (const AddressRecord& record : recordsOf(text.substr(0, size))) {
            EXPECT_LE(record.firstLine, record.lastLine) << size;
            EXPECT_TRUE(record.fault.empty() || record.values.empty()) << size;
        }
    }
}

}  // namespace
}  // namespace calljournal
