#include <array>
#include <gtest/gtest.h>
#include <iterator>
#include <nlohmann/json.hpp>
#include <pty.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "RunCommand.h"
#include "StoreTest.h"

namespace {

using Json = nlohmann::ordered_json;

/// Texts as nobody would wish them, valid UTF-8 all.
const std::string hostileTexts[] = {
    "</Surname><Surname>x</Entry><Entry><UniqueId>7</UniqueId>",
    "&lt;&amp;amp;&#x1b;&#38;&quot",
    "<![CDATA[x]]><!-- -- --><?xml version=\"1.0\"?>",
    "'; drop table entry; --\"\\';:id",
    "%n%s%1000000d%*c",
    std::string("zero\0byte", 9),
    "\x01\x02\x1b[2J\x1b]0;title\x07\x7f\r\n\t\x0b\x0c",
    "\u009b31m\u0085",
    "\u202egnp.exe\u2066\u200f\u061c",
    "e\u0301\u0327\u20dd \u05e9\u05dc\u05d5\u05dd \U0001f469\u200d\U0001f680",
    "\ufeff\ufffe\uffff\U0010ffff",
    " leading and trailing \t",
    "\\u0000\\n\\",
    "../../../../etc/passwd\n",
};

const char* const kinds[] = {"missed", "dialled", "received", "forwarded"};
const char* const partyFields[] = {"EntryId", "Surname", "Firstname", "PictureClip"};
const char* const callFields[] = {"Number", "ConnectedNumber", "ConnectedSurname", "ConnectedFirstName"};

class HostileCommand : public StoreTest {
protected:
    std::vector<std::string> command(const std::vector<std::string>& arguments) const {
        std::vector<std::string> all = {COMMAND, "--store", file(), "--region", "DE"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return all;
    }

    std::string done(const std::vector<std::string>& arguments, const std::string& input = std::string()) const {
        const Finished finished = runProgram(command(arguments), input);
        EXPECT_EQ(finished.status, 0) << finished.err.substr(0, 1000);
        return finished.out;
    }

    std::vector<Json> listed(const std::string& kind) const {
        std::istringstream lines(done({"--format", "json", "list", kind}));
        std::vector<Json> entries;
        for (std::string line; std::getline(lines, line);) {
            entries.push_back(Json::parse(line));
        }
        return entries;
    }

    /// A call with `text` in each field, which belongs to a party of its own.
    static Json hostileCall(const std::string& kind, const std::string& text, int party) {
        Json call = {{"Kind", kind}, {"TimeDate", "2024-05-01 10:00:" + std::to_string(59 - party)}};
        for (const char* field : partyFields) {
            call[field] = text + field;
        }
        for (const char* field : callFields) {
            call[field] = std::to_string(3000000 + party) + text + field;
        }
        return call;
    }
};

TEST_F(HostileCommand, BringsEachTextBackFromEachFieldOfEachKind) {
    for (const std::string kind : kinds) {
        std::string lines;
        std::vector<Json> calls;
        for (const std::string& text : hostileTexts) {
            calls.push_back(hostileCall(kind, text, static_cast<int>(calls.size())));
            lines += calls.back().dump() + "\n";
        }
        done({"record", "--from", "-"}, lines);
        const std::vector<Json> entries = listed(kind);
        ASSERT_EQ(entries.size(), calls.size());
        for (std::size_t i = 0; i < calls.size(); ++i) {
            SCOPED_TRACE(kind + ": " + testing::PrintToString(hostileTexts[i]));
            for (const char* field : partyFields) {
                EXPECT_TRUE(entries[i][field] == calls[i][field]) << field;
            }
            ASSERT_EQ(entries[i]["LogList"].size(), 1U);
            for (const char* field : callFields) {
                EXPECT_TRUE(entries[i]["LogList"][0][field] == calls[i][field]) << field;
            }
        }
    }
    EXPECT_EQ(listed("all").size(), std::size(kinds) * std::size(hostileTexts));
    EXPECT_EQ(runSql(file(), "pragma integrity_check"), "ok\n");
}

TEST_F(HostileCommand, BringsANameOfTenMegabytesBack) {
    std::string name = "10 MB </Item>&amp;";
    while (name.size() < 10000000) {
        name += "<&\u00e4\x1b\"'" + std::string(200, 'x');
    }
    for (const char* kind : {"missed", "dialled"}) {
        done({"record", "--from", "-"},
             Json{{"Kind", kind}, {"Number", "1"}, {"Surname", name}, {"ConnectedSurname", name}}.dump() + "\n");
        const std::vector<Json> entries = listed(kind);
        ASSERT_EQ(entries.size(), 1U);
        EXPECT_TRUE(entries[0]["Surname"] == name);
        EXPECT_TRUE(entries[0]["LogList"][0]["ConnectedSurname"] == name);
    }
}

TEST_F(HostileCommand, BringsBytesThatAreNotUtf8BackAsXmlAndMarksThemInJson) {
    const std::string bytes = "a\xff\xc0\x80\xed\xa0\x80z\xe2\x82";
    const std::string shown = "a\ufffd\ufffd\ufffd\ufffd\ufffd\ufffdz\ufffd";
    for (const char* kind : kinds) {
        done({"record", kind, "--number", bytes, "--surname", bytes});
        const std::string xml = done({"--format", "xml", "list", kind});
        EXPECT_NE(xml.find("<Surname>" + bytes + "</Surname>"), std::string::npos) << kind;
        EXPECT_NE(xml.find("<Number>" + bytes + "</Number>"), std::string::npos) << kind;
        EXPECT_EQ(listed(kind)[0]["Surname"].get<std::string>().substr(0, 4), shown.substr(0, 4)) << kind;
    }
}

/// Runs a command whose output and errors go to a terminal, and returns what that gets to see.
std::string onTerminal(std::vector<std::string> arguments) {
    std::vector<char*> argv;
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        execv(argv[0], argv.data());
        _exit(127);
    }
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t length = 0; (length = read(terminal, buffer.data(), buffer.size())) > 0;) {
        text.append(buffer.data(), static_cast<std::size_t>(length));
    }
    close(terminal);
    waitpid(child, nullptr, 0);
    return text;
}

/// Expects that nothing in `text` drives a terminal but the ends of its lines.
void expectHarmless(const std::string& text) {
    EXPECT_NE(text, "");
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        ASSERT_TRUE((byte >= 0x20 && byte != 0x7f) || c == '\n' || c == '\r') << testing::PrintToString(text);
    }
    for (const char* mark : {"\u009b", "\u0085", "\u202e", "\u2066", "\u200f", "\u061c", "\xff"}) {
        ASSERT_EQ(text.find(mark), std::string::npos) << testing::PrintToString(text);
    }
}

TEST_F(HostileCommand, NeverDrivesATerminal) {
    std::string all = "\xff";
    for (const std::string& text : hostileTexts) {
        if (text.find('\0') == std::string::npos) {
            all += text;
        }
    }
    const std::vector<std::string> record = {"--show-xml",   "record", "missed",    "--notify",
                                             "--number",     all,      "--surname", all,
                                             "--group-name", all,      "--time",    "2024-05-01 10:00:00"};
    const std::string shown = onTerminal(command(record));
    expectHarmless(shown);
    EXPECT_NE(shown.find("missed entry 1: "), std::string::npos) << shown;
    EXPECT_NE(shown.find("\\x1b[2J"), std::string::npos) << shown;
    EXPECT_NE(shown.find("\\u202egnp.exe"), std::string::npos) << shown;
    for (const char* format : {"table", "json", "xml"}) {
        expectHarmless(onTerminal(command({"--format", format, "list", "missed"})));
    }
    expectHarmless(onTerminal(command({"record", "missed", "--number", "1", "--number-type", all})));
    expectHarmless(onTerminal(command({"list", "missed", "--since", all})));
    expectHarmless(
        onTerminal(command({"--store", file("\x1b[31m") + "/x/" + std::string(300, 'x'), "list", "missed"})));
    expectHarmless(onTerminal(command({"viewed", all})));
    expectHarmless(onTerminal(command({all})));
    expectHarmless(onTerminal(command({"viewed", "1"})));
    expectHarmless(onTerminal(command({"delete", "missed", "1"})));
}

}  // namespace
