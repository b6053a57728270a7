#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <utility>

#include "ImportFixture.h"
#include "Probe.h"

namespace {

class ImportDriver : public ImportTest {};

/// `count` Tamber lines: the contacts "0", "1", ...
std::string tamberLines(std::size_t count) {
    std::string lines;
    for (std::size_t index = 0; index < count; ++index) {
        lines += std::to_string(index) + ";;;;;;;;;;;0\n";
    }
    return lines;
}

Texts tamberContacts(std::size_t count) {
    Texts contacts;
    for (std::size_t index = 0; index < count; ++index) {
        contacts.push_back(imported(0, {{"lastName", std::to_string(index)}}));
    }
    return contacts;
}

TEST_F(ImportDriver, GivesEachOutcome) {
    const std::string tamber = tamberHeader() + "Doe;;;;;;;;;;;0\n";
    const Texts doe = {imported(0, {{"lastName", "Doe"}})};
    const std::string headerText = "the file has invalid headers, can't be a valid csv file";
    struct {
        std::string content;
        int code;
        Texts contacts;
        Texts log;
    } const rows[] = {
        {tamberHeader() + tamberLines(101), 0, tamberContacts(100), {tooManyLines}},
        {"LastName\n", 1, {}, {"the csv file has invalid delimiters"}},
        {anyHeader(101, ','), 2, {}, {"too many headers, can't be a valid csv file"}},
        {"a,b\n", 3, {}, {"Header count is not matched with valid Outlook CSV file.", headerText}},
        {tamber + ";;;;;;;;;;;5\n", 4, doe, {"corrupt file: default dial has to be an integer between 0 and 4"}},
        {tamber + ";\n", 5, doe, {columnMismatch}},
        {tamber + "C:\\temp\n", 6, doe, {"can't getCSVType: unknown escape sequence\n"}},
        {tamber, 7, doe, {}},
        {outlookHeader() + outlookColumns({{3, "Doe"}}) + "\n", 8, doe, {}},
    };
    for (const auto& row : rows) {
        const Outcome outcome = importText(row.content);
        EXPECT_EQ(outcome.code, row.code);
        EXPECT_EQ(outcome.contacts, row.contacts);
        EXPECT_EQ(outcome.log, row.log);

        const std::set<std::pair<std::string, int>> wanted = std::exchange(fakePlatform().loggingOn, {});
        const Outcome quiet = importText(row.content);
        EXPECT_EQ(quiet.code, row.code);
        EXPECT_EQ(quiet.contacts, row.contacts);
        EXPECT_EQ(quiet.log, Texts{});
        fakePlatform().loggingOn = wanted;
    }
}

TEST_F(ImportDriver, RefusesAMissingFile) {
    const std::string path = TemporaryFile("").path();
    const Probe importer(path, 0);
    EXPECT_EQ(importer.getCSVType(), 6);
    EXPECT_TRUE(importer.getContacts().empty());
    EXPECT_EQ(fakePlatform().log.size(), 0U);
    EXPECT_EQ(fakePlatform().deletedFiles, Texts{path});
}

TEST_F(ImportDriver, RefusesAnEmptyFile) {
    const TemporaryFile file("");
    const Probe importer(file.path(), 3);
    EXPECT_EQ(importer.getCSVType(), 6);
    EXPECT_TRUE(importer.getContacts().empty());
    EXPECT_EQ(fakePlatform().log.size(), 0U);
    EXPECT_TRUE(importer.headerPending);
    EXPECT_EQ(importer.lineCount, 3U);
    EXPECT_FALSE(importer.file.is_open());
    EXPECT_FALSE(file.exists());
}

TEST_F(ImportDriver, RefusesADirectoryWithoutALine) {
    const TemporaryFile file("");
    std::filesystem::remove(file.path());
    std::filesystem::create_directory(file.path());
    const Probe importer(file.path(), 0);
    EXPECT_EQ(importer.getCSVType(), 6);
    EXPECT_EQ(importer.lineCount, 0U);
    EXPECT_EQ(fakePlatform().log.size(), 0U);
    EXPECT_TRUE(std::filesystem::is_directory(file.path()));
    std::filesystem::remove(file.path());
}

TEST_F(ImportDriver, TakesAHeaderAlone) {
    for (const std::string& end : {std::string("\n"), std::string(""), std::string("\r\n"), std::string("\r")}) {
        std::string tamber = tamberHeader();
        std::string outlook = outlookHeader();
        tamber.replace(tamber.size() - 1, 1, end);
        outlook.replace(outlook.size() - 1, 1, end);
        EXPECT_EQ(importText(tamber).code, 7);
        EXPECT_EQ(importText(outlook).code, 8);
        EXPECT_EQ(importText(tamber).contacts, Texts{});
        EXPECT_EQ(importText(outlook).log, Texts{});
    }
}

TEST_F(ImportDriver, DoesNotOpenAFileThatTheStorageHasNoRoomFor) {
    const TemporaryFile file(tamberHeader() + tamberLines(1));
    fakePlatform().fileSizes[file.path()] = 50000000;
    fakePlatform().freeSpace = 100000001;
    const Probe importer(file.path(), 0);
    EXPECT_EQ(importer.getCSVType(), 0);
    EXPECT_TRUE(importer.getContacts().empty());
    EXPECT_EQ(importer.lineCount, 0U);
    EXPECT_EQ(importer.line, "");
    EXPECT_EQ(fakePlatform().log.size(), 0U);
    EXPECT_FALSE(file.exists());
    EXPECT_EQ(fakePlatform().deletedFiles, Texts{file.path()});
}

TEST_F(ImportDriver, LooksAtTheStorageBeforeTheFile) {
    fakePlatform().freeSpace = 0;
    EXPECT_EQ(Probe("missing.csv", 0).getCSVType(), 0);
}

TEST_F(ImportDriver, LimitsTheLinesOfThePhonebook) {
    struct {
        bool isNq;
        unsigned existing;
        std::size_t fitting;
    } const rows[] = {
        {false, 0, 100},  {false, 1, 99},  {false, 100, 0}, {true, 0, 1000},
        {true, 101, 899}, {true, 980, 20}, {true, 1000, 0}, {false, 4294967295U, 101},  // The count wraps to 0.
    };
    for (const auto& row : rows) {
        fakePlatform().isNq = row.isNq;
        const Outcome fits = importText(tamberHeader() + tamberLines(row.fitting), row.existing);
        EXPECT_EQ(fits.code, 7) << row.existing;
        EXPECT_EQ(fits.contacts, tamberContacts(row.fitting));
        EXPECT_EQ(fits.log, Texts{});
        const Outcome tooMany = importText(tamberHeader() + tamberLines(row.fitting + 1), row.existing);
        EXPECT_EQ(tooMany.code, 0) << row.existing;
        EXPECT_EQ(tooMany.contacts, tamberContacts(row.fitting));
        EXPECT_EQ(tooMany.log, Texts{tooManyLines});
    }
}

TEST_F(ImportDriver, ExceedsTheLimitAtTheHeader) {
    const TemporaryFile file("a\\b\n" + tamberLines(5));
    const Probe importer(file.path(), 980);
    EXPECT_EQ(importer.getCSVType(), 0);
    EXPECT_EQ(fakePlatform().logTexts(), Texts{tooManyLines});
    EXPECT_EQ(importer.lineCount, 981U);
    EXPECT_TRUE(importer.headerPending);
}

TEST_F(ImportDriver, StopsAtTheFirstLineTooMany) {
    const TemporaryFile file(tamberHeader() + "first\r\nsecond\r\nthird\r\n");
    const Probe importer(file.path(), 99);
    EXPECT_EQ(importer.getCSVType(), 0);
    EXPECT_EQ(importer.lineCount, 102U);
    EXPECT_EQ(importer.line, "second\r");
    EXPECT_TRUE(importer.file.is_open());
    EXPECT_EQ(fakePlatform().logTexts(), (Texts{columnMismatch, tooManyLines}));
}

TEST_F(ImportDriver, ClosesAFileThatItReadToItsEnd) {
    const TemporaryFile file(tamberHeader() + tamberLines(2));
    const Probe importer(file.path(), 5);
    EXPECT_FALSE(importer.file.is_open());
    EXPECT_EQ(importer.lineCount, 8U);
    EXPECT_EQ(importer.line, "");
}

TEST_F(ImportDriver, TakesALastLineWithoutLineFeed) {
    const TemporaryFile file(tamberHeader() + "Doe;;;;;;;;;;;0");
    const Probe importer(file.path(), 0);
    EXPECT_EQ(describe(importer.getContacts()), Texts{imported(0, {{"lastName", "Doe"}})});
    EXPECT_EQ(importer.lineCount, 2U);
    EXPECT_EQ(importer.line, "Doe;;;;;;;;;;;0");
    EXPECT_EQ(importer.getCSVType(), 7);
}

TEST_F(ImportDriver, CountsBlankLinesAndLinesAfterAnError) {
    const std::string start = tamberHeader() + "Doe;;;;;;;;;;;0\n\n";
    Texts log = {columnMismatch};
    log.insert(log.end(), 98, invalidType);
    const Outcome fits = importText(start + std::string(98, '\n'));
    EXPECT_EQ(fits.code, 5);
    EXPECT_EQ(fits.log, log);
    log.push_back(tooManyLines);
    const Outcome tooMany = importText(start + std::string(99, '\n'));
    EXPECT_EQ(tooMany.code, 0);
    EXPECT_EQ(tooMany.log, log);
    EXPECT_EQ(tooMany.contacts, Texts{imported(0, {{"lastName", "Doe"}})});
}

TEST_F(ImportDriver, DoesNotCountContinuationLines) {
    std::string record = "x";
    for (int line = 0; line < 200; ++line) {
        record += "\ny";
    }
    const TemporaryFile file(outlookHeader() + record + "\n" + outlookColumns({}) + "\n" +
                             outlookColumns({{3, "Doe"}}) + "\n");
    const Probe importer(file.path(), 98);
    EXPECT_EQ(importer.getCSVType(), 8);
    EXPECT_EQ(importer.lineCount, 101U);
    EXPECT_EQ(describe(importer.getContacts()), Texts{imported(0, {{"lastName", "Doe"}})});
}

TEST_F(ImportDriver, ReadsLinesThatEndInCarriageReturnAndLineFeed) {
    std::string header = tamberHeader();
    header.insert(header.size() - 1, "\r");
    const Outcome outcome = importText(header + "A;;;;;;;;;;;0\r\nB;;;;;;;;;;;1\r");
    EXPECT_EQ(outcome.code, 7);
    EXPECT_EQ(outcome.contacts, (Texts{imported(0, {{"lastName", "A"}}), imported(1, {{"lastName", "B"}})}));
}

TEST_F(ImportDriver, DropsOneCarriageReturnOfALine) {
    const Outcome outcome = importText(tamberHeader() + "A;B\r;;;;;;;;;\r;0\nC\r;;;;;;;;;;;0\r\r\n");
    // Blanks around a default number are no fault.
    EXPECT_EQ(outcome.contacts, (Texts{imported(0, {{"lastName", "A"}, {"firstName", "B\r"}, {"email1", "\r"}}),
                                       imported(0, {{"lastName", "C\r"}})}));
    EXPECT_EQ(outcome.code, 7);
}

TEST_F(ImportDriver, EndsWithABadEscape) {
    const TemporaryFile file(tamberHeader() + tamberLines(2) + "C:\\temp;x\n" + tamberLines(3));
    const Probe importer(file.path(), 0);
    EXPECT_EQ(importer.getCSVType(), 6);
    EXPECT_EQ(describe(importer.getContacts()), tamberContacts(2));
    EXPECT_EQ(fakePlatform().logTexts(), Texts{"can't getCSVType: unknown escape sequence\n"});
    EXPECT_EQ(importer.lineCount, 4U);
    EXPECT_EQ(importer.line, "C:\\temp;x");
    EXPECT_TRUE(importer.tokens.empty());
    EXPECT_TRUE(importer.file.is_open());
    EXPECT_FALSE(file.exists());
}

TEST_F(ImportDriver, EndsWithABackslashAtTheEndOfALine) {
    const Outcome outcome = importText(tamberHeader() + "a;b;c\\\n" + tamberLines(1));
    EXPECT_EQ(outcome.code, 6);
    EXPECT_EQ(outcome.log, Texts{"can't getCSVType: cannot end with escape\n"});
    EXPECT_EQ(outcome.contacts, Texts{});
}

TEST_F(ImportDriver, EndsWithABadEscapeInTheHeader) {
    const TemporaryFile file("a\\,b\n" + tamberLines(1));
    const Probe importer(file.path(), 0);
    EXPECT_EQ(importer.getCSVType(), 6);
    EXPECT_EQ(fakePlatform().logTexts(), Texts{"can't getCSVType: unknown escape sequence\n"});
    EXPECT_FALSE(importer.headerPending);
    EXPECT_EQ(importer.lineCount, 1U);
}

TEST_F(ImportDriver, TakesABadEscapeAfterAnErrorForAFileError) {
    const Outcome outcome = importText(tamberHeader() + tamberLines(1) + "\n;\n\\x\n;\n");
    EXPECT_EQ(outcome.code, 6);
    EXPECT_EQ(outcome.contacts, tamberContacts(1));
    EXPECT_EQ(outcome.log, (Texts{columnMismatch, invalidType, "can't getCSVType: unknown escape sequence\n"}));
}

TEST_F(ImportDriver, KeepsTheFirstErrorAndTheContactsBeforeIt) {
    const Outcome mismatch = importText(tamberHeader() + tamberLines(2) + ";\n;;;;;;;;;;;7\n" + tamberLines(2));
    EXPECT_EQ(mismatch.code, 5);
    EXPECT_EQ(mismatch.contacts, tamberContacts(2));
    EXPECT_EQ(mismatch.log, (Texts{columnMismatch, invalidType, invalidType, invalidType}));

    const Outcome badDial = importText(tamberHeader() + tamberLines(2) + ";;;;;;;;;;;7\n;\n" + tamberLines(1));
    EXPECT_EQ(badDial.code, 4);
    EXPECT_EQ(badDial.contacts, tamberContacts(2));
    EXPECT_EQ(badDial.log,
              (Texts{"corrupt file: default dial has to be an integer between 0 and 4", invalidType, invalidType}));
}

TEST_F(ImportDriver, LogsEachLineAfterARefusedHeader) {
    const Outcome outcome = importText("a;b\n\nc\n" + tamberHeader());
    EXPECT_EQ(outcome.code, 3);
    EXPECT_EQ(outcome.log, (Texts{"Header count is not matched with valid Outlook CSV file.",
                                  "the file has invalid headers, can't be a valid csv file", invalidType, invalidType,
                                  invalidType}));
}

TEST_F(ImportDriver, LogsNothingThatIsNotWanted) {
    const std::string content = tamberHeader() + ";\n;\n;\n\\x\n";
    EXPECT_EQ(importText(content).log.size(), 4U);
    EXPECT_EQ(fakePlatform().switchQuestions, 4U);
    fakePlatform().reset();
    fakePlatform().switchOn("ImportContactscSVParser", 1);
    fakePlatform().switchOn("ImportContactscSVParser", 3);
    fakePlatform().switchOn("ImportContactsCSVParser", 2);
    const Outcome outcome = importText(content);
    EXPECT_EQ(outcome.code, 6);
    EXPECT_EQ(outcome.log, Texts{});
    EXPECT_EQ(fakePlatform().switchQuestions, 4U);
}

TEST_F(ImportDriver, ReportsAFileErrorWhenTheLogFails) {
    fakePlatform().logFails = true;
    const Outcome outcome = importText("LastName\n");
    EXPECT_EQ(outcome.code, 6);
    EXPECT_EQ(outcome.contacts, Texts{});
}

TEST_F(ImportDriver, ReturnsCopiesOfItsContacts) {
    Probe importer;
    importer.contacts.resize(1);
    importer.contacts[0].lastName = "Doe";
    std::vector<Contact> copy = importer.getContacts();
    copy[0].lastName = "Other";
    EXPECT_EQ(importer.contacts[0].lastName, "Doe");
    EXPECT_EQ(importer.getContacts().size(), 1U);
}

TEST_F(ImportDriver, LeavesTheFileWhenOnlyParsing) {
    const TemporaryFile file(tamberHeader() + tamberLines(2));
    Probe importer;
    fakePlatform().deletedFiles.clear();
    importer.parseCSVType(file.path());
    EXPECT_EQ(importer.getCSVType(), 7);
    EXPECT_EQ(describe(importer.getContacts()), tamberContacts(2));
    EXPECT_TRUE(file.exists());
    EXPECT_EQ(fakePlatform().deletedFiles, Texts{});
}

TEST_F(ImportDriver, ErasesTheFileAfterParsing) {
    const TemporaryFile file(tamberHeader() + tamberLines(2));
    Probe importer;
    importer.parseCSVTypeAndEraseFile(file.path());
    EXPECT_EQ(importer.getCSVType(), 7);
    EXPECT_FALSE(file.exists());
}

TEST_F(ImportDriver, ReadsBytesOfEveryValue) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        if (byte != '\n' && byte != '\\' && byte != '"' && byte != ';' && byte != '\'' && byte != '&' && byte != '<' &&
            byte != '>') {
            all += static_cast<char>(byte);
        }
    }
    const Outcome outcome = importText(tamberHeader() + all + ";;;;;;;;;;;0\n");
    EXPECT_EQ(outcome.contacts, Texts{imported(0, {{"lastName", all}})});
}

}  // namespace
