#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "RunCommand.h"

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Words = std::set<std::string>;

const std::string manual = MANUAL;

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// The first group of every match.
Words found(const std::string& text, const std::string& pattern) {
    const std::regex regex(pattern);
    Words words;
    for (std::sregex_iterator match(text.begin(), text.end(), regex); match != std::sregex_iterator(); ++match) {
        words.insert((*match)[1]);
    }
    return words;
}

std::string help(const std::string& command) {
    std::vector<std::string> arguments = {COMMAND};
    if (!command.empty()) {
        arguments.push_back(command);
    }
    arguments.emplace_back("--help");
    return runProgram(arguments).out;
}

/// What the command itself calls its commands; the nameless one has the options of all.
std::vector<std::string> commands() {
    const std::string text = help("");
    std::vector<std::string> names = {""};
    for (const std::string& name : found(text.substr(text.find("Subcommands:")), "\n  ([a-z]+) ")) {
        names.push_back(name);
    }
    return names;
}

/// "--store", "--help" and so on.
Words optionsOf(const std::string& command) {
    return found(help(command), "\n  (?:-[a-z],)?(--[a-z0-9-]+)");
}

/// The manual's text on a command, or on the options of all.
std::string manualOn(const std::string& command) {
    const std::string page = readFile(manual);
    const std::string title = command.empty() ? ".Sh OPTIONS\n" : ".Ss " + command + "\n";
    const std::size_t begin = page.find(title);
    if (begin == std::string::npos) {
        return std::string();
    }
    const std::size_t end = std::min(page.find("\n.Ss ", begin), page.find("\n.Sh ", begin));
    return page.substr(begin, end - begin);
}

Words manualOptionsOf(const std::string& command) {
    Words words;
    for (const std::string& name : found(manualOn(command), "Fl -([a-z0-9-]+)")) {
        words.insert("--" + name);
    }
    return words;
}

TEST(Manual, NamesEachOptionOfEachCommandAndNoOther) {
    ASSERT_GT(commands().size(), 9u);
    const Words globals = optionsOf("");
    for (const std::string& command : commands()) {
        Words expected = optionsOf(command);
        Words named = manualOptionsOf(command);
        ASSERT_THAT(expected, Contains("--help")) << command;
        if (!command.empty()) {
            expected.erase("--help");  // described once
            for (const std::string& global : globals) {
                named.erase(expected.count(global) == 0 ? global : std::string());
            }
        }
        EXPECT_EQ(named, expected) << "calljournal " << command;
    }
}

TEST(Manual, NamesEachWordThatAnOptionTakes) {
    for (const std::string& command : commands()) {
        const std::string page = readFile(manual);
        for (const std::string& word : found(help(command), "\\b([A-Z]+_[A-Z_0-9]+)\\b")) {
            EXPECT_NE(page.find(word), std::string::npos) << word;
        }
    }
}

TEST(Manual, NamesEachKindOfEntryAndNoOther) {
    const std::string page = readFile(manual);
    const std::size_t begin = page.find(".Sh COMMANDS");
    const std::string kinds = page.substr(begin, page.find("\n.Ss ", begin) - begin);
    const Words named = found(help("record"), "\n  kind TEXT +([a-z, ]+)\n");
    ASSERT_EQ(named.size(), 1u);
    EXPECT_EQ(found(kinds, "\\.Cm ([a-z]+)"), found(*named.begin(), "([a-z]+)"));
}

TEST(Manual, NamesNoCommandThatIsNotThere) {
    const std::string page = readFile(manual);
    const std::size_t begin = page.find(".Sh COMMANDS");
    Words expected;
    for (const std::string& command : commands()) {
        expected.insert(command);
    }
    expected.erase("");
    EXPECT_EQ(found(page.substr(begin), "\n.Ss ([a-z]+)\n"), expected);
}

/// The other page of the two need not be installed yet.
std::vector<std::string> complaints(const std::string& text) {
    std::vector<std::string> lines;
    for (const std::string& line : linesOf(text)) {
        if (line.find("referenced manual not found: Xr calljournal") == std::string::npos) {
            lines.push_back(line);
        }
    }
    return lines;
}

TEST(Manual, PleasesBothFormatters) {
    for (const std::string page : {MANUAL, FORMAT_MANUAL}) {
        EXPECT_THAT(complaints(runProgram({"mandoc", "-Tlint", page}).out), IsEmpty());
        const Finished groff = runProgram({"groff", "-ww", "-t", "-mdoc", "-Tutf8", "-z", page});
        EXPECT_EQ(groff.status, 0);
        EXPECT_EQ(groff.err, "");
    }
}

TEST(Manual, FitsIntoEightyColumns) {
    for (const std::string page : {MANUAL, FORMAT_MANUAL}) {
        const std::string shown = runProgram({"mandoc", "-Tascii", page}).out;
        const std::vector<std::string> lines = linesOf(std::regex_replace(shown, std::regex(".\b"), ""));
        EXPECT_GT(lines.size(), 200u);
        for (const std::string& line : lines) {
            const bool isExample = line.find('<') != std::string::npos;  // stored text is not broken
            EXPECT_TRUE(line.size() <= 80 || isExample) << line;
        }
    }
}

/// What bash offers for the last of `words`.
std::vector<std::string> completed(const std::vector<std::string>& words, const std::string& folder = ".") {
    std::string script = "PATH=" COMMAND_FOLDER ":$PATH; cd \"$1\"; shift; source " COMPLETION
                         ".bash; COMP_WORDS=(calljournal \"$@\");"
                         "COMP_CWORD=$#; _calljournal; printf '%s\\n' \"${COMPREPLY[@]}\"";
    std::vector<std::string> arguments = {"bash", "--norc", "-uc", script, "bash", folder};
    arguments.insert(arguments.end(), words.begin(), words.end());
    const Finished finished = runProgram(arguments);
    EXPECT_EQ(finished.err, "");
    std::vector<std::string> offers = linesOf(finished.out);
    if (offers == std::vector<std::string>{""}) {
        offers.clear();
    }
    return offers;
}

Words offered(const std::vector<std::string>& words) {
    const std::vector<std::string> offers = completed(words);
    return Words(offers.begin(), offers.end());
}

TEST(Completion, OffersTheCommands) {
    Words expected;
    for (const std::string& command : commands()) {
        expected.insert(command);
    }
    expected.erase("");
    EXPECT_EQ(offered({""}), expected);
    EXPECT_THAT(completed({"de"}), ElementsAre("delete", "decode", "demo"));
}

TEST(Completion, OffersEachOptionOfEachCommandAndNoOther) {
    const Words globals = optionsOf("");
    EXPECT_EQ(offered({"--"}), globals);
    for (const std::string& command : commands()) {
        Words expected = optionsOf(command);
        expected.insert(globals.begin(), globals.end());
        EXPECT_EQ(command.empty() ? globals : offered({command, "-"}), expected) << "calljournal " << command;
    }
}

TEST(Completion, OffersTheWordsThatAnOptionTakes) {
    // Options with a set of words name it in braces, or as words in capitals.
    int checked = 0;
    for (const std::string& command : commands()) {
        for (const std::string& line : linesOf(std::regex_replace(help(command), std::regex("\n {20,}"), " "))) {
            std::smatch match;
            const bool isSet = std::regex_search(line, match, std::regex("^  (--[a-z-]+) (?:TEXT|UINT):\\{(.*)\\}"));
            if (!isSet &&
                !std::regex_search(line, match, std::regex("^  (--[a-z-]+) TEXT +([A-Z_0-9]+, [A-Z_0-9, ]+)$"))) {
                continue;
            }
            std::vector<std::string> words = {match[1], ""};
            if (!command.empty()) {
                words.insert(words.begin(), command);
            }
            EXPECT_EQ(offered(words), found(match[2], "([A-Za-z_0-9]+)")) << line;
            ++checked;
        }
    }
    EXPECT_GE(checked, 17);
    EXPECT_THAT(completed({"list", "--format", "j"}), ElementsAre("json"));
    EXPECT_THAT(completed({"import", "--format", "=", "v"}), ElementsAre("vcard"));
    EXPECT_THAT(completed({"--log", "="}), ElementsAre("0", "1", "2", "3", "4", "5", "6", "7", "8", "9"));
    EXPECT_THAT(completed({"record", "callback", "--call-back-type", "NO"}), ElementsAre("NOTYPE", "NOREPLY"));
}

TEST(Completion, OffersKindsBehindOptionsToo) {
    const Words kinds = {"missed", "dialled", "received", "forwarded", "callback"};
    Words listed = kinds;
    listed.insert("all");
    EXPECT_EQ(offered({"--store", "a b", "--show-xml", "record", ""}), kinds);
    EXPECT_EQ(offered({"list", "--limit", "3", ""}), listed);
    EXPECT_EQ(offered({"check", "--kind", ""}), kinds);
    EXPECT_EQ(offered({"encode", ""}), (Words{"missed", "dialled", "received", "forwarded"}));
    EXPECT_THAT(completed({"list", "missed", ""}), IsEmpty());
    EXPECT_THAT(completed({"viewed", ""}), IsEmpty());
    EXPECT_THAT(completed({"record", "--number", ""}), IsEmpty());
}

TEST(Completion, OffersFiles) {
    const TemporaryFolder folder;
    folder.write("my book.csv", "");
    const std::string path = folder.write("notes", "");
    const std::string place = path.substr(0, path.rfind('/'));
    EXPECT_THAT(completed({"import", "my"}, place), ElementsAre("my book.csv"));
    EXPECT_THAT(completed({"import", "--check", "my book.csv", "no"}, place), ElementsAre("notes"));
    EXPECT_THAT(completed({"--store", "no"}, place), ElementsAre("notes"));
    EXPECT_THAT(completed({"convert", "-o", "no"}, place), ElementsAre("notes"));
    EXPECT_THAT(completed({"convert", "--map", "no"}, place), IsEmpty());
    EXPECT_EQ(completed({"record", "--from", "="}, place).size(), 2u);
}

TEST(Completion, IsLoadedByARealBash) {
    const Finished finished =
        runProgram({"bash", "--norc", "-c",
                    "source " COMPLETION ".bash && complete -p calljournal && compgen -A function _callj"});
    EXPECT_EQ(finished.status, 0);
    EXPECT_THAT(linesOf(finished.out), Contains("complete -F _calljournal calljournal"));
}

/// What zsh offers for the last of `words`; its own functions for lists and files print what they are given.
std::vector<std::string> completedByZsh(std::vector<std::string> words) {
    const std::string script = "path=(" COMMAND_FOLDER
                               " $path); words=(calljournal \"$@\"); CURRENT=$#words;"
                               "PREFIX=$words[-1]; compset() { PREFIX=${PREFIX#--*=} };"
                               "_describe() { print -rl -- \"${(@P)2}\" }; _files() { print -r files $PREFIX };"
                               "source " COMPLETION ".zsh";
    words.insert(words.begin(), {"zsh", "-f", "-c", script, "zsh"});
    const Finished finished = runProgram(words);
    EXPECT_EQ(finished.err, "");
    return linesOf(finished.out);
}

TEST(Completion, OffersTheSameInZsh) {
    EXPECT_THAT(completedByZsh({"vi"}), ElementsAre("viewed:Mark a missed entry as seen"));
    EXPECT_THAT(completedByZsh({"list", "--format", "j"}), ElementsAre("json"));
    EXPECT_THAT(completedByZsh({"import", "--format=v"}), ElementsAre("--format=vcard"));
    EXPECT_THAT(completedByZsh({"import", "my"}), ElementsAre("files my"));
    EXPECT_THAT(completedByZsh({"convert", "--out=my"}), ElementsAre("files my"));
    EXPECT_THAT(completedByZsh({"list", "missed", ""}), IsEmpty());
}

/// What fish offers for the end of `line`.
std::vector<std::string> completedByFish(const std::string& line, const std::string& folder = ".") {
    const std::string script =
        "set PATH " COMMAND_FOLDER " $PATH; cd $argv[1]; source " COMPLETION ".fish; complete -C $argv[2]";
    const Finished finished = runProgram({"fish", "--no-config", "-c", script, folder, line});
    EXPECT_EQ(finished.err, "");
    return linesOf(finished.out);
}

TEST(Completion, OffersTheSameInFish) {
    const TemporaryFolder folder;
    const std::string path = folder.write("notes", "");
    const std::string place = path.substr(0, path.rfind('/'));
    EXPECT_THAT(completedByFish("calljournal vi"), ElementsAre("viewed\tMark a missed entry as seen"));
    EXPECT_THAT(completedByFish("calljournal list --format j"), ElementsAre("json"));
    EXPECT_THAT(completedByFish("calljournal import --format=v"), ElementsAre("--format=vcard"));
    EXPECT_THAT(completedByFish("calljournal import no", place), ElementsAre("notes"));
    EXPECT_THAT(completedByFish("calljournal convert --out=no", place), ElementsAre("--out=notes"));
    EXPECT_THAT(completedByFish("calljournal list missed "), IsEmpty());
}

}  // namespace
