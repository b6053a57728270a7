#include <algorithm>
#include <gmock/gmock.h>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "AddressBooks.h"
#include "ColumnTable.h"
#include "RunCommand.h"

namespace calljournal {
namespace {

using testing::HasSubstr;

/// A file with these options' columns file, which goes with the object.
class ColumnsFile {
public:
    explicit ColumnsFile(const std::string& text) : path_(folder_.write("columns.tsv", text)) {}

    ReadingOptions options() const {
        ReadingOptions options;
        options.columnsFile = path_;
        return options;
    }
    const std::string& path() const { return path_; }

private:
    const ::TemporaryFolder folder_;
    const std::string path_;
};

/// One person, as every program that has these columns would write her.
const std::map<FieldKind, std::string>& anna() {
    static const std::map<FieldKind, std::string> texts = [] {
        std::map<FieldKind, std::string> all;
        for (std::size_t i = 0; i < fieldKindCount; ++i) {
            const auto kind = static_cast<FieldKind>(i);
            all[kind] = "her " + std::string(fieldKindName(kind));
        }
        return all;
    }();
    return texts;
}

/// The export of a program: its header and one person. Columns that are not taken over have a text as well.
std::string exportOf(const KnownHeader& header) {
    std::string names;
    std::string cells;
    for (const NamedKind& column : header.columns) {
        names += (names.empty() ? "" : ",") + ('"' + column.name + '"');
        cells += (cells.empty() ? "" : ",") + ('"' + anna().at(column.kind) + '"');
    }
    return names + "\r\n" + cells + "\r\n";
}

bool isHandedOut(FieldKind kind) {
    return kind < FieldKind::other;
}

std::string titleOf(const KnownHeader& header) {
    return header.program + '/' + header.version + '/' + header.languages + '/' + header.evidence;
}

bool isUseful(const KnownHeader& header) {
    return std::any_of(header.columns.begin(), header.columns.end(),
                       [](const NamedKind& column) { return column.kind != FieldKind::other; });
}

std::vector<std::string> expectedOf(const KnownHeader& header) {
    std::vector<std::string> expected;
    for (const NamedKind& column : header.columns) {
        if (isHandedOut(column.kind)) {
            expected.push_back(anna().at(column.kind));
        }
    }
    return expected;
}

/// The texts that came with the kind that they were written for.
std::vector<std::string> rightTexts(const AddressRecord& record) {
    std::vector<std::string> texts;
    for (const AddressValue& value : record.values) {
        if (value.text == anna().at(value.kind)) {
            texts.push_back(value.text);
        }
    }
    return texts;
}

TEST(Columns, OfEveryProgramGiveTheirTextsAMeaning) {
    for (const KnownHeader& header : builtInColumnTable().headers) {
        if (!isUseful(header)) {
            continue;  // A few names that are not taken over make no header.
        }
        const std::vector<AddressRecord> records = recordsOf(exportOf(header));
        ASSERT_EQ(records.size(), 1u) << titleOf(header);
        EXPECT_EQ(rightTexts(records[0]), expectedOf(header)) << titleOf(header);
        EXPECT_EQ(records[0].fault, "") << titleOf(header);
    }
}

TEST(Columns, NameTheProgram) {
    for (const KnownHeader& header : builtInColumnTable().headers) {
        if (header.evidence != "table") {  // Lists of another program's names are no headers.
            EXPECT_THAT(recognised(exportOf(header)), HasSubstr(", " + header.program + ' ')) << titleOf(header);
        }
    }
}

TEST(Columns, AreThoseOfManyProgramsAndLanguages) {
    std::map<std::string, std::set<std::string>> languages;
    std::size_t names = 0;
    for (const KnownHeader& header : builtInColumnTable().headers) {
        std::string rest = header.languages;
        for (std::size_t comma = rest.find(", "); comma != std::string::npos; comma = rest.find(", ")) {
            languages[header.program].insert(rest.substr(0, comma));
            rest.erase(0, comma + 2);
        }
        languages[header.program].insert(rest);
        names += header.columns.size();
    }
    EXPECT_EQ(languages["Outlook"].size(), 17u);
    EXPECT_EQ(languages["Thunderbird"].size(), 73u);
    EXPECT_EQ(languages["Windows Live Mail"].size(), 19u);
    for (const char* const program : {"Google Contacts", "Apple Address Book", "Evolution", "Outlook.com", "Yahoo",
                                      "KAddressBook", "Windows Address Book", "Phone contact file"}) {
        EXPECT_EQ(languages.count(program), 1u) << program;
    }
    EXPECT_GT(names, 6000u);
}

TEST(Columns, SayHowSureTheirNamesAre) {
    const std::map<std::string, int> priorities = {{"export", 1}, {"texts", 2}, {"table", 3}};
    for (const KnownHeader& header : builtInColumnTable().headers) {
        ASSERT_EQ(priorities.count(header.evidence), 1u) << titleOf(header);
        EXPECT_EQ(priorities.at(header.evidence), header.priority) << titleOf(header);
    }
}

TEST(Columns, OfOneNameMeanWhatTheProgramMeansByIt) {
    // In English a form of address, and what somebody does; Yahoo has one column for it.
    EXPECT_THAT(read("Title,First Name,Last Name,Job Title\nDr.,Anna,Schmidt,Boss\n"),
                HasSubstr("  title Dr. [Title]\n"));
    EXPECT_THAT(read("First,Middle,Last,Nickname,Email,Title\nAnna,,Schmidt,,,Boss\n"),
                HasSubstr("  jobTitle Boss [Title]\n"));
}

TEST(Columns, WithTheSameNameTwiceMeanWhatIsBesideThem) {
    EXPECT_EQ(read("Titre,Prénom,Nom,Société,Titre\nDr,Anne,Petit,Firme,Chef\n"),
              "1 (2-2)\n"
              "  title Dr [Titre]\n"
              "  given Anne [Prénom]\n"
              "  family Petit [Nom]\n"
              "  company Firme [Société]\n"
              "  jobTitle Chef [Titre]\n");
    EXPECT_EQ(read("이름,성,표시명,직장 주소1,구/군,국가\na,b,c,d,e,f\n"),
              "1 (2-2)\n"
              "  given a [이름]\n"
              "  family b [성]\n"
              "  displayName c [표시명]\n"
              "  workStreet d [직장 주소1]\n"
              "  workCity e [구/군]\n"
              "  workCountry f [국가]\n");
    // Once too often: it means what it meant before.
    EXPECT_THAT(read("Prénom,Titre,Titre,Titre\na,b,c,d\n"),
                HasSubstr("  jobTitle b [Titre]\n  title c [Titre]\n  title d [Titre]\n"));
}

TEST(Columns, OfAUsersFileCountBeforeTheOwnOnes) {
    const ColumnsFile file(
        "# mine\r\n\r\nmobile\tHandy\r\nhomePhone\tMobile Phone\r\nheader\tClub\t\tde\nBusiness1\tTelefon\n"
        "phoneTypes\tde\ncarPhone\tTaxi\naddressTypes\nhomeAddress\tHof\n");
    EXPECT_EQ(
        read("Handy;Mobile Phone;Telefon;First Name;Phone 1 - Type;Phone 1 - Value;Address 1 - Type;Address 1 - City\n"
             "1;2;3;Anna;taxi;4;HOF;Berlin\n",
             file.options()),
        "1 (2-2)\n"
        "  mobile 1 [Handy]\n"
        "  homePhone 2 [Mobile Phone]\n"
        "  workPhone 3 [Telefon]\n"
        "  given Anna [First Name]\n"
        "  carPhone 4 [Phone 1 - Value (taxi)]\n"
        "  homeCity Berlin [Address 1 - City (HOF)]\n");
    EXPECT_EQ(recognised("Telefon;Handy;Nummer\n", file.options()),
              "UTF-8 (nothing speaks against it), ;, your columns file ");
}

TEST(Columns, OfAUsersFileAreReadWithCare) {
    const auto complaint = [](const std::string& text) {
        const ColumnsFile file(text);
        return refusal("First Name\n", file.options()).substr(file.path().size());
    };
    EXPECT_EQ(complaint("mobile\tHandy\nHandy\tmobile\n"),
              ", line 2: \"Handy\" is no meaning; it is a word such as mobile, or Mobile1");
    EXPECT_EQ(complaint("mobile\n"), ", line 1: there is no name behind the meaning and a tab");
    EXPECT_EQ(complaint("mobile\t - \n"), ", line 1: there is no name behind the meaning and a tab");
    EXPECT_EQ(complaint("header\ta\tb\tc\tfirst\n"), ", line 1: the priority \"first\" is not a number");
    EXPECT_EQ(complaint(std::string((16 << 20) + 1, '#')), ": cannot be read as a list of columns");
    ReadingOptions options;
    options.columnsFile = "/proc/no-such-file";
    EXPECT_EQ(refusal("First Name\n", options), options.columnsFile + ": cannot be read as a list of columns");
}

TEST(Columns, HaveFieldKindsThatAreWords) {
    for (std::size_t i = 0; i < fieldKindCount; ++i) {
        const auto kind = static_cast<FieldKind>(i);
        EXPECT_EQ(fieldKindOf(fieldKindName(kind)), kind) << i;
    }
    EXPECT_EQ(fieldKindOf("MOBILE1"), FieldKind::mobile);
    EXPECT_EQ(fieldKindOf("Address1"), FieldKind::addressLine1);
    EXPECT_EQ(fieldKindOf("Handy"), std::nullopt);
}

}  // namespace
}  // namespace calljournal
