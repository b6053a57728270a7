#include <gmock/gmock.h>
#include <string>

#include "AddressBooks.h"

namespace calljournal {
namespace {

using testing::SizeIs;

/// A card of one version with these lines.
std::string card(const std::string& lines, const std::string& version = "3.0") {
    return "BEGIN:VCARD\r\nVERSION:" + version + "\r\n" + lines + "END:VCARD\r\n";
}

TEST(VCardReader, ReadsAPersonInVersion4) {
    EXPECT_EQ(read(card("FN:Anna Schmidt\r\n"
                        "N:Schmidt;Anna,Maria;Eva;Dr.;MdB\r\n"
                        "NICKNAME:Änne\r\n"
                        "ORG:Firma\\, GmbH;Vertrieb;Nord\r\n"
                        "TITLE:Leiterin\r\n"
                        "TEL;VALUE=uri;PREF=2;TYPE=\"voice,home\":tel:+49-30-2\r\n"
                        "TEL;VALUE=uri;PREF=1;TYPE=\"voice,home\":tel:+49-30-1\r\n"
                        "TEL;TYPE=cell:0171\r\n"
                        "EMAIL:b@example.org\r\n"
                        "EMAIL;PREF=1:mailto:a@example.org\r\n"
                        "ADR;TYPE=home:77;Hof;Weg 1,links;Berlin;BE;10115;Germany\r\n"
                        "URL;TYPE=home:https://a.example\r\n"
                        "URL:https://b.example\r\n"
                        "BDAY:19700102\r\n"
                        "UID:urn:uuid:1\r\n"
                        "X-ROOM:4\\,2\r\n",
                        "4.0")),
              "1 (1-19)\n"
              "  displayName Anna Schmidt [FN]\n"
              "  family Schmidt [N]\n"
              "  given Anna Maria [N]\n"
              "  middle Eva [N]\n"
              "  title Dr. [N]\n"
              "  suffix MdB [N]\n"
              "  nickname Änne [NICKNAME]\n"
              "  company Firma, GmbH [ORG]\n"
              "  department Vertrieb [ORG]\n"
              "  department Nord [ORG]\n"
              "  jobTitle Leiterin [TITLE]\n"
              "  webHome https://a.example [URL;TYPE=home]\n"
              "  web https://b.example [URL]\n"
              "  birthDate 19700102 [BDAY]\n"
              "  other 4\\,2 [X-ROOM]\n"
              "  homePhone +49-30-1 [TEL;VALUE=uri;PREF=1;TYPE=\"voice,home\"]\n"
              "  homePhone2 +49-30-2 [TEL;VALUE=uri;PREF=2;TYPE=\"voice,home\"]\n"
              "  mobile 0171 [TEL;TYPE=cell]\n"
              "  email1 a@example.org [EMAIL;PREF=1]\n"
              "  email2 b@example.org [EMAIL]\n"
              "  homePoBox 77 [ADR;TYPE=home]\n"
              "  homeStreet2 Hof [ADR;TYPE=home]\n"
              "  homeStreet Weg 1, links [ADR;TYPE=home]\n"
              "  homeCity Berlin [ADR;TYPE=home]\n"
              "  homeState BE [ADR;TYPE=home]\n"
              "  homePostcode 10115 [ADR;TYPE=home]\n"
              "  homeCountry Germany [ADR;TYPE=home]\n");
}

TEST(VCardReader, ReadsQuotedPrintableTextsOfVersion21) {
    EXPECT_EQ(read(card("N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=BCl=\r\nler;J=c3=b6rg\r\n"
                        "TITLE;QUOTED-PRINTABLE;CHARSET=ISO-8859-1:Gesch=E4ft=ZZ=\r\n"
                        "NOTE;ENCODING=QUOTED-PRINTABLE:a=0D=0Ab\r\n"
                        "NOTE;ENCODING=QUOTED-PRINTABLE:a=0D=0Ab=FC=4\r\n",
                        "2.1")),
              "1 (1-8)\n"
              "  family Müller [N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE]\n"
              "  given Jörg [N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE]\n"
              "  jobTitle Geschäft=ZZNOTE;ENCODING=QUOTED-PRINTABLE:a\nb [TITLE;QUOTED-PRINTABLE;CHARSET=ISO-8859-1]\n"
              "  notes a\nbü=4 [NOTE;ENCODING=QUOTED-PRINTABLE]\n");
}

TEST(VCardReader, KnowsNoLineBreaksAndListsInVersion21) {
    EXPECT_EQ(read(card("N:M\\;x,y;A\r\nNOTE:C:\\new\\\\old\r\nTITLE:one\r\n two\r\n", "2.1")),
              "1 (1-7)\n"
              "  family M;x,y [N]\n"
              "  given A [N]\n"
              "  notes C:\\new\\old [NOTE]\n"
              "  jobTitle one two [TITLE]\n");
}

TEST(VCardReader, JoinsFoldedLinesAndDropsTheirBlank) {
    EXPECT_EQ(read(card("NOTE:one\r\n  two\r\n\tthree\\nfour\r\nTI\r\n TLE;X=\"a:b\":Chief\r\n")),
              "1 (1-8)\n"
              "  notes one twothree\nfour [NOTE]\n"
              "  jobTitle Chief [TITLE;X=\"a:b\"]\n");
}

struct TypeCase {
    const char* property;
    const char* kind;
};

class PhoneTypes : public testing::TestWithParam<TypeCase> {};

TEST_P(PhoneTypes, SayWhatANumberIs) {
    const std::vector<AddressRecord> records = recordsOf(card(std::string(GetParam().property) + ":1\r\n"));
    ASSERT_THAT(records, SizeIs(1));
    ASSERT_THAT(records[0].values, SizeIs(1));
    EXPECT_EQ(fieldKindName(records[0].values[0].kind), GetParam().kind) << GetParam().property;
}

INSTANTIATE_TEST_SUITE_P(
    VCardReader, PhoneTypes,
    testing::Values(TypeCase{"TEL", "primaryPhone"}, TypeCase{"TEL;TYPE=work,voice", "workPhone"},
                    TypeCase{"TEL;HOME", "homePhone"}, TypeCase{"TEL;TYPE=WORK;TYPE=CELL", "mobile"},
                    TypeCase{"tel;type=iphone", "mobile"}, TypeCase{"TEL;TYPE=FAX", "otherFax"},
                    TypeCase{"TEL;TYPE=WORK,FAX", "workFax"}, TypeCase{"TEL;TYPE=home;TYPE=fax", "homeFax"},
                    TypeCase{"TEL;TYPE=PAGER", "pager"}, TypeCase{"TEL;CAR", "carPhone"},
                    TypeCase{"TEL;TYPE=ISDN", "isdn"}, TypeCase{"TEL;TYPE=textphone", "ttyTdd"},
                    TypeCase{"TEL;TYPE=main", "primaryPhone"}, TypeCase{"TEL;TYPE=OTHER", "otherPhone"},
                    TypeCase{"TEL;TYPE=pref", "primaryPhone"}));

TEST(VCardReader, TakesAGroupsLabelForTheKind) {
    EXPECT_EQ(read(card("item1.TEL:1\r\nitem1.X-ABLabel:_$!<Mobile>!$_\r\n"
                        "item2.TEL:2\r\nITEM2.X-ABLabel:Ski hut\r\n"
                        "item3.ADR:;;Weg 1;;;;\r\nitem3.X-ABLabel:Privat\r\n"
                        "item4.ADR:;;Weg 2;;;;\r\nitem4.X-ABLabel:Castle\r\n"
                        "item5.ADR:;;Weg 3;;;;\r\n"
                        "ADR;WORK:;;Weg 4;;;;\r\n")),
              "1 (1-13)\n"
              "  mobile 1 [item1.TEL]\n"
              "  otherPhone 2 [item2.TEL]\n"
              "  homeStreet Weg 1 [item3.ADR]\n"
              "  otherStreet Weg 2 [item4.ADR]\n"
              "  workStreet Weg 3 [item5.ADR]\n"
              "  workStreet Weg 4 [ADR;WORK]\n");
}

TEST(VCardReader, CountsTelephonesAndMailsOfOneSort) {
    EXPECT_EQ(read(card("TEL;WORK:1\r\nTEL;WORK:2\r\nTEL;WORK:3\r\nTEL;WORK;PREF:4\r\nTEL:\r\n"
                        "EMAIL:a\r\nEMAIL:b\r\nEMAIL:c\r\nEMAIL:d\r\nEMAIL:e\r\n")),
              "1 (1-13)\n"
              "  workPhone 4 [TEL;WORK;PREF]\n"
              "  workPhone2 1 [TEL;WORK]\n"
              "  workPhone2 2 [TEL;WORK]\n"
              "  workPhone2 3 [TEL;WORK]\n"
              "  email1 a [EMAIL]\n"
              "  email2 b [EMAIL]\n"
              "  email3 c [EMAIL]\n"
              "  email4 d [EMAIL]\n"
              "  email4 e [EMAIL]\n");
}

TEST(VCardReader, SkipsPicturesHoweverTheyAreWritten) {
    EXPECT_EQ(read(card("PHOTO;ENCODING=BASE64;JPEG:AAAA\r\n BBBB\r\nCCCC=\r\n\r\nTEL:1\r\n", "2.1")),
              "1 (1-8)\n"
              "  other (binary) [PHOTO;ENCODING=BASE64;JPEG]\n"
              "  primaryPhone 1 [TEL]\n");
    const std::string picture(3 * longestRecord, 'A');
    EXPECT_EQ(read(card("PHOTO;ENCODING=b:" + picture + "\r\nX-FACE;ENCODING=B:" + picture + "\r\nTEL:1\r\n")),
              "1 (1-6)\n"
              "  other (binary) [PHOTO;ENCODING=b]\n"
              "  other (binary) [X-FACE;ENCODING=B]\n"
              "  primaryPhone 1 [TEL]\n");
}

TEST(VCardReader, SkipsTheCardOfAnAgent) {
    EXPECT_EQ(
        read(card("AGENT:\r\nBEGIN:VCARD\r\nFN:Agent\r\nAGENT:\r\nBEGIN:VCARD\r\nEND:VCARD\r\nEND:VCARD\r\nFN:Anna\r\n",
                  "2.1")),
        "1 (1-11)\n"
        "  displayName Anna [FN]\n");
    EXPECT_EQ(read(card("AGENT:\r\nFN:Anna\r\n", "2.1")),
              "1 (1-5)\n"
              "  displayName Anna [FN]\n");
    EXPECT_EQ(read("BEGIN:VCARD\nAGENT:\nBEGIN:VCARD\nFN:x\n"),
              "1 (1-4)\n"
              "  ! 4 END:VCARD is missing\n");
}

TEST(VCardReader, NamesWhatIsNoPropertyByItsLine) {
    EXPECT_EQ(read(card("nonsense\r\nT?L:1\r\n:2\r\nFN:Anna\r\n")),
              "1 (1-7)\n"
              "  displayName Anna [FN]\n"
              "  ! 3 the line is no property\n"
              "  ! 4 the line is no property\n"
              "  ! 5 the line is no property\n");
}

TEST(VCardReader, TakesNoEndlessListOfParametersForAProperty) {
    EXPECT_EQ(read(card("TEL;TYPE=" + std::string(100000, ',') + ":1\r\nTEL:2\r\n")),
              "1 (1-5)\n"
              "  primaryPhone 2 [TEL]\n"
              "  ! 3 the line is no property\n");
}

TEST(VCardReader, ReadsAQuoteInAParameterThatIsNeverClosed) {
    EXPECT_EQ(read(card("FN;X=\"a:Anna\r\n")),
              "1 (1-4)\n"
              "  displayName Anna [FN;X=\"a]\n");
}

TEST(VCardReader, ReadsOnAfterACardWithoutAnEnd) {
    EXPECT_EQ(read("BEGIN:VCARD\nFN:Anna\nBEGIN:VCARD\nFN:Berta\n"),
              "1 (1-2)\n"
              "  displayName Anna [FN]\n"
              "  ! 2 END:VCARD is missing\n"
              "2 (3-4)\n"
              "  displayName Berta [FN]\n"
              "  ! 4 END:VCARD is missing\n");
}

TEST(VCardReader, ReportsWhatIsOutsideOfCards) {
    EXPECT_EQ(read(card("FN:Anna\r\n") + "\r\nFN:Nobody\r\nTEL:1\r\n" + card("FN:Berta\r\n") + "TEL:2\r\n"),
              "1 (1-4)\n"
              "  displayName Anna [FN]\n"
              "2 (6-7) it stands outside of all cards\n"
              "3 (8-11)\n"
              "  displayName Berta [FN]\n"
              "4 (12-12) it stands outside of all cards\n");
}

TEST(VCardReader, TakesNoListOfContactsForAPerson) {
    EXPECT_EQ(read(card("KIND:group\r\nFN:Friends\r\nMEMBER:urn:uuid:1\r\n", "4.0") +
                   card("X-ADDRESSBOOKSERVER-KIND:individual\r\nFN:Anna\r\n")),
              "1 (1-6) it is a list of contacts\n"
              "2 (7-11)\n"
              "  displayName Anna [FN]\n");
}

TEST(VCardReader, GivesUpOnATextThatIsTooLong) {
    const std::string text(2 * longestRecord, 'x');
    EXPECT_EQ(read(card("NOTE:" + text + "\r\nFN:Anna\r\n")),
              "1 (1-5)\n"
              "  displayName Anna [FN]\n"
              "  ! 3 [NOTE] it is too long\n");
}

TEST(VCardReader, GivesUpOnACardThatIsTooLongAndReadsTheNext) {
    std::string lines;
    while (lines.size() < longestRecord) {
        lines += "X-PAD:" + std::string(1000, 'x') + "\r\n";
    }
    const std::string rest = card("FN:Anna\r\n");
    const std::vector<AddressRecord> records = recordsOf(card(lines) + rest);
    ASSERT_THAT(records, SizeIs(2));
    EXPECT_EQ(records[0].fault, "it is longer than 1048576 bytes");
    EXPECT_THAT(records[0].values, SizeIs(0));
    EXPECT_EQ(firstText(records[1], FieldKind::displayName), "Anna");
    EXPECT_EQ(firstText(records[1], FieldKind::family), "");
}

TEST(VCardReader, IsRecognisedBehindEmptyLinesInAnyCase) {
    EXPECT_EQ(recognised("\r\n\r\nbegin:vcard\r\nend:vcard\r\n"), "UTF-8 (nothing speaks against it), vCard");
    EXPECT_EQ(read("\r\n\r\nbegin:vcard\r\nfn:Anna\r\nend:vcard\r\n"),
              "1 (3-5)\n"
              "  displayName Anna [fn]\n");
}

TEST(VCardReader, BelievesWhatACardSaysAboutItsCharacters) {
    EXPECT_EQ(recognised(card("N;CHARSET=WINDOWS-1250:\xa3\xf3\xbf;A\r\n", "2.1")),
              "WINDOWS-1250 (the file names it), vCard");
    EXPECT_EQ(read(card("N;CHARSET=WINDOWS-1250:\xa3\xf3\xbf;A\r\n", "2.1")),
              "1 (1-4)\n"
              "  family Łóż [N;CHARSET=WINDOWS-1250]\n"
              "  given A [N;CHARSET=WINDOWS-1250]\n");
}

TEST(VCardReader, EndsTheSameWhereverAFileIsCut) {
    const std::string text =
        card("N;ENCODING=QUOTED-PRINTABLE:M=C3=\r\n=BC;A\r\nPHOTO;BASE64:AA\r\nBB\r\nTEL;X=\"a:b\":1\r\n", "2.1");
    for (std::size_t size = 13; size <= text.size(); ++size) {
        EXPECT_THAT(recordsOf(text.substr(0, size)), SizeIs(1)) << size;
    }
}

}  // namespace
}  // namespace calljournal
