#include <gtest/gtest.h>
#include <random>
#include <tuple>

#include "ImportFixture.h"
#include "ImportState.h"
#include "Probe.h"
#include "ReferenceImporter.h"
#include "Rounds.h"

namespace {

constexpr unsigned seed = 20240917;

/// Writes files that are wrong in every way the importer knows of, and right often enough to get far.
class HostileFiles {
public:
    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }
    bool oneIn(std::size_t count) { return below(count) == 0; }

    template <class List>
    const auto& anyOf(const List& list) {
        return list[below(std::size(list))];
    }

    /// `length` characters from those that matter.
    std::string noise(std::size_t length) {
        static const char alphabet[] = "\"\"\"\"\",,,,,;;;\r\r\n\n\nab 1&'<n\0\\\xC3\xBC\xFF";
        std::string text;
        while (text.size() < length) {
            text += alphabet[below(sizeof alphabet - 1)];
        }
        return text;
    }

    /// A line of `separator` separated columns, or pieces of one: text, quotes, line breaks, in any measure.
    std::string record(std::size_t columns, char separator) {
        std::string text;
        for (std::size_t column = 0; column < columns; ++column) {
            text += column == 0 ? "" : std::string(1, separator);
            if (!oneIn(3)) {
                text += field(separator);
            }
        }
        return text + lineEnd();
    }

    std::string file() {
        if (oneIn(20)) {
            return noise(below(300));
        }
        if (oneIn(50)) {
            return plainText() + lineEnd() + noise(below(50));
        }
        const char separator = oneIn(4) ? ';' : ',';
        const bool tamber = oneIn(3);
        std::string text = header(tamber, separator);
        const std::size_t records = oneIn(8) ? 90 + below(30) : below(8);
        for (std::size_t index = 0; index < records; ++index) {
            text += tamber ? tamberLine(separator) : outlookRecord(separator);
        }
        return text;
    }

    /// Lines for a layout of few columns, so that records end often.
    std::string fewLines() {
        std::string text;
        const std::size_t lines = below(6);
        for (std::size_t index = 0; index < lines; ++index) {
            text += oneIn(3) ? noise(below(20)) : record(1 + below(4), oneIn(4) ? ';' : ',');
        }
        return text;
    }

private:
    std::string header(bool tamber, char separator) {
        std::string text = tamber ? tamberHeader(separator) : outlookHeader(separator);
        if (oneIn(20)) {
            text.insert(below(text.size()), noise(1));
        }
        if (oneIn(2)) {
            text.insert(text.size() - 1, "\r");
        }
        return text;
    }

    std::string tamberLine(char separator) {
        if (oneIn(15)) {
            return record(10 + below(4), separator);
        }
        std::string text;
        for (int column = 0; column < 11; ++column) {
            text += (oneIn(2) ? plainText() : std::string()) + separator;
        }
        static const std::string dials[] = {"0", "1", "2", "3", "4", " 2 ", ""};
        static const std::string badDials[] = {"5", "-1", "x"};
        return text + (oneIn(100) ? anyOf(badDials) : anyOf(dials)) + lineEnd();
    }

    std::string outlookRecord(char separator) {
        if (oneIn(10)) {
            return record(88 + below(8), separator);
        }
        std::string text;
        const std::size_t columns = oneIn(4) ? 91 + below(3) : oneIn(3) ? 92 + below(3) : 1 + below(92);
        for (std::size_t column = 0; column < columns; ++column) {
            text += column == 0 ? "" : std::string(1, separator);
            if (oneIn(4)) {
                text += oneIn(3) ? openField() : plainText();
            }
        }
        return text + (oneIn(3) ? "," : "") + lineEnd();
    }

    /// A field in quotes that may run over lines the way the importer takes them.
    std::string openField() {
        std::string text = "\"" + plainText();
        while (oneIn(3)) {
            text += lineEnd() + plainText() + (oneIn(3) ? "\"\"" : "") + (oneIn(4) ? "," : "");
        }
        return text + "\"";
    }

    std::string field(char separator) {
        static const std::string pieces[] = {
            "\"", "\"\"", "\\\"", "\\n", "\\\\",   "\r", "\n",  "\r\n", "\r\r\n\n", ",", "\",",  ",\"",  "a",      "bc",
            "1",  "\"a",  "b\",", " ",   "\"\"\"", "\\", "\\,", "\\;",  "\xFC",     "&", "\n\n", "x\"y", "\"\",,", ""};
        std::string text;
        while (oneIn(2)) {
            text += oneIn(15) ? noise(below(6)) : oneIn(40) ? std::string(below(400), 'l') : anyOf(pieces);
        }
        if (oneIn(4)) {
            text += std::string(below(8), separator);
        }
        return text;
    }

    std::string plainText() {
        static const std::string texts[] = {"Doe", "M\xFCller", "M\xC3\xBCller", "12",
                                            "a b", "x&y",       "<'>",           std::string(1, '\0')};
        return oneIn(30) ? std::string(200 + below(100), anyOf(std::string("a<&'\xC3"))) : anyOf(texts);
    }

    std::string lineEnd() { return oneIn(3) ? "\r\n" : oneIn(20) ? "" : oneIn(15) ? "\r\r\n" : "\n"; }

    std::mt19937 random_{seed};
};

class AnyImport : public ImportTest {
protected:
    HostileFiles files;
};

TEST_F(AnyImport, OfAFileComesToWhatTheReferenceComesTo) {
    std::map<int, unsigned> outcomes;
    for (unsigned round = 0; round < rounds(4000); ++round) {
        const std::string content = files.file();
        const unsigned existing = files.oneIn(4) ? static_cast<unsigned>(files.below(105)) : 0;
        fakePlatform().isNq = files.oneIn(3);
        fakePlatform().hardwareVariant = files.oneIn(2) ? 1 : 0;
        ReferenceImporter reference(content, existing);
        reference.isTq2 = fakePlatform().hardwareVariant == 1;
        reference.parseFile(fakePlatform().isNq);

        const TemporaryFile file(content);
        fakePlatform().log.clear();
        const Probe importer(file.path(), existing);

        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round) + ": " +
                     testing::PrintToString(content));
        ASSERT_EQ(stateOf(importer), stateOf(reference));
        ASSERT_EQ(fakePlatform().logTexts(), reference.log);
        ASSERT_EQ(importer.file.is_open(), reference.fileOpen);
        ASSERT_FALSE(file.exists());
        ASSERT_TRUE(fits(importer.tokens));
        ASSERT_LE(importer.contacts.size(), fakePlatform().isNq ? 1000U : 100U);
        ++outcomes[importer.csvType];
    }
    // The files are worth their time only if they lead everywhere.
    for (const int code : {0, 1, 3, 4, 5, 6, 7, 8}) {
        EXPECT_GT(outcomes[code], rounds(10)) << code;
    }
}

TEST_F(AnyImport, OfARecordComesToWhatTheReferenceComesTo) {
    std::map<std::pair<int, bool>, unsigned> outcomes;
    for (unsigned round = 0; round < rounds(40000); ++round) {
        const std::string content = files.fewLines();
        std::string line = files.record(1 + files.below(4), files.oneIn(8) ? ';' : ',');
        line.erase(std::min(line.find('\n'), line.size()));
        const unsigned columns = static_cast<unsigned>(files.below(7));
        const char separator = files.oneIn(8) ? ';' : ',';

        ReferenceImporter reference(content, 0);
        reference.separator = separator;
        reference.csvType = 8;
        reference.headerCount = columns;
        reference.line = line;
        std::string expectedError;
        try {
            reference.lineContentParser();
        } catch (const std::runtime_error& error) {
            expectedError = error.what();
        }

        const TemporaryFile file(content);
        Probe importer;
        fakePlatform().log.clear();
        importer.separator = boost::escaped_list_separator<char>('\\', separator, '"');
        importer.csvType = 8;
        importer.headerCount = columns;
        importer.line = line;
        importer.file.open(file.path());
        std::string error;
        try {
            importer.lineContentParser();
        } catch (const std::runtime_error& thrown) {
            error = thrown.what();
        }

        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round) + ", " +
                     std::to_string(columns) + " columns: " + testing::PrintToString(line) + " then " +
                     testing::PrintToString(content));
        ASSERT_EQ(error, expectedError);
        ASSERT_EQ(std::get<0>(stateOf(importer)), reference.csvType);
        ASSERT_EQ(importer.tokens, reference.tokens);
        ASSERT_EQ(importer.line, reference.line);
        ASSERT_EQ(importer.nextLine, reference.nextLine);
        ASSERT_EQ(describe(importer.contacts), describe(reference.contacts));
        ASSERT_EQ(fakePlatform().logTexts(), reference.log);
        ++outcomes[{error.empty() ? importer.csvType : 6, importer.line.size() > line.size()}];
    }
    for (const int code : {5, 6, 8}) {
        EXPECT_GT(outcomes[std::make_pair(code, true)], rounds(100)) << code;
    }
}

}  // namespace
