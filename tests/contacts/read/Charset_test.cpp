#include "Charset.h"

#include <gmock/gmock.h>
#include <map>
#include <sstream>
#include <string>

#include "AddressBooks.h"
#include "TextStream.h"

namespace calljournal {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

const std::string german = "Vorname;Nachname;Telefon geschäftlich\nJörg;Grün;1\nÄnne;Weiß;2\n";

/// `text`, which is UTF-8 with characters of two bytes at most, in a character set of single bytes.
std::string encoded(const std::string& text, const std::string& charset) {
    std::map<std::string, char> bytes;
    for (int byte = 0; byte <= 0xff; ++byte) {
        const char c = static_cast<char>(byte);
        bytes.emplace(decoded(std::string(1, c), charset), c);
    }
    std::string result;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = (static_cast<unsigned char>(text[i]) & 0x80u) == 0 ? 1 : 2;
        result += bytes.at(text.substr(i, length));
        i += length;
    }
    return result;
}

std::string wide(const std::string& ascii, bool isLittle) {
    std::string bytes;
    for (const char c : ascii) {
        bytes += isLittle ? std::string{c, '\0'} : std::string{'\0', c};
    }
    return bytes;
}

TEST(Charset, FollowsAByteOrderMark) {
    const std::string text = "First Name,Last Name\nA,B\n";
    const std::string expected =
        "1 (2-2)\n"
        "  given A [First Name]\n"
        "  family B [Last Name]\n";
    EXPECT_EQ(recognised("\xef\xbb\xbf" + text), "UTF-8 (byte-order mark), ,, Outlook en");
    EXPECT_EQ(read("\xef\xbb\xbf" + text), expected);
    EXPECT_EQ(recognised("\xff\xfe" + wide(text, true)), "UTF-16LE (byte-order mark), ,, Outlook en");
    EXPECT_EQ(read("\xff\xfe" + wide(text, true)), expected);
    EXPECT_EQ(read("\xfe\xff" + wide(text, false)), expected);
    std::string wider{'\0', '\0', '\xfe', '\xff'};
    for (const char c : text) {
        wider += std::string{'\0', '\0', '\0', c};
    }
    EXPECT_EQ(recognised(wider), "UTF-32BE (byte-order mark), ,, Outlook en");
    EXPECT_EQ(read(wider), expected);
}

TEST(Charset, ReplacesWhatIsNoCharacterBehindAByteOrderMark) {
    EXPECT_EQ(read("\xef\xbb\xbf"
                   "First Name\nJ\xfcrg\n"),
              "1 (2-2)\n"
              "  given J\ufffdrg [First Name]\n"
              "  ! 2 [First Name] it has characters that could not be read\n");
}

TEST(Charset, SeesUtf16WithoutAMark) {
    EXPECT_EQ(recognised(wide("First Name,Last Name\n", true)),
              "UTF-16LE (zero bytes at every second place), ,, Outlook en");
    EXPECT_EQ(recognised(wide("First Name,Last Name\n", false)),
              "UTF-16BE (zero bytes at every second place), ,, Outlook en");
}

TEST(Charset, TakesBytesThatAreAllUtf8ForUtf8) {
    EXPECT_EQ(recognised(german), "UTF-8 (all bytes are valid), ;, Outlook de");
    EXPECT_EQ(recognised("First Name\n" + std::string(100000, 'x') + "\n\xf0\x9f\x98\x80\n"),
              "UTF-8 (nothing speaks against it), ,, Outlook en");
}

TEST(Charset, FindsWhatMakesTheNamesOfTheColumnsKnown) {
    for (const char* const charset : {"windows-1252", "macintosh"}) {
        const std::string bytes = encoded(german, charset);
        EXPECT_THAT(recognised(bytes), StartsWith(std::string(charset) + " (")) << charset;
        EXPECT_EQ(read(bytes), read(german)) << charset;
    }
    const std::string russian = "Имя;Фамилия;Рабочий телефон\nИван;Иванов;1\n";
    for (const char* const charset : {"windows-1251", "KOI8-R"}) {
        const std::string bytes = encoded(russian, charset);
        EXPECT_THAT(recognised(bytes), StartsWith(std::string(charset) + " (")) << charset;
        EXPECT_EQ(read(bytes), read(russian)) << charset;
    }
}

TEST(Charset, GuessesFromTheBytesWhereTheNamesSayNothing) {
    const std::string text = "First Name,Last Name,Notes\n";
    const std::string japanese =
        "\x93\x63\x92\x86,\x91\xbe\x98\x59,"
        "\x82\xb1\x82\xea\x82\xcd\x93\xfa\x96\x7b\x8c\xea\x82\xcc\x95\xb6\x8f\xcd\x82\xc5\x82\xb7\n";
    EXPECT_THAT(recognised(text + japanese), StartsWith("windows-31j (the frequency of its bytes)"));
    EXPECT_THAT(read(text + japanese), HasSubstr("given 田中 [First Name]\n  family 太郎 [Last Name]\n"));
}

TEST(Charset, TakesWhatIsUsedMostForAFewLetters) {
    EXPECT_EQ(recognised("First Name,Last Name\nA,\xd6l\n"), "windows-1252 (it is used most), ,, Outlook en");
    EXPECT_EQ(recognised("BEGIN:VCARD\nFN:\xd6l\nEND:VCARD\n"), "windows-1252 (it is used most), vCard");
}

TEST(Charset, AsksWithThreeSamplesWhereNothingDecides) {
    EXPECT_EQ(refusal("First Name,Last Name\nJ\xfcrg\x81\xff\x80,M\xfcller\n"),
              "the character set of the file is not clear; say it with --from-charset. Some of the file in 3 of them:\n"
              "  windows-1252: Jürg\u0081ÿ€,Müller\n"
              "  windows-1250: Jürg\u0081˙€,Müller\n"
              "  windows-1251: JьrgЃяЂ,Mьller");
    EXPECT_THAT(refusal("First Name\n" + std::string(200, 'a') + "\x81\xff\x80\x01" + std::string(200, 'b')),
                HasSubstr("\n  windows-1252: aaaaaaaaaaaaaaaaaaaa\u0081ÿ€ bbbbbbbbbbbbbbb"));
}

TEST(Charset, AsksWhereTheBytesAreNoText) {
    EXPECT_THAT(refusal("First Name\nJ\xfc\x1a\x01\n"), HasSubstr("\n  windows-1252: Jü  \n"));
    EXPECT_THROW(decoded("x", "Klingon"), AddressBookError);
}

TEST(Charset, DoesAsItIsTold) {
    ReadingOptions options;
    options.charset = "windows-1252";
    EXPECT_EQ(recognised(german, options), "windows-1252 (asked for), ;, Outlook de");
    EXPECT_THAT(read(german, options), HasSubstr("given JÃ¶rg"));
    options.charset = "UTF-16";
    EXPECT_EQ(recognised("\xff\xfe" + wide("First Name,Last Name\n", true), options),
              "UTF-16LE (asked for), ,, Outlook en");
    options.charset = "utf-8";
    EXPECT_EQ(read("\xef\xbb\xbf" + german, options), read(german));
    options.charset = "utf8";
    EXPECT_EQ(recognised("\xef\xbb\xbf"
                         "BEGIN:VCARD\n",
                         options),
              "UTF-8 (asked for), vCard");
    options.charset = "Klingon";
    EXPECT_EQ(refusal(german, options), "\"Klingon\" is no character set known here");
}

TEST(Charset, RefusesAStreamThatCannotBeRead) {
    std::istringstream stream("First Name\n");
    stream.setstate(std::ios::badbit);
    try {
        openAddressBook(stream, {});
        ADD_FAILURE();
    } catch (const AddressBookError& error) {
        EXPECT_EQ(error.reason(), AddressBookError::Reason::file);
        EXPECT_STREQ(error.what(), "it cannot be read more than once; save it as a file first");
    }
}

TEST(Charset, ChecksUtf8InPiecesOfAnySize) {
    const std::string valid = "abcdefgh ü € 😀 abcdefghijklmnop";
    const std::string invalid[] = {"a\xff",    "\xc3",         "ab\xe2\x82", "\xf0\x9f\x98",
                                   "\xc0\x80", "\xed\xa0\x80", "\xe2\x82zz", "\x80"};
    for (std::size_t size = 1; size <= valid.size(); ++size) {
        const auto isValid = [size](const std::string& text) {
            Utf8Check check;
            for (std::size_t i = 0; i < text.size(); i += size) {
                check.add(std::string_view(text).substr(i, size));
            }
            return check.isValid();
        };
        EXPECT_TRUE(isValid(valid)) << size;
        for (const std::string& text : invalid) {
            EXPECT_FALSE(isValid(text)) << size;
            EXPECT_FALSE(isValid(valid + text)) << size;
        }
    }
}

TEST(Charset, GivesTheSameTextHoweverManyPiecesTheFileHas) {
    std::string text = "Vorname;Nachname;Telefon geschäftlich\n";
    while (text.size() < 300000) {
        text += "Jörg;Grün;1\r\n";
    }
    EXPECT_EQ(read(encoded(text, "windows-1252")), read(text));
}

}  // namespace
}  // namespace calljournal
