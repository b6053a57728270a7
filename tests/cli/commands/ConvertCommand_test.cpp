#include <algorithm>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <sstream>

#include "ContactColumns.h"
#include "ContactFields.h"
#include "ContactJson.h"
#include "ImportFiles.h"
#include "RunCommand.h"

namespace {

namespace fs = std::filesystem;

const std::string examples = EXAMPLES "/contacts/";

/// The built command, which leaves no trace in the folder for temporary files.
class ConvertCommand : public ::testing::Test {
protected:
    ConvertCommand() { fs::create_directory(temporary_); }
    ~ConvertCommand() override { EXPECT_TRUE(fs::is_empty(temporary_)); }

    Finished run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"/usr/bin/env", "TMPDIR=" + temporary_, "LC_ALL=C", COMMAND});
        return runProgram(arguments);
    }

    Finished convert(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "convert");
        return run(arguments);
    }

    /// The files of the folder, with "book.csv" and the temporary folder left out.
    std::set<std::string> written() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(fs::path(temporary_).parent_path())) {
            names.insert(entry.path().filename());
        }
        names.erase("tmp");
        names.erase("book.csv");
        return names;
    }

    /// What the phone imports from a file, as JSON.
    std::string imported(const std::string& file, const std::string& hardware = "standard") const {
        const Finished finished = run({"import", "--format", "json", "--hardware", hardware, file});
        EXPECT_EQ(finished.status, 0) << finished.err;
        return finished.out;
    }

    const TemporaryFolder folder_;
    const std::string temporary_ = folder_.file("tmp");
    const std::string out_ = folder_.file("out.csv");
};

const std::string people =
    "First Name,Last Name,Business Phone,E-mail Address,Notes\n"
    "Anna,Schmidt,+49 30 2345678,anna@example.com,\n"
    "Ben,Meyer,none,,\"two\nlines\"\n"
    "Anna,Schmidt,+49 30 2345678,anna@example.com,again\n"
    ",,,,nothing else\n";

TEST_F(ConvertCommand, WritesAFileAndReportsWhatItDid) {
    const std::string book = folder_.write("book.csv", people);
    const Finished finished = convert({book, "-o", out_});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.err, "");
    EXPECT_EQ(readFile(out_), tamberHeader +
                                  "Schmidt;Anna;+49 30 2345678;;;;;;;;anna@example.com;2\n"
                                  "Meyer;Ben;none;;;;;;;;;2\n");
    const std::size_t head = finished.out.find('\n');
    EXPECT_EQ(
        finished.out.substr(head + 1),
        book +
            ": record 2 (lines 3 to 4): Ben Meyer\n"
            "  Business Phone: \"none\" is no number\n" +
            book + ": record 3 (line 5): Anna Schmidt, left out: the same as " + book + ": record 1 (line 2)\n" + book +
            ": record 4 (line 6): left out: it has nothing that a contact has a place for\n"
            "left out of Notes: 3 texts\n"
            "4 records: 2 contacts, 1 duplicate, 0 near (0 merged), 1 empty, 0 broken; 0 texts changed, 1 doubtful, "
            "3 left out\n"
            "written: " +
            out_ + '\n');
    EXPECT_EQ(readFile(book), people);
}

TEST_F(ConvertCommand, WritesToStandardOutputWithTheReportBeside) {
    const std::string book = folder_.write("book.csv", people);
    const Finished finished = convert({book});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.out.rfind(tamberHeader + "Schmidt;Anna;", 0), 0u) << finished.out;
    EXPECT_NE(finished.err.find("4 records: 2 contacts"), std::string::npos);
    EXPECT_EQ(written(), std::set<std::string>());
}

TEST_F(ConvertCommand, WritesNothingInADryRun) {
    const Finished finished = convert({folder_.write("book.csv", people), "-o", out_, "--dry-run"});
    EXPECT_EQ(finished.status, 0);
    EXPECT_NE(finished.out.find("4 records: 2 contacts"), std::string::npos);
    EXPECT_EQ(written(), std::set<std::string>());
}

TEST_F(ConvertCommand, OverwritesOnlyIfItIsTold) {
    const std::string book = folder_.write("book.csv", people);
    folder_.write("out.csv", "mine");
    const Finished refused = convert({book, "-o", out_});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err, "calljournal: " + out_ + ": is there already; --force overwrites it\n");
    EXPECT_EQ(readFile(out_), "mine");
    EXPECT_EQ(convert({book, "-o", out_, "--force"}).status, 0);
    EXPECT_EQ(readFile(out_).rfind(tamberHeader, 0), 0u);
}

TEST_F(ConvertCommand, ReportsAFolderThatIsNotThere) {
    const std::string book = folder_.write("book.csv", people);
    const std::string out = folder_.file("missing/out.csv");
    const Finished refused = convert({book, "-o", out});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err, "calljournal: " + out + ": No such file or directory\n");
}

TEST_F(ConvertCommand, ReportsEveryRecordAsText) {
    const Finished finished = convert({folder_.write("book.csv", people), "-o", out_, "--report", "text"});
    EXPECT_NE(finished.out.find(": record 1 (line 2): Anna Schmidt\n"
                                "  lastName from Last Name\n"
                                "  firstName from First Name\n"
                                "  business1 from Business Phone\n"
                                "  email1 from E-mail Address\n"),
              std::string::npos)
        << finished.out;
    EXPECT_NE(finished.out.find("  Notes: left out, the contact has no place for it\n"), std::string::npos);
}

TEST_F(ConvertCommand, ReportsEveryRecordAsJson) {
    const Finished finished = convert({folder_.write("book.csv", people), "-o", out_, "--report", "json"});
    std::istringstream lines(finished.out);
    std::vector<nlohmann::json> all;
    for (std::string line; std::getline(lines, line);) {
        all.push_back(nlohmann::json::parse(line));
    }
    ASSERT_EQ(all.size(), 6u);
    EXPECT_EQ(all[0]["charset"], "UTF-8");
    EXPECT_EQ(all[1]["taken"]["firstName"][0], "First Name");
    EXPECT_EQ(all[2]["firstLine"], 3);
    EXPECT_EQ(all[2]["lastLine"], 4);
    EXPECT_EQ(all[2]["doubtful"][0]["reason"], "\"none\" is no number");
    EXPECT_EQ(all[3]["result"], "duplicate");
    EXPECT_EQ(all[3]["sameAs"]["record"], 1);
    EXPECT_EQ(all[4]["result"], "empty");
    EXPECT_EQ(all[5]["counts"]["contacts"], 2);
    EXPECT_EQ(all[5]["files"][0], out_);
}

std::string manyPeople(int count) {
    std::string book = "First Name,Last Name,Mobile Phone\n";
    for (int i = 0; i < count; ++i) {
        book += "A,Name" + std::to_string(i) + ",+49 170 " + std::to_string(1000000 + i) + '\n';
    }
    return book;
}

TEST_F(ConvertCommand, SplitsWhatAPhoneDoesNotHold) {
    const std::string book = folder_.write("book.csv", manyPeople(250));
    const Finished finished = convert({book, "-o", out_});
    EXPECT_EQ(finished.status, 0);
    EXPECT_NE(finished.out.find("the phone takes 100 contacts and holds 0: of 250, each of 3 files has at most 100\n"),
              std::string::npos)
        << finished.out;
    EXPECT_EQ(written(), (std::set<std::string>{"out-1.csv", "out-2.csv", "out-3.csv"}));
    std::string all;
    for (const char* part : {"out-1.csv", "out-2.csv", "out-3.csv"}) {
        all += imported(folder_.file(part));
    }
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 250);
    EXPECT_NE(all.find("Name0\""), std::string::npos);
    EXPECT_NE(all.find("Name249\""), std::string::npos);
}

TEST_F(ConvertCommand, LeavesNothingWhenItIsInterrupted) {
    const std::string book = folder_.write("book.csv", manyPeople(60000));
    const auto isWriting = [this] { return !written().empty(); };
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const Finished finished =
            interruptProgram({"/usr/bin/env", "TMPDIR=" + temporary_, "LC_ALL=C", COMMAND, "convert", book, "-o", out_},
                             signal, isWriting);
        EXPECT_EQ(finished.status, 128 + signal) << finished.err;
        EXPECT_EQ(written(), std::set<std::string>());
        EXPECT_TRUE(fs::is_empty(temporary_));
    }
}

TEST_F(ConvertCommand, LeavesNothingWhenNobodyReadsOn) {
    const std::string book = folder_.write("book.csv", manyPeople(20000));
    const std::string command = "TMPDIR=" + temporary_ + " LC_ALL=C " COMMAND " convert --to json " + book;
    EXPECT_EQ(runProgram({"/bin/bash", "-c", command + " | head -n 1 > /dev/null; exit ${PIPESTATUS[0]}"}).status, 0);
    EXPECT_TRUE(fs::is_empty(temporary_));
}

TEST_F(ConvertCommand, CountsWhatThePhoneHolds) {
    const std::string book = folder_.write("book.csv", manyPeople(30));
    const Finished cut = convert({book, "-o", out_, "--existing", "80", "--cut"});
    EXPECT_EQ(cut.status, 0);
    EXPECT_NE(cut.out.find("the phone takes 100 contacts and holds 80: of 30, the first 20 were taken\n"),
              std::string::npos);
    EXPECT_EQ(run({"import", "--existing", "80", "--check", out_}).status, 0);
    const Finished full = convert({book, "--existing", "100"});
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.err, "calljournal: the phone takes 100 contacts and holds 100: there is no room for any\n");
    const Finished large = convert({book, "-o", out_, "--force", "--limit", "1000", "--existing", "970"});
    EXPECT_EQ(large.status, 0);
    EXPECT_EQ(run({"import", "--existing", "970", "--hardware", "nq", "--check", out_}).status, 0);
}

TEST_F(ConvertCommand, PutsNoTwoFilesOnStandardOutput) {
    const Finished finished = convert({folder_.write("book.csv", manyPeople(101))});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.out, "");
    EXPECT_NE(finished.err.find("calljournal: these are 2 files; name the first with -o, or ask for one with --cut\n"),
              std::string::npos);
}

const std::string nearPeople =
    "First Name,Last Name,Business Phone,Mobile Phone,E-mail Address\n"
    "Anna,Schmidt,030 2345678,,\n"
    "Ben,Meyer,030 2345678,,\n"
    "anna,schmidt,+49 30 2345678,0170 2345678,anna@example.com\n"
    "Anna,Schmidt,,,ANNA@example.com\n"
    "Anna,Schmidt,,0171 2345699,anna@example.com\n";

TEST_F(ConvertCommand, ListsWhoMayBeOnePerson) {
    const Finished finished = convert({folder_.write("book.csv", nearPeople), "-o", out_, "--region", "DE"});
    EXPECT_NE(finished.out.find("share +49302345678: they may be one person; --merge makes them one contact\n"),
              std::string::npos)
        << finished.out;
    EXPECT_NE(finished.out.find("5 records: 5 contacts, 0 duplicates, 4 near (0 merged)"), std::string::npos)
        << finished.out;
}

TEST_F(ConvertCommand, MergesThemWithoutLoss) {
    const Finished finished = convert({folder_.write("book.csv", nearPeople), "-o", out_, "--region", "DE", "--merge"});
    EXPECT_EQ(readFile(out_), tamberHeader +
                                  "Schmidt;Anna;030 2345678;;0170 2345678;;;;;;anna@example.com;2\n"
                                  "Meyer;Ben;030 2345678;;;;;;;;;2\n"
                                  "Schmidt;Anna;;;0171 2345699;;;;;;anna@example.com;4\n")
        << finished.out;
    EXPECT_NE(finished.out.find("not merged, they differ in mobile1"), std::string::npos) << finished.out;
    EXPECT_NE(finished.out.find("5 records: 3 contacts"), std::string::npos) << finished.out;
}

TEST_F(ConvertCommand, FollowsWhoWasMergedBefore) {
    const std::string book = folder_.write("book.csv",
                                           "First Name,Last Name,Business Phone,Mobile Phone,E-mail Address\n"
                                           "Anna,Schmidt,030 2345678,,\n"
                                           "Anna,Schmidt,030 2345678,0170 2345678,\n"
                                           "Anna,Schmidt,,0170 2345678,anna@example.com\n"
                                           "A.,Schmidt,030 2345678,,anna@example.com\n");
    const Finished finished = convert({book, "-o", out_, "--region", "DE", "--merge"});
    EXPECT_EQ(readFile(out_), tamberHeader + "Schmidt;Anna;030 2345678;;0170 2345678;;;;;;anna@example.com;2\n")
        << finished.out;
    EXPECT_NE(finished.out.find(": they are one contact already\n"), std::string::npos) << finished.out;
    EXPECT_NE(finished.out.find("4 records: 1 contact, 0 duplicates, 5 near (3 merged)"), std::string::npos)
        << finished.out;
}

/// A card, and what it becomes in the report, and a record that a CSV file cannot have.
TEST_F(ConvertCommand, ReportsBrokenRecords) {
    const std::string card = folder_.write("cards.vcf", "BEGIN:VCARD\nVERSION:3.0\nN:Schmidt;Anna\nEND:VCARD\n");
    const std::string book =
        folder_.write("book.csv", "First Name,Last Name\nBen,Meyer,too,many\nCarla\n\"Dieter\xff\",Weber\n");
    const std::vector<std::string> arguments = {card, book, "-o", out_, "--force", "--from-charset", "UTF-8"};
    const Finished asText = convert(arguments);
    EXPECT_EQ(asText.status, 0);
    EXPECT_EQ(
        asText.out,
        card + ": UTF-8 (asked for), vCard\n" + book +
            ": UTF-8 (asked for), columns separated by commas, 2 of 2 known by name, like Outlook (en)\n" + book +
            ": record 1 (line 2): skipped: it has 4 columns, the header 2\n" + book +
            ": record 2 (line 3): Carla\n"
            "  line 3: it has 1 columns, the header 2; the others were taken for empty\n" +
            book +
            ": record 3 (line 4): Dieter\xef\xbf\xbd Weber\n"
            "  line 4, First Name: it has characters that could not be read\n"
            "4 records: 3 contacts, 0 duplicates, 0 near (0 merged), 0 empty, 1 broken; 0 texts changed, 0 doubtful, "
            "0 left out\nwritten: " +
            out_ + '\n');
    std::vector<std::string> withJson = arguments;
    withJson.insert(withJson.end(), {"--report", "json"});
    const Finished asJson = convert(withJson);
    EXPECT_NE(asJson.out.find(R"("result":"broken","fault":"it has 4 columns, the header 2"})"), std::string::npos)
        << asJson.out;
    EXPECT_NE(asJson.out.find(R"("problems":[{"line":3,"column":"","text":"it has 1 columns, the header 2; )"),
              std::string::npos)
        << asJson.out;
}

TEST_F(ConvertCommand, ReportsNearPairsAndTheLimitToPrograms) {
    const std::string book = folder_.write("book.csv", nearPeople);
    const Finished finished =
        convert({book, "-o", out_, "--region", "DE", "--report", "json", "--existing", "97", "--cut"});
    EXPECT_NE(finished.out.find(R"({"near":[{"file":")" + book + R"(","record":1},{"file":")" + book +
                                R"(","record":3}],"shared":"+49302345678","merged":false,"outcome":)"
                                R"("they may be one person; --merge makes them one contact"})"
                                "\n"),
              std::string::npos)
        << finished.out;
    EXPECT_NE(finished.out.find(R"({"note":"the phone takes 100 contacts and holds 97: of 5, the first 3 were taken"})"
                                "\n"),
              std::string::npos)
        << finished.out;
}

TEST_F(ConvertCommand, WritesVCardsAndJson) {
    const std::string book = folder_.write("book.csv", people);
    const Finished cards = convert({book, "--to", "vcard"});
    EXPECT_EQ(cards.out.rfind("BEGIN:VCARD\r\nVERSION:4.0\r\nFN:Anna Schmidt\r\n", 0), 0u) << cards.out;
    const Finished json = convert({book, "--to", "json"});
    EXPECT_EQ(
        json.out,
        R"({"firstName":"Anna","lastName":"Schmidt","business1":"+49 30 2345678","email1":"anna@example.com","defaultDial":2,"source":"CSV"})"
        "\n"
        R"({"firstName":"Ben","lastName":"Meyer","business1":"none","defaultDial":2,"source":"CSV"})"
        "\n");
    const Finished none = convert({folder_.write("none.csv", "First Name,Last Name\n"), "--to", "json"});
    EXPECT_EQ(none.status, 0);
    EXPECT_EQ(none.out, "");
}

TEST_F(ConvertCommand, TakesTheRegionOfTheVariableAndNamesTheVariableThatIsNone) {
    const std::string book = folder_.write("book.csv", "Last Name,Business Phone\nSmith,030 2345678\n");
    const auto inRegion = [&](const std::string& region, std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"/usr/bin/env", "LC_ALL=C", "CALLJOURNAL_REGION=" + region, COMMAND});
        return runProgram(arguments);
    };
    EXPECT_NE(inRegion("DE", {"convert", book, "--numbers", "dialable"}).out.find(";+49302345678;"), std::string::npos);
    EXPECT_NE(inRegion("", {"convert", book, "--numbers", "dialable"}).out.find(";0302345678;"), std::string::npos);
    const Finished refused = inRegion("Germany", {"convert", book});
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.err, "calljournal: CALLJOURNAL_REGION: \"Germany\" is no region such as DE or GB\n");
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(inRegion("Germany", {"convert", book, "--region", "DE"}).status, 0);
    EXPECT_EQ(inRegion("Germany", {"import", "--convert", book}).err, refused.err);
    EXPECT_EQ(inRegion("Germany", {"import", "--check", book}).status, 1);
}

TEST_F(ConvertCommand, WritesNumbersForTheRegion) {
    const std::string book = folder_.write("book.csv", "Last Name,Business Phone\nA,030 2345678 ext. 5\n");
    EXPECT_NE(convert({book, "--region", "DE", "--numbers", "dialable"}).out.find(";+49302345678,5;"),
              std::string::npos);
    EXPECT_NE(convert({book, "--region", "DE", "--numbers", "international"}).out.find(";+49 30 2345678 ext. 5;"),
              std::string::npos);
}

TEST_F(ConvertCommand, RefusesWhatItCannotRead) {
    EXPECT_EQ(convert({folder_.file("missing.csv")}).status, 1);
    EXPECT_EQ(convert({folder_.write("book.csv", people), "--map", "nonsense"}).status, 2);
    EXPECT_EQ(convert({folder_.write("book.csv", people), "--to", "xml"}).status, 2);
    EXPECT_EQ(convert({folder_.write("book.csv", "x,y\n1,2\n"), "-o", out_}).status, 1);
    EXPECT_EQ(written(), std::set<std::string>());
}

TEST_F(ConvertCommand, TakesTheUsersWordForAColumn) {
    const std::string book = folder_.write("book.csv", "Last Name,Drahtlos\nA,4711\n");
    EXPECT_NE(convert({book, "--map", "Drahtlos=Mobile1"}).out.find("A;;;;4711;"), std::string::npos);
}

TEST_F(ConvertCommand, GivesWhatTheImporterMakesOfAnOutlookExport) {
    const std::string book = examples + "outlook-english.csv";
    ASSERT_EQ(convert({book, "-o", out_}).status, 0);
    EXPECT_EQ(imported(out_), imported(book));
}

TEST_F(ConvertCommand, ImportsInOneGo) {
    const std::string book = folder_.write("book.csv", manyPeople(120));
    const Finished finished = run({"import", "--convert", "--format", "json", book});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(std::count(finished.out.begin(), finished.out.end(), '\n'), 100);
    EXPECT_NE(finished.err.find("of 120, the first 100 were taken\n"), std::string::npos) << finished.err;
    EXPECT_NE(finished.err.find(book + ": CSV_TAMBER (7): 100 contacts imported\n"), std::string::npos);
    const Finished large = run({"import", "--convert", "--format", "json", "--hardware", "nq", book});
    EXPECT_EQ(std::count(large.out.begin(), large.out.end(), '\n'), 120);
    EXPECT_EQ(run({"import", "--convert", "--from-latin1", "--check", examples + "outlook-german-latin1.csv"}).status,
              0);
    EXPECT_EQ(run({"import", "--convert", folder_.file("missing.csv")}).status, 1);
}

/// A text as RFC 4180 quotes it.
std::string quotedColumn(const std::string& text) {
    std::string result = "\"";
    for (const char c : text) {
        result += c == '"' ? "\"\"" : std::string(1, c);
    }
    return result + '"';
}

TEST_F(ConvertCommand, KeepsWhateverContactsAPhoneCanHold) {
    const unsigned seed = 20261121;
    std::mt19937 random(seed);
    const std::string letters[] = {"a", "Z", "\"", "\\", ";",  ",", "n", " ", "'",
                                   "&", "<", ":",  "é",  "日", "😀", "0", "+"};
    for (int round = 0; round < 12; ++round) {
        std::string book =
            "LastName,FirstName,Business1,Business2,Mobile1,Private1,Company1,Address1,Address2,Position,Email1\n";
        std::string expected;
        for (int i = 0; i < 100; ++i) {
            Contact contact;
            contact.source = static_cast<Contact::eOrderedContactSource>(3);
            for (const auto& field : calljournal::format::contactTexts) {
                std::string& text = contact.*field.member;
                for (auto length = random() % 4 == 0 ? random() % 14 : 0; length != 0; --length) {
                    text += letters[random() % std::size(letters)];
                }
                // A reader takes no blanks around a text.
                text = text.empty() ? text : 'x' + text + 'x';
            }
            contact.lastName = "Name" + std::to_string(i) + contact.lastName;
            contact.defaultDial = calljournal::format::derivedDefaultDial(contact);
            for (int place = 0; place < calljournal::format::defaultDialField; ++place) {
                const auto member = calljournal::format::textAt(place).member;
                book += quotedColumn(contact.*member) + (member == &Contact::email1 ? '\n' : ',');
            }
            expected += calljournal::contactJson(contact) + '\n';
        }
        const Finished finished = convert({folder_.write("book.csv", book), "-o", out_, "--force"});
        ASSERT_EQ(finished.status, 0) << "seed " << seed << ", round " << round << '\n' << finished.err;
        ASSERT_EQ(imported(out_), expected) << "seed " << seed << ", round " << round;
    }
}

TEST_F(ConvertCommand, EndsCleanlyWhateverTheBytes) {
    const unsigned seed = 5;
    std::mt19937 random(seed);
    for (int round = 0; round < 40; ++round) {
        std::string bytes = round % 2 == 0 ? "First Name,Last Name\n" : "";
        for (auto length = random() % 3000; length != 0; --length) {
            const bool isSpecial = random() % 8 == 0;
            bytes += isSpecial ? ",\"\n;\r\t\\\0"[random() % 8] : static_cast<char>(random() % 256);
        }
        const Finished finished = convert({folder_.write("book.csv", bytes), "-o", out_, "--force"});
        ASSERT_LE(finished.status, 1) << "seed " << seed << ", round " << round << '\n' << finished.err;
        ASSERT_EQ(finished.err.find("internal error"), std::string::npos) << finished.err;
    }
}

}  // namespace
