#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

#include "ImportFiles.h"
#include "RunCommand.h"

namespace {

namespace fs = std::filesystem;

const std::string examples = EXAMPLES "/contacts/";

/// The built command, which leaves no trace in the folder for temporary files.
class ImportCommand : public ::testing::Test {
protected:
    ImportCommand() { fs::create_directory(temporary_); }
    ~ImportCommand() override { EXPECT_TRUE(fs::is_empty(temporary_)); }

    Finished run(std::vector<std::string> arguments, const std::string& input = std::string()) const {
        arguments.insert(arguments.begin(), {"/usr/bin/env", "TMPDIR=" + temporary_, COMMAND, "import"});
        return runProgram(arguments, input);
    }

    /// The outcome line of a file that is refused, without the file's name.
    std::string refusal(const std::string& path, std::vector<std::string> options = {}) const {
        options.push_back(path);
        const Finished finished = run(options);
        EXPECT_EQ(finished.status, 1);
        EXPECT_EQ(finished.out, "");
        EXPECT_EQ(finished.err.rfind(path + ": ", 0), 0u) << finished.err;
        return finished.err.substr(std::min(finished.err.size(), path.size() + 2));
    }

    const TemporaryFolder folder_;
    const std::string temporary_ = folder_.file("tmp");
    const std::string good_ = tamberHeader + tamberRow("Adams", "1") + tamberRow("Brown", "2");
};

TEST_F(ImportCommand, ShowsATableWithTheOutcomeBelow) {
    const std::string file = folder_.write("contacts.csv", good_);
    const Finished finished = run({"--format", "table", file});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.out,
              "Name   Business\nAdams  1 *\nBrown  2 *\n" + file + ": CSV_TAMBER (7): 2 contacts imported\n");
    EXPECT_EQ(finished.err, "");
    EXPECT_EQ(readFile(file), good_);
}

TEST_F(ImportCommand, WritesJsonWithTheOutcomeBeside) {
    const std::string file = folder_.write("contacts.csv", good_);
    for (const auto& arguments : {std::vector<std::string>{file}, {"--format", "json", file}}) {
        const Finished finished = run(arguments);
        EXPECT_EQ(finished.status, 0);
        EXPECT_EQ(finished.out,
                  "{\"lastName\":\"Adams\",\"business1\":\"1\",\"defaultDial\":2,\"source\":\"CSV\"}\n"
                  "{\"lastName\":\"Brown\",\"business1\":\"2\",\"defaultDial\":2,\"source\":\"CSV\"}\n");
        EXPECT_EQ(finished.err, file + ": CSV_TAMBER (7): 2 contacts imported\n");
    }
}

TEST_F(ImportCommand, WritesVCards) {
    const std::string file = folder_.write("contacts.csv", tamberHeader + tamberRow("Adams", "1"));
    const Finished finished = run({file, "--format", "vcard"});
    EXPECT_EQ(finished.out,
              "BEGIN:VCARD\r\nVERSION:4.0\r\nFN:Adams\r\nN:Adams;;;;\r\nTEL;TYPE=work,voice;PREF=1:1\r\n"
              "END:VCARD\r\n");
    EXPECT_EQ(finished.err, file + ": CSV_TAMBER (7): 1 contact imported\n");
}

TEST_F(ImportCommand, GivesEachOfSeveralFilesAHeading) {
    const std::string good = folder_.write("good.csv", tamberHeader + tamberRow("Adams", "1"));
    const std::string bad = folder_.write("bad.csv", "Name\n");
    const Finished finished = run({"--format", "table", good, bad, good});
    EXPECT_EQ(finished.status, 1);
    const std::string shown =
        "== " + good + "\nName   Business\nAdams  1 *\n" + good + ": CSV_TAMBER (7): 1 contact imported\n";
    EXPECT_EQ(finished.out, shown + "== " + bad + '\n' + bad +
                                ": CSV_INVALID_DELIMITERS (1): line 1: one column, \"Name\"; the names of a header are "
                                "separated by semicolons or commas\n" +
                                shown);
}

TEST_F(ImportCommand, NamesEveryOutcome) {
    const struct {
        std::string text;
        const char* line;
    } cases[] = {
        {tamberHeader + repeated(tamberRow("Adams", "1"), 101),
         "CSV_NO_CAPACITY (0): the phonebook takes 100 contacts: 0 used, 101 in the file, 1 too many; the first that "
         "does "
         "not fit is on line 102\n"},
        {"Name\n",
         "CSV_INVALID_DELIMITERS (1): line 1: one column, \"Name\"; the names of a header are separated by semicolons "
         "or "
         "commas\n"},
        {headerOf(101), "CSV_TOO_MANY_HEADERS (2): line 1: 101 columns; a header has at most 100\n"},
        {headerOf(13),
         "CSV_INVALID_HEADERS (3): line 1: 13 columns; an Outlook export needs 92, the Tamber layout 12; \"calljournal "
         "convert\" turns other exports into a file that fits\n"},
        {good_ + tamberRow("Cole", "3", "9"),
         "CSV_INVALID_DEFAULT_DIAL (4): line 4, column 12 DefaultDial: \"9\" is not a number from 0 to 4\n"},
        {good_ + "Cole;\n", "CSV_COLUMN_MISMATCH (5): line 4: 2 columns where the header has 12\n"},
        {good_ + "C:\\temp\n",
         "CSV_FILE_ERROR (6): line 4, column 1 LastName: the backslash before \"t\" is not an escape the format knows; "
         "write two backslashes for one\n"},
        {"", "CSV_FILE_ERROR (6): the file is empty\n"},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(refusal(folder_.write("contacts.csv", one.text)), one.line);
    }
    EXPECT_EQ(run({folder_.write("contacts.csv", headerOf(92))}).err,
              folder_.file("contacts.csv") + ": CSV_OUTLOOK (8): 0 contacts imported\n");
}

TEST_F(ImportCommand, NamesTheFirstFaultOfALongFile) {
    EXPECT_EQ(
        refusal(folder_.write("contacts.csv", "Name\n" + repeated("Adams\n", 101))),
        "CSV_NO_CAPACITY (0): the phonebook takes 100 contacts: 0 used, 101 in the file, 1 too many; the first that "
        "does not fit is on line 102; and before that, line 1: one column, \"Name\"; the names of a header are "
        "separated by semicolons or commas\n");
}

TEST_F(ImportCommand, SaysThatAFileCannotBeRead) {
    EXPECT_EQ(refusal(folder_.file("missing.csv")), "CSV_FILE_ERROR (6): No such file or directory\n");
    EXPECT_EQ(refusal(temporary_), "CSV_FILE_ERROR (6): Is a directory\n");
    const std::string secret = folder_.write("secret.csv", good_);
    fs::permissions(secret, fs::perms::none);
    // To root nothing is unreadable.
    if (::geteuid() != 0) {
        EXPECT_EQ(refusal(secret), "CSV_FILE_ERROR (6): Permission denied\n");
    }
}

TEST_F(ImportCommand, TakesFilesThatAreNoText) {
    std::string bytes;
    for (int i = 0; i < 4096; ++i) {
        bytes += static_cast<char>(i * 7919 / 13);
    }
    EXPECT_EQ(refusal(folder_.write("binary", bytes)).rfind("CSV_", 0), 0u);
    EXPECT_EQ(refusal(folder_.write("zeros", std::string(1000000, '\0'))).rfind("CSV_INVALID_DELIMITERS (1): ", 0), 0u);
    EXPECT_NE(refusal(folder_.write("utf16", std::string("\xff\xfeN\0\n\0", 6)))
                  .find("; the file is UTF-16 and has to be saved as UTF-8\n"),
              std::string::npos);
}

TEST_F(ImportCommand, RefusesAHugeFileUnread) {
    const std::string huge = folder_.write("huge.csv", "");
    fs::resize_file(huge, 1024u * 1024u * 1024u);
    for (const auto& options : {std::vector<std::string>{}, {"--consume"}}) {
        EXPECT_EQ(refusal(huge, options), "has 1024 MiB; more than 256 MiB are not read\n");
        EXPECT_TRUE(fs::exists(huge));
    }
}

TEST_F(ImportCommand, TakesALineOf100Megabytes) {
    const std::string file = folder_.write("line.csv", tamberHeader + std::string(100000000, 'x'));
    EXPECT_EQ(refusal(file), "CSV_COLUMN_MISMATCH (5): line 2: 1 column where the header has 12\n");
}

TEST_F(ImportCommand, ReadsStandardInput) {
    const Finished finished = run({"--format", "table", "/dev/stdin"}, good_);
    EXPECT_EQ(finished.out,
              "Name   Business\nAdams  1 *\nBrown  2 *\n/dev/stdin: CSV_TAMBER (7): 2 contacts imported\n");
}

TEST_F(ImportCommand, StopsAnEndlessPipe) {
    EXPECT_EQ(refusal("/dev/zero"), "has more than 256 MiB, which is as much as is read\n");
}

TEST_F(ImportCommand, DeletesTheFileOnlyToConsumeItWhateverTheOutcome) {
    const std::string good = folder_.write("good.csv", good_);
    const std::string bad = folder_.write("bad.csv", "Name\n");
    EXPECT_EQ(run({good, bad}).status, 1);
    EXPECT_EQ(run({"--check", good, bad}).status, 1);
    EXPECT_EQ(readFile(good), good_);
    EXPECT_EQ(readFile(bad), "Name\n");
    const Finished finished = run({"--consume", "--format", "table", good, bad});
    EXPECT_EQ(finished.status, 1);
    EXPECT_NE(finished.out.find("CSV_TAMBER (7): 2 contacts imported"), std::string::npos);
    EXPECT_NE(finished.out.find("CSV_INVALID_DELIMITERS (1): line 1: one column"), std::string::npos);
    EXPECT_FALSE(fs::exists(good));
    EXPECT_FALSE(fs::exists(bad));
}

TEST_F(ImportCommand, SaysThatAFileCannotBeDeleted) {
    const Finished finished = run({"--consume", temporary_});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.err, temporary_ + ": CSV_FILE_ERROR (6): Is a directory\ncalljournal: " + temporary_ +
                                ": cannot be deleted\n");
}

TEST_F(ImportCommand, DeletesNoLink) {
    const std::string file = folder_.write("contacts.csv", good_);
    const std::string link = folder_.file("link.csv");
    fs::create_symlink(file, link);
    const Finished finished = run({"--consume", link});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.err,
              link + ": CSV_TAMBER (7): 2 contacts imported\ncalljournal: " + link + ": cannot be deleted\n");
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(readFile(file), good_);
}

TEST_F(ImportCommand, LeavesOutAByteOrderMarkAndSaysSo) {
    const std::string file = folder_.write("contacts.csv", "\xef\xbb\xbf" + good_);
    EXPECT_EQ(run({file}).err, file + ": the byte-order mark in front was left out\n" + file +
                                   ": CSV_TAMBER (7): 2 contacts imported\n");
    EXPECT_EQ(readFile(file), "\xef\xbb\xbf" + good_);
}

TEST_F(ImportCommand, ConvertsIso8859OnRequest) {
    const std::string file = folder_.write("contacts.csv", tamberHeader + tamberRow("M\xfcller", "1"));
    EXPECT_NE(run({file}).out.find("\"M\ufffdller\""), std::string::npos);
    EXPECT_NE(run({"--from-latin1", file}).out.find("\"Müller\""), std::string::npos);
}

TEST_F(ImportCommand, PlaysEachPhone) {
    const std::string many = folder_.write("many.csv", tamberHeader + repeated(tamberRow("Adams", "1"), 101));
    EXPECT_EQ(run({many}).status, 1);
    EXPECT_EQ(run({"--hardware", "nq", many}).status, 0);
    EXPECT_EQ(run({"--hardware", "nq", "--existing", "899", many}).status, 0);
    EXPECT_NE(refusal(many, {"--hardware", "nq", "--existing", "900"})
                  .find("the phonebook takes 1000 contacts: 900 used, 101 in the file, 1 too many"),
              std::string::npos);
    const std::string mobile = folder_.write("mobile.csv", tamberHeader + "Adams;;111;;222;;;;;;;4\n");
    EXPECT_NE(run({mobile}).out.find(R"("business1":"111","mobile1":"222","defaultDial":4)"), std::string::npos);
    EXPECT_NE(run({"--hardware", "tq2", mobile}).out.find(R"("business1":"222","mobile1":"111","defaultDial":2)"),
              std::string::npos);
}

TEST_F(ImportCommand, ChecksWithoutShowingContacts) {
    const std::string file = folder_.write("contacts.csv", good_ + tamberRow("", ""));
    const Finished finished = run({"--check", file});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.out,
              "  Tamber layout, 12 columns separated by semicolons, 2 contacts\n"
              "  1 line gives no contact: line 4\n" +
                  file + ": CSV_TAMBER (7): 2 contacts would be imported\n");
    EXPECT_EQ(finished.err, "");
    const Finished refused = run({"--check", folder_.write("contacts.csv", good_ + "\n")});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "  Tamber layout, 12 columns separated by semicolons, 2 contacts\n" + file +
                               ": CSV_COLUMN_MISMATCH (5): line 4: is empty; take it out\n");
}

TEST_F(ImportCommand, LogsAnImportOnce) {
    const std::string file = folder_.write("contacts.csv", good_ + "\n");
    for (const auto& arguments : {std::vector<std::string>{"--log", "9", file}, {"--log", "9", "--check", file}}) {
        const std::string log = run(arguments).err;
        const std::string line = "corrupt file: lines have different number of columns";
        const std::size_t first = log.find(line);
        ASSERT_NE(first, std::string::npos) << log;
        EXPECT_EQ(log.find(line, first + 1), std::string::npos) << log;
    }
}

TEST_F(ImportCommand, RefusesOptionsThatMakeNoSense) {
    const std::string file = folder_.write("contacts.csv", good_);
    for (const auto& arguments : {std::vector<std::string>{},
                                  {"--check", "--consume", file},
                                  {"--hardware", "pc", file},
                                  {"--existing", "-1", file},
                                  {"--format", "xml", file}}) {
        EXPECT_EQ(run(arguments).status, 2);
    }
    EXPECT_EQ(runProgram({COMMAND, "--format", "xml", "import", file}).err,
              "calljournal: an import has no such format: xml; it has table, json and vcard\n");
    EXPECT_EQ(runProgram({COMMAND, "--format", "json", "import", file}).status, 0);
    EXPECT_EQ(readFile(file), good_);
}

TEST_F(ImportCommand, MakesTheNameOfAFilePrintable) {
    const std::string file = folder_.write("a\x1b[31m.csv", good_);
    EXPECT_NE(run({file}).err.find("a\\x1b[31m.csv: CSV_TAMBER (7)"), std::string::npos);
}

TEST_F(ImportCommand, ShowsHowFarItIsOnATerminal) {
    // A pipe that takes its time; script(1) lends the command a terminal.
    const std::string command = "(sleep 1; cat '" + folder_.write("contacts.csv", good_) +
                                "') | '" COMMAND "' import --format table /dev/stdin";
    const Finished finished = runProgram({"/usr/bin/script", "-qec", command, "/dev/null"});
    EXPECT_NE(finished.out.find("copying /dev/stdin  0 KiB"), std::string::npos) << finished.out;
    EXPECT_NE(finished.out.find("CSV_TAMBER (7): 2 contacts imported"), std::string::npos) << finished.out;
    EXPECT_EQ(run({folder_.file("contacts.csv")}).err.find('\x1b'), std::string::npos);
}

TEST_F(ImportCommand, IsPartOfTheTour) {
    const Finished tour = runProgram({COMMAND, "demo"});
    EXPECT_EQ(tour.status, 0) << tour.err;
    for (const char* piece :
         {"\nexamples/contacts/tamber.csv: CSV_TAMBER (7): 6 contacts imported\n",
          "\nexamples/contacts/outlook-german-latin1.csv: CSV_OUTLOOK (8): 3 contacts would be imported\n",
          "\nexamples/contacts/refused-default-dial.csv: CSV_INVALID_DEFAULT_DIAL (4): line 4, column "
          "12 DefaultDial: \"9\" is not a number from 0 to 4\n"}) {
        EXPECT_NE(tour.out.find(piece), std::string::npos) << piece << tour.out;
    }
}

TEST_F(ImportCommand, ImportsTheExamplesOrSaysWhy) {
    const struct {
        const char* file;
        int contacts;  // -1 for one that is refused
    } cases[] = {{"tamber.csv", 6},
                 {"tamber-comma.csv", 3},
                 {"outlook-english.csv", 6},
                 {"outlook-empty-quoted.csv", 2},
                 {"outlook-german-latin1.csv", 3},
                 {"outlook-french-latin1.csv", 2},
                 {"refused-backslash.csv", -1},
                 {"refused-column-missing.csv", -1},
                 {"refused-comma-at-line-end.csv", -1},
                 {"refused-default-dial.csv", -1},
                 {"refused-web-export.csv", -1}};
    std::ptrdiff_t known = 0;
    for (const auto& one : cases) {
        const Finished finished = run({"--format", "json", examples + one.file});
        EXPECT_EQ(finished.status, one.contacts < 0 ? 1 : 0) << one.file;
        EXPECT_EQ(std::count(finished.out.begin(), finished.out.end(), '\n'), std::max(one.contacts, 0)) << one.file;
        for (std::istringstream lines(finished.out); !lines.eof();) {
            std::string line;
            std::getline(lines, line);
            EXPECT_TRUE(line.empty() || nlohmann::json::accept(line)) << line;
        }
        ++known;
    }
    const fs::directory_iterator files(examples);
    EXPECT_EQ(std::count_if(fs::begin(files), fs::end(files),
                            [](const fs::directory_entry& entry) { return entry.path().extension() == ".csv"; }),
              known);
}

/// An import that waits in the middle: somebody might still write to the pipe that it reads.
class WaitingImport : public ImportCommand {
protected:
    WaitingImport() {
        ::mkfifo(pipe_.c_str(), 0600);
        writer_ = ::open(pipe_.c_str(), O_RDWR);
    }
    ~WaitingImport() override { ::close(writer_); }

    /// Sends the import a signal once it has copied what came, and after `meanwhile`.
    Finished end(
        int signal, const std::function<void()>& meanwhile = [] {}) const {
        const std::string begin = tamberHeader + tamberRow("Adams", "1");
        EXPECT_EQ(::write(writer_, begin.data(), begin.size()), static_cast<ssize_t>(begin.size()));
        return interruptProgram({"/usr/bin/env", "TMPDIR=" + temporary_, COMMAND, "import", pipe_}, signal, [&] {
            if (copies().empty()) {
                return false;
            }
            meanwhile();
            return true;
        });
    }

    /// The copies with contacts that are there.
    std::vector<fs::path> copies() const {
        std::vector<fs::path> found;
        for (const fs::directory_entry& folder : fs::directory_iterator(temporary_)) {
            std::error_code none;
            const fs::path copy = folder.path() / "contacts.csv";
            if (fs::file_size(copy, none) > 0 && !none) {
                found.push_back(copy);
            }
        }
        return found;
    }

    const std::string pipe_ = folder_.file("pipe");
    int writer_ = -1;
};

TEST_F(WaitingImport, LeavesNothingWhenItIsInterrupted) {
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGALRM, SIGTERM, SIGXCPU}) {
        const Finished finished = end(signal);
        EXPECT_EQ(finished.status, 128 + signal) << finished.err;
        EXPECT_TRUE(fs::is_empty(temporary_)) << signal;
    }
}

TEST_F(WaitingImport, LeavesAFolderForItsUserAloneWhenItIsKilledWhichTheNextImportRemoves) {
    EXPECT_EQ(end(SIGKILL).status, 128 + SIGKILL);
    ASSERT_EQ(copies().size(), 1U);
    const fs::path left = copies().front().parent_path();
    EXPECT_EQ(fs::status(left).permissions(), fs::perms::owner_all);
    EXPECT_EQ(run({folder_.write("contacts.csv", good_)}).status, 0);
    EXPECT_TRUE(fs::is_empty(temporary_));
}

TEST_F(WaitingImport, KeepsItsFolderWhileAnotherImportRuns) {
    const Finished finished = end(SIGTERM, [this] {
        const std::vector<fs::path> before = copies();
        EXPECT_EQ(run({folder_.write("contacts.csv", good_)}).status, 0);
        EXPECT_EQ(copies(), before);
    });
    EXPECT_EQ(finished.status, 128 + SIGTERM) << finished.err;
}

TEST_F(ImportCommand, RefusesAFileThatGetsTooLargeToCopy) {
    const std::string file = folder_.write("contacts.csv", good_ + std::string(10000, '\n'));
    const Finished finished =
        runProgram({"/bin/bash", "-c", "ulimit -f 1; TMPDIR=" + temporary_ + " exec " COMMAND " import " + file});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.err, file + ": cannot be copied to a temporary folder: File too large\n");
}

}  // namespace
