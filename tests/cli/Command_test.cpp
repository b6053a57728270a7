#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "RunCommand.h"

namespace {

using Json = nlohmann::ordered_json;

/// The built command on a store of its own.
class Command : public ::testing::Test {
protected:
    Finished run(std::vector<std::string> arguments, const std::string& input = std::string()) const {
        arguments.insert(arguments.begin(), {COMMAND, "--store", store()});
        return runProgram(arguments, input);
    }

    /// Runs a command that is expected to succeed and returns what it printed.
    std::string done(const std::vector<std::string>& arguments, const std::string& input = std::string()) const {
        const Finished finished = run(arguments, input);
        EXPECT_EQ(finished.status, 0) << finished.err;
        EXPECT_EQ(finished.err, "");
        return finished.out;
    }

    std::vector<Json> listed(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--format", "json", "list"});
        std::istringstream lines(done(arguments));
        std::vector<Json> entries;
        for (std::string line; std::getline(lines, line);) {
            entries.push_back(Json::parse(line));
        }
        return entries;
    }

    std::string store() const { return folder_.file("journal.db"); }
    const TemporaryFolder folder_;
};

std::vector<std::string> missed(const std::string& number, const std::string& time) {
    return {"record", "missed", "--number", number, "--time", time};
}

TEST_F(Command, RecordsAMissedCallAndListsItAsATable) {
    EXPECT_EQ(done({"record", "missed", "--number", "0301234", "--surname", "Smith & Co", "--firstname", "Ann",
                    "--time", "2024-05-01 10:15:00", "--group-name", "Sales", "--group-number", "600"}),
              "missed entry 1: Ann Smith & Co, 0301234, 1 call\n");
    EXPECT_EQ(done({"--format", "table", "list", "missed"}),
              "   Id  Time                 Name            Number   Calls  Note\n"
              "●   1  2024-05-01 10:15:00  Ann Smith & Co  0301234      1  group Sales (600)\n");
}

TEST_F(Command, ListsTheWholeEntryAsJson) {
    done({"record", "missed", "--number", "0301234", "--surname", "Smith & Co", "--time", "2024-05-01 10:15:00"});
    EXPECT_EQ(
        done({"--format", "json", "list", "missed"}),
        R"({"UniqueId":"1","Surname":"Smith & Co","Viewed":false,"LogList":[{"Number":"0301234","NumberType":"NO_ICON",)"
        R"("ConnectedNumberType":"NO_ICON","TimeDate":"2024-05-01 10:15:00","CompletedElsewhere":false,)"
        R"("TargetLog":"IN_NO_ANSWER","NumberPresentation":"ALLOWED","NamePresentation":"ALLOWED",)"
        R"("DeflectNumberPresentation":"NOT_AVAILABLE","DeflectNumberType":"NO_ICON",)"
        R"("DeflectNamePresentation":"NOT_AVAILABLE","TimeFormat":"FORM_24"}],"Kind":"missed"})"
        "\n");
}

TEST_F(Command, ListsTheWholeEntryAsXml) {
    done({"record", "missed", "--number", "0301234", "--surname", "Smith & Co", "--time", "2024-05-01 10:15:00"});
    EXPECT_EQ(
        done({"--format", "xml", "list", "missed"}),
        "<Entry><UniqueId>1</UniqueId><Surname>Smith &amp; Co</Surname><Viewed>False</Viewed><LogList><Item>"
        "<Number>0301234</Number><NumberType>NO_ICON</NumberType><ConnectedNumberType>NO_ICON</ConnectedNumberType>"
        "<TimeDate>2024-05-01 10:15:00</TimeDate><CompletedElsewhere>False</CompletedElsewhere>"
        "<TargetLog>IN_NO_ANSWER</TargetLog><NumberPresentation>ALLOWED</NumberPresentation>"
        "<NamePresentation>ALLOWED</NamePresentation>"
        "<DeflectNumberPresentation>NOT_AVAILABLE</DeflectNumberPresentation>"
        "<DeflectNumberType>NO_ICON</DeflectNumberType>"
        "<DeflectNamePresentation>NOT_AVAILABLE</DeflectNamePresentation><TimeFormat>FORM_24</TimeFormat>"
        "</Item></LogList></Entry>\n");
}

TEST_F(Command, PutsASecondCallOfAPartyInFrontOfItsEntryAndMarksItUnseen) {
    done(missed("0301", "2024-05-01 10:00:00"));
    done(missed("0302", "2024-05-01 11:00:00"));
    EXPECT_EQ(done({"viewed", "1"}), "seen: missed entry 1: 0301, 1 call\n");
    EXPECT_EQ(done(missed("0301", "2024-05-01 12:00:00")), "missed entry 1: 0301, 2 calls\n");
    const std::vector<Json> entries = listed({"missed"});
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0]["UniqueId"], "1");
    EXPECT_EQ(entries[0]["Viewed"], false);
    EXPECT_EQ(entries[0]["LogList"][0]["TimeDate"], "2024-05-01 12:00:00");
    EXPECT_EQ(entries[0]["LogList"][1]["TimeDate"], "2024-05-01 10:00:00");
}

TEST_F(Command, KeepsTheTenNewestCallsOfAParty) {
    for (int i = 0; i < 12; ++i) {
        done(missed("0301", "2024-05-01 10:00:" + std::to_string(10 + i)));
    }
    const std::vector<Json> entries = listed({"missed"});
    ASSERT_EQ(entries.size(), 1u);
    ASSERT_EQ(entries[0]["LogList"].size(), 10u);
    EXPECT_EQ(entries[0]["LogList"][0]["TimeDate"], "2024-05-01 10:00:21");
    EXPECT_EQ(entries[0]["LogList"][9]["TimeDate"], "2024-05-01 10:00:12");
}

TEST_F(Command, KeepsEachCallWithAWithheldNumberByItself) {
    done({"record", "missed", "--withheld", "--time", "2024-05-01 10:00:00"});
    done({"record", "missed", "--withheld", "--time", "2024-05-01 11:00:00"});
    EXPECT_EQ(done({"--format", "table", "list", "missed"}),
              "   Id  Time                 Number      Calls\n"
              "●   2  2024-05-01 11:00:00  (withheld)      1\n"
              "●   1  2024-05-01 10:00:00  (withheld)      1\n");
}

TEST_F(Command, TellsObserversTheEntryAndTheNewCount) {
    done(missed("0301", "2024-05-01 10:00:00"));
    const std::string body =
        "<Viewed>False</Viewed><LogList><Item><Number>0302</Number><NumberType>NO_ICON</NumberType>"
        "<ConnectedNumberType>NO_ICON</ConnectedNumberType><TimeDate>2024-05-01 11:00:00</TimeDate>"
        "<CompletedElsewhere>False</CompletedElsewhere><TargetLog>IN_NO_ANSWER</TargetLog>"
        "<NumberPresentation>ALLOWED</NumberPresentation><NamePresentation>NOT_AVAILABLE</NamePresentation>"
        "<DeflectNumberPresentation>NOT_AVAILABLE</DeflectNumberPresentation>"
        "<DeflectNumberType>NO_ICON</DeflectNumberType>"
        "<DeflectNamePresentation>NOT_AVAILABLE</DeflectNamePresentation><TimeFormat>FORM_24</TimeFormat>"
        "</Item></LogList>";
    const std::string header = "<?xml version=\"1.0\" encoding=\"utf-8\"?>";
    EXPECT_EQ(done({"record", "missed", "--number", "0302", "--time", "2024-05-01 11:00:00", "--notify"}),
              header + "<Method>missedCallsUpdate</Method><UniqueId>2</UniqueId>" + body +
                  "<ActionType>0</ActionType>\n" + header +
                  "<Method>missedCallsCountUpdate</Method><Value>2</Value>\n"
                  "missed entry 2: 0302, 1 call\n");
    const std::string deleted = done({"delete", "missed", "2", "--notify"});
    EXPECT_EQ(deleted, header + "<Method>missedCallsUpdate</Method><UniqueId>2</UniqueId>" + body +
                           "<UniqueIdToDelete>2</UniqueIdToDelete><ActionType>3</ActionType>\n" + header +
                           "<Method>missedCallsCountUpdate</Method><Value>1</Value>\n"
                           "deleted: missed entry 2: 0302, 1 call\n");
}

TEST_F(Command, ShowsEachRequestAndReplyWhenAsked) {
    const Finished finished = run({"--show-xml", "record", "missed", "--number", "1", "--time", "2024-05-01 10:00:00"});
    EXPECT_EQ(finished.status, 0);
    EXPECT_NE(finished.err.find("> <?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"CallLogMissedCalls\">"
                                "<ReasonForMessage>write_request</ReasonForMessage><Entry><Viewed>False</Viewed>"),
              std::string::npos);
    EXPECT_NE(finished.err.find("<Result>ok</Result><UniqueId>1</UniqueId></Schema>"), std::string::npos);
}

TEST_F(Command, BringsEveryTextBackAsItWasGiven) {
    const std::string hostile = "<Item>&amp;lt;</Item>'\"& ä %n </Entry> &amp;amp;";
    for (const char* kind : {"missed", "dialled", "received", "forwarded"}) {
        Json call = {{"Kind", kind}, {"Number", hostile}, {"TimeDate", "2024-05-01 10:00:00"}};
        for (const char* field : {"Surname", "Firstname", "Picture", "ConnectedNumber", "ConnectedSurname"}) {
            call[field] = hostile + field;
        }
        done({"record", "--from", "-"}, call.dump() + "\n");
        const std::vector<Json> entries = listed({kind});
        ASSERT_EQ(entries.size(), 1u) << kind;
        EXPECT_EQ(entries[0]["Surname"], hostile + "Surname") << kind;
        EXPECT_EQ(entries[0]["Firstname"], hostile + "Firstname") << kind;
        EXPECT_EQ(entries[0]["PictureClip"], hostile + "Picture") << kind;
        EXPECT_EQ(entries[0]["LogList"][0]["Number"], hostile) << kind;
        EXPECT_EQ(entries[0]["LogList"][0]["ConnectedNumber"], hostile + "ConnectedNumber") << kind;
        EXPECT_EQ(entries[0]["LogList"][0]["ConnectedSurname"], hostile + "ConnectedSurname") << kind;
    }
}

TEST_F(Command, BringsTextsOfAMegabyteBackForEveryKind) {
    for (const char* kind : {"missed", "dialled", "received", "forwarded"}) {
        Json call = {{"Kind", kind}, {"TimeDate", "2024-05-01 10:00:00"}};
        int number = 0;
        for (const char* field : {"EntryId", "Surname", "Firstname", "PictureClip", "Number", "ConnectedNumber",
                                  "ConnectedSurname", "ConnectedFirstName"}) {
            call[field] =
                std::to_string(number++) + "</Item></LogList></Entry>&amp;lt;" + std::string(1 << 20, 'x') + "<&";
        }
        done({"record", "--from", "-"}, call.dump() + "\n");
        const std::vector<Json> entries = listed({kind});
        ASSERT_EQ(entries.size(), 1u) << kind;
        for (const char* field : {"EntryId", "Surname", "Firstname", "PictureClip"}) {
            EXPECT_TRUE(entries[0][field] == call[field]) << kind << field;
        }
        for (const char* field : {"Number", "ConnectedNumber", "ConnectedSurname", "ConnectedFirstName"}) {
            EXPECT_TRUE(entries[0]["LogList"][0][field] == call[field]) << kind << field;
        }
    }
}

TEST_F(Command, RecordsAFileOfCallsAsLinesOrAsAnArray) {
    const std::string lines =
        "{\"Kind\":\"missed\",\"Number\":\"1\",\"TimeDate\":\"2024-05-01 10:00:00\"}\n\n"
        "{\"Kind\":\"dialled\",\"Number\":\"2\",\"TimeDate\":\"2024-05-01 10:00:00\"}\n";
    EXPECT_EQ(done({"record", "--from", folder_.write("calls", lines)}),
              "missed entry 1: 1, 1 call\ndialled entry 2: 2, 1 call\n");
    EXPECT_EQ(done({"record", "missed", "--from", "-"}, R"([{"Number":"1"},{"Number":"3"},{"Withheld":true}])"),
              "3 missed calls recorded in 3 entries\n");
    EXPECT_EQ(listed({"all"}).size(), 4u);
}

TEST_F(Command, WritesNothingOfAFileWithOneBadCall) {
    const Finished finished =
        run({"record", "--from", "-"}, "{\"Kind\":\"missed\",\"Number\":\"1\"}\n{\"Kind\":\"lost\"}\n");
    EXPECT_EQ(finished.status, 2);
    EXPECT_EQ(
        finished.err,
        "calljournal: standard input: line 2: \"lost\" is not one of missed, dialled, received, forwarded, callback\n");
    EXPECT_FALSE(std::filesystem::exists(store()));
}

TEST_F(Command, RefusesACallThatMakesNoSenseAndNamesWhatIsAccepted) {
    const struct {
        std::vector<std::string> arguments;
        const char* sentence;
    } cases[] = {
        {{"record", "missed"}, "a call has either a number or is withheld"},
        {{"record", "missed", "--number", "1", "--withheld"}, "a call has either a number or is withheld"},
        {{"record", "lost", "--number", "1"}, "\"lost\" is not one of missed, dialled, received, forwarded, callback"},
        {{"record", "--number", "1"}, "say which kind of call: missed, dialled, received, forwarded, callback"},
        {{"record", "missed", "--number", "1", "--number-type", "FAX"},
         "NumberType: \"FAX\" is not one of NO_ICON, PRIVATE, BUSINESS1, BUSINESS2, MOBILE"},
        {{"record", "missed", "--number", "1", "--time", "yesterday"},
         "TimeDate: \"yesterday\" is not a time of the form YYYY-MM-DD HH:MM:SS"},
        {{"record", "missed", "--number", "1", "--duration", "1"}, "Duration: a missed call has no such element"},
        {{"list", "missed", "--since", "yesterday"}, "is not a time of the form"},
        {{"list", "lost"}, "\"lost\" is not one of missed, dialled, received, forwarded, callback, all"},
        {{"list"}, "kind is required"},
        {{"--format", "csv", "list", "missed"}, "csv not in"},
        {{}, "A subcommand is required"},
    };
    for (const auto& one : cases) {
        const Finished finished = run(one.arguments);
        EXPECT_EQ(finished.status, 2) << one.sentence;
        EXPECT_NE(finished.err.find(one.sentence), std::string::npos) << finished.err;
        EXPECT_EQ(finished.out, "");
    }
    EXPECT_FALSE(std::filesystem::exists(store()));
}

TEST_F(Command, MakesNoStoreToReadOrChangeWhatIsNotThere) {
    const std::string missing = folder_.file("no/folder/journal.db");
    const std::string sentence = "there is no store at " + missing + "; record a call or name another with --store\n";
    const std::vector<std::string> commands[] = {{"list", "all"}, {"list", "missed", "--follow"},
                                                 {"viewed", "1"}, {"delete", "missed", "1"},
                                                 {"settings"},    {"settings", "region"}};
    for (std::vector<std::string> arguments : commands) {
        SCOPED_TRACE(arguments[0]);
        arguments.insert(arguments.begin(), {COMMAND, "--store", missing});
        const Finished finished = runProgram(arguments);
        EXPECT_EQ(finished.status, 1);
        EXPECT_EQ(finished.err, "calljournal: " + sentence);
        EXPECT_EQ(finished.out, "");
        arguments.erase(arguments.begin() + 1, arguments.begin() + 3);
        arguments.insert(arguments.begin(), {"/usr/bin/env", "CALLJOURNAL_STORE=sqlite3://" + missing});
        EXPECT_EQ(runProgram(arguments).err, "calljournal: CALLJOURNAL_STORE: " + sentence);
    }
    EXPECT_FALSE(std::filesystem::exists(folder_.file("no")));
    const std::string empty = folder_.write("empty", "");
    EXPECT_EQ(runProgram({COMMAND, "--store", empty, "list", "all"}).status, 1);
    EXPECT_EQ(readFile(empty), "");
    EXPECT_EQ(runProgram({COMMAND, "--store", missing, "settings", "region", "DE"}).status, 0);
    EXPECT_EQ(runProgram({COMMAND, "--store", missing, "settings", "region"}).out, "DE\n");
}

TEST_F(Command, NamesTheVariableThatIsWrong) {
    const auto saidOf = [&](std::vector<std::string> words) {
        words.insert(words.begin(), "/usr/bin/env");
        return runProgram(words).err;
    };
    const std::string hint = "\nRun with --help for more information.\n";
    EXPECT_EQ(saidOf({"CALLJOURNAL_LOG=12", COMMAND, "list", "all"}),
              "CALLJOURNAL_LOG: Value 12 not in range 0 to 9" + hint);
    EXPECT_EQ(saidOf({"CALLJOURNAL_LOG=3", COMMAND, "list", "all", "--log=12"}),
              "--log: Value 12 not in range 0 to 9" + hint);
    EXPECT_EQ(
        saidOf({"CALLJOURNAL_STORE=bad://x", COMMAND, "list", "all"}),
        "calljournal: CALLJOURNAL_STORE: store bad://x: only SQLite files can be used; write sqlite3://PATH or a plain "
        "path\n");
    EXPECT_EQ(saidOf({"CALLJOURNAL_STORE=/", COMMAND, "record", "missed", "--withheld"}),
              "calljournal: CALLJOURNAL_STORE: store /: it is a directory; name a file in it\n");
    EXPECT_EQ(saidOf({"CALLJOURNAL_STORE=bad://x", COMMAND, "list", "all", "--store", "/"}),
              "calljournal: store /: it is a directory; name a file in it\n");
    const std::string advice = " (set TMPDIR to another folder): ";
    EXPECT_EQ(saidOf({"TMPDIR=/no/folder", COMMAND, "import", "x.csv"}),
              "calljournal: no temporary file can be made in /no/folder" + advice + "No such file or directory\n");
    EXPECT_EQ(saidOf({"TMPDIR=/dev/null", COMMAND, "convert", "x.csv"}),
              "calljournal: no temporary file can be made in /dev/null" + advice + "Not a directory\n");
}

TEST_F(Command, TakesAnEmptyStoreForWrongUsage) {
    const Finished finished = runProgram({COMMAND, "--store", "", "list", "all"});
    EXPECT_EQ(finished.status, 2);
    EXPECT_EQ(finished.err, "--store: it names no store\nRun with --help for more information.\n");
}

TEST_F(Command, SaysThatThereIsNotEnoughMemory) {
    const Finished finished = runProgram(
        {"/bin/bash", "-c", "ulimit -v 400000; exec " COMMAND " decode missed < <(head -c 200000000 /dev/zero)"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.err,
              "calljournal: there is not enough memory for this; close other programs, or give it less at once\n");
}

TEST_F(Command, SaysThatAnEntryIsNotThere) {
    done(missed("1", "2024-05-01 10:00:00"));
    const Finished finished = run({"viewed", "7"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.err, "calljournal: there is no missed entry with the id \"7\"\n");
}

TEST_F(Command, NamesTheStoreThatCannotBeOpened) {
    const std::string text = folder_.write("text", std::string(5000, 'x'));
    const Finished finished = runProgram({COMMAND, "--store", text, "list", "missed"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_NE(finished.err.find(text), std::string::npos) << finished.err;
    EXPECT_EQ(readFile(text), std::string(5000, 'x'));
}

TEST_F(Command, FiltersAListInEveryFormat) {
    done({"record", "--from", "-"},
         R"([{"Kind":"missed","Number":"1","Surname":"Müller","TimeDate":"2024-05-01 10:00:00"},)"
         R"({"Kind":"missed","Number":"2","Surname":"Smith","TimeDate":"2024-05-02 10:00:00"},)"
         R"({"Kind":"missed","Number":"3","Surname":"Smithers","TimeDate":"2024-05-03 10:00:00"}])");
    const auto numbers = [&](const std::vector<std::string>& arguments) {
        std::string text;
        for (const Json& entry : listed(arguments)) {
            text += entry["LogList"][0]["Number"].get<std::string>();
        }
        return text;
    };
    EXPECT_EQ(numbers({"missed"}), "321");
    EXPECT_EQ(numbers({"missed", "--since", "2024-05-02 10:00:00"}), "32");
    EXPECT_EQ(numbers({"missed", "--until", "2024-05-02"}), "21");
    EXPECT_EQ(numbers({"missed", "--name", "smith"}), "32");
    EXPECT_EQ(numbers({"missed", "--number", "1"}), "1");
    EXPECT_EQ(numbers({"all", "--limit", "2"}), "32");
}

TEST_F(Command, ListsAllWithTheLimitZeroAndTakesNoneThatIsNoCount) {
    done(missed("1", "2024-05-01 10:00:00"));
    done(missed("2", "2024-05-01 11:00:00"));
    EXPECT_EQ(listed({"all", "--limit", "0"}).size(), 2u);
    for (const std::string limit : {"-1", "99999999999999999999", "4294967297", "-99999999999999999999", "two"}) {
        const Finished refused = run({"list", "all", "--limit", limit});
        EXPECT_EQ(refused.status, 2) << limit;
        EXPECT_NE(refused.err.find("--limit: Value " + limit + " not in range 0 to 1000000000\n"), std::string::npos)
            << refused.err;
        EXPECT_EQ(refused.out, "");
    }
}

TEST_F(Command, EncodesAndDecodesAnEntry) {
    const std::string body =
        done({"encode", "missed"}, R"({"UniqueId":"1:2","Surname":"A<B","LogList":[{"Number":"1"}]})");
    EXPECT_EQ(body.substr(0, 85),
              "<UniqueId>12</UniqueId><Surname>A&lt;B</Surname><Viewed>False</Viewed><LogList><Item>");
    const Json entry = Json::parse(done({"decode", "missed"}, body));
    EXPECT_EQ(entry["UniqueId"], "12");
    EXPECT_EQ(entry["Surname"], "A<B");
    EXPECT_EQ(entry["LogList"][0]["Number"], "1");
}

TEST_F(Command, DecodesWhatItCanOfADamagedEntryAndNamesThePlace) {
    const Finished finished = run({"decode", "missed"}, "<Surname>Smith</Surname><LogList><Item><Number>1</Number>");
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(Json::parse(finished.out)["Surname"], "Smith");
    EXPECT_EQ(finished.err, "calljournal: standard input: line 1, column 34: <Item> is never closed\n");
}

TEST_F(Command, RefusesToEncodeWhatIsNoEntry) {
    const Finished cut = run({"encode", "missed"}, "{");
    EXPECT_EQ(cut.status, 2);
    EXPECT_EQ(cut.err.find("calljournal: standard input: line 1, column 2: syntax error while parsing object key"), 0u)
        << cut.err;
    EXPECT_EQ(run({"encode", "missed"}, R"({"Viewed":1})").err,
              "calljournal: standard input: Viewed: 1 is neither true nor false\n");
}

TEST_F(Command, SaysWhyAnInputCannotBeRead) {
    const auto saidOf = [&](const std::string& arguments) {
        return runProgram({"/bin/bash", "-c", "exec " COMMAND " --store " + store() + ' ' + arguments}).err;
    };
    EXPECT_EQ(saidOf("encode missed </proc/self"), "calljournal: standard input: cannot be read (Is a directory)\n");
    EXPECT_EQ(saidOf("decode missed <&-"), "calljournal: standard input: cannot be read (Bad file descriptor)\n");
    EXPECT_EQ(saidOf("record --from /proc/self"), "calljournal: /proc/self: cannot be read (Is a directory)\n");
    EXPECT_EQ(saidOf("record --from no/file"), "calljournal: no/file: cannot be read (No such file or directory)\n");
    EXPECT_EQ(saidOf("check /proc/self"), "calljournal: /proc/self: cannot be read (Is a directory)\n");
    EXPECT_EQ(saidOf("check --diff no/file /proc/self"),
              "calljournal: no/file: cannot be read (No such file or directory)\n");
}

TEST_F(Command, EndsAtALimitWhereAnInputHasNoEnd) {
    const std::string limit = "has more than 256 MiB, which is as much as is read\n";
    EXPECT_EQ(runProgram({"/bin/bash", "-c", "exec " COMMAND " decode missed </dev/zero"}).err,
              "calljournal: standard input: " + limit);
    EXPECT_EQ(run({"record", "--from", "/dev/zero"}).err, "calljournal: /dev/zero: " + limit);
    EXPECT_EQ(run({"convert", "/dev/zero"}).err, "calljournal: /dev/zero: " + limit);
    EXPECT_EQ(run({"--format", "json", "import", "/dev/zero"}).err, "/dev/zero: " + limit);
}

TEST_F(Command, FollowsWhatAnotherProcessChanges) {
    done(missed("0301", "2024-05-01 10:00:00"));
    Finished followed;
    std::thread following([&] {
        followed = runProgram({"/usr/bin/timeout", "--preserve-status", "-s", "INT", "3", COMMAND, "--store", store(),
                               "--format", "table", "list", "missed", "--follow"});
    });
    // Each change gets a look of its own: the follower looks five times a second.
    const auto pause = [] { std::this_thread::sleep_for(std::chrono::milliseconds(600)); };
    pause();
    done(missed("0302", "2024-05-01 11:00:00"));
    pause();
    done({"viewed", "1"});
    pause();
    done({"delete", "missed", "2"});
    following.join();
    EXPECT_EQ(followed.status, 0);
    for (const char* piece : {"●   1  2024-05-01 10:00:00", "added: missed entry 2: 0302, 1 call\n<?xml",
                              "<ActionType>0</ActionType>\n", "seen: missed entry 1: 0301, 1 call\n",
                              "<ActionType>2</ActionType>\n", "deleted: missed entry 2: 0302, 1 call\n",
                              "<UniqueIdToDelete>2</UniqueIdToDelete><ActionType>3</ActionType>\n"}) {
        EXPECT_NE(followed.out.find(piece), std::string::npos) << piece << followed.out;
    }
}

TEST_F(Command, KeepsCallBacks) {
    EXPECT_EQ(done({"record", "callback", "--number", "0301", "--surname", "Smith", "--time", "2024-05-01 10:00:00",
                    "--call-back-type", "BUSY", "--call-back-state", "ACTIVE"}),
              "callback entry 1: Smith, 0301, 1 call\n");
    EXPECT_EQ(done({"--format", "table", "list", "callback"}),
              "Id  Time                 Name   Number  Calls  Note\n"
              " 1  2024-05-01 10:00:00  Smith  0301        1  BUSY, ACTIVE\n");
    EXPECT_EQ(done({"--format", "json", "list", "all"}),
              R"({"UniqueId":"1","Surname":"Smith","CallBackNumber":"0301","NumberType":"NO_ICON",)"
              R"("TimeDate":"2024-05-01 10:00:00","CallBackType":"BUSY","CallBackState":"ACTIVE","Kind":"callback"})"
              "\n");
    EXPECT_EQ(
        done({"--format", "xml", "list", "callback"}),
        "<Entry><UniqueId>1</UniqueId><Surname>Smith</Surname><CallBackNumber>0301</CallBackNumber>"
        "<NumberType>NO_ICON</NumberType><TimeDate>2024-05-01 10:00:00</TimeDate><CallBackType>BUSY</CallBackType>"
        "<CallBackState>ACTIVE</CallBackState></Entry>\n");
    EXPECT_EQ(run({"record", "callback", "--number", "1", "--call-back-type", "LATER"}).err,
              "calljournal: CallBackType: \"LATER\" is not one of NOTYPE, NOREPLY, BUSY\n");
    EXPECT_EQ(run({"record", "callback"}).err, "calljournal: a call-back needs a number\n");
    EXPECT_EQ(done({"delete", "callback", "1"}), "deleted: callback entry 1: Smith, 0301, 1 call\n");
    EXPECT_EQ(done({"--format", "table", "list", "callback"}), "no callback calls\n");
}

TEST_F(Command, ThePartyIsTheSameHoweverItsNumberIsSignalled) {
    done({"settings", "region", "GB"});
    done({"--region", "GB", "record", "missed", "--number", "020 7946 0123"});
    EXPECT_EQ(done({"--region", "GB", "record", "missed", "--number", "+44 20 7946 0123"}),
              "missed entry 1: +44 20 7946 0123, 2 calls\n");
    EXPECT_EQ(done({"record", "missed", "--number", "0044 20 7946 0123"}),
              "missed entry 1: 0044 20 7946 0123, 3 calls\n");
    EXPECT_EQ(listed({"missed", "--region", "GB", "--number", "(020) 79460123"}).size(), 1u);
    EXPECT_EQ(run({"--region", "Germany", "list", "missed"}).status, 2);
}

TEST_F(Command, FitsALongListIntoTheColumnsOfItsFirstThousandEntries) {
    std::string calls;
    for (int i = 1; i <= 1001; ++i) {
        const std::string number = std::to_string(i);
        const std::string minute = std::to_string(100 + i % 60).substr(1);
        const std::string hour = std::to_string(100 + i / 60).substr(1);
        calls += R"({"Number":")" + number + R"(","TimeDate":"2024-05-01 )" + hour + ":" + minute + ":00\"}\n";
    }
    done({"record", "missed", "--from", "-"}, calls);
    done({"record", "missed", "--number", "0", "--surname", "Schwarzenbach", "--group-name", "Sales & Support",
          "--time", "2024-04-01 10:00:00"});
    std::vector<std::string> lines;
    std::istringstream table(done({"--format", "table", "list", "missed"}));
    for (std::string line; std::getline(table, line);) {
        lines.push_back(line);
    }
    ASSERT_EQ(lines.size(), 1003u);
    EXPECT_EQ(lines[0], "     Id  Time                 Name    Number  Calls  Duration  Note");
    EXPECT_EQ(lines[1], "●  1001  2024-05-01 16:41:00          1001        1");
    EXPECT_EQ(lines[1002], "●  1002  2024-04-01 10:00:00  Schwa…  0           1            group…");
    EXPECT_EQ(done({"--format", "table", "list", "missed", "--limit", "1"}),
              "     Id  Time                 Number  Calls\n"
              "●  1001  2024-05-01 16:41:00  1001        1\n");
}

TEST_F(Command, LosesNoCallOfOnePartyWhenTwoProcessesRecordAtOnce) {
    const auto record = [&](int second) {
        for (int i = 0; i < 5; ++i) {
            done(missed("0301", "2024-05-01 10:0" + std::to_string(i) + ":" + std::to_string(second)));
        }
    };
    std::thread first([&] { record(10); });
    std::thread second([&] { record(20); });
    first.join();
    second.join();
    const std::vector<Json> entries = listed({"missed"});
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0]["LogList"].size(), 10u);
}

TEST_F(Command, TellsItsVersionAndHelps) {
    EXPECT_EQ(runProgram({COMMAND, "--version"}).out, "calljournal 1.0.0\n");
    const Finished help = runProgram({COMMAND, "--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* word : {"record", "list", "viewed", "delete", "encode", "decode", "demo", "--store", "--log"}) {
        EXPECT_NE(help.out.find(word), std::string::npos) << word;
    }
}

TEST_F(Command, ShowsLogLinesOnATerminalWithoutWhatDrivesIt) {
    const std::string line = COMMAND " --log 6 --store " + store() + " record missed --number 1 --surname 'a\u202eb'";
    const std::string shown = runProgram({"script", "-qec", line, "/dev/null"}).out;
    EXPECT_NE(shown.find("<Surname>a\\u202eb</Surname>"), std::string::npos) << shown;
    EXPECT_EQ(shown.find("\u202e"), std::string::npos) << shown;
}

const std::string drivingText = "a\x1b[2J\x7f\u009b31m\u00ad\u202e\u200b\U000e0041\xff";
const std::string shownText = R"(a\x1b[2J\x7f\x9b31m\u00ad\u202e\u200b\U000e0041\xff)";

TEST_F(Command, ShowsLogLinesInAFileWithoutWhatDrivesATerminal) {
    const Finished finished =
        run({"--log", "6", "record", "missed", "--number", "1", "--surname", drivingText, "--show-xml"});
    const std::string end = "</Surname>";
    EXPECT_NE(finished.err.find(shownText.substr(5) + end), std::string::npos) << finished.err;
    // Requests and replies are for programs, too.
    EXPECT_NE(finished.err.find(drivingText.substr(2) + end), std::string::npos) << finished.err;
}

TEST_F(Command, ShowsMessagesInAFileWithoutWhatDrivesATerminal) {
    done(missed("1", "2024-05-01 10:00:00"));
    EXPECT_EQ(run({"check", drivingText + "\n"}).err,
              "calljournal: " + shownText + "\\n: cannot be read (No such file or directory)\n");
    EXPECT_EQ(run({"import", drivingText}).err, shownText + ": CSV_FILE_ERROR (6): No such file or directory\n");
    for (const auto& arguments : {std::vector<std::string>{"viewed", drivingText},
                                  {"list", "missed", "--since", drivingText},
                                  {"convert", drivingText},
                                  {"encode", drivingText}}) {
        const Finished finished = run(arguments);
        EXPECT_NE(finished.status, 0) << arguments[0];
        EXPECT_NE(finished.err.find(R"([2J\x7f\x9b31m)"), std::string::npos) << finished.err;
        EXPECT_EQ(finished.err.find_first_of("\x1b\x7f\x9b\xff"), std::string::npos) << finished.err;
    }
}

TEST_F(Command, WritesJsonThatDrivesNoTerminalAndReadsItBack) {
    const std::string name = drivingText.substr(0, drivingText.size() - 1);
    const std::string inJson = R"("a\u001b[2J\u007f\u009b31m\u00ad\u202e\u200b\udb40\udc41")";
    done({"record", "missed", "--number", "1", "--surname", name, "--time", "2024-05-01 10:00:00"});
    const std::string json = done({"--format", "json", "list", "missed"});
    EXPECT_NE(json.find("\"Surname\":" + inJson), std::string::npos) << json;

    const std::string entry = R"({"Surname":)" + inJson + '}';
    EXPECT_EQ(done({"encode", "missed"}, entry), done({"encode", "missed"}, Json{{"Surname", name}}.dump()));
    done({"record", "missed", "--from", "-"}, R"({"Number":"2","Surname":)" + inJson + '}');
    EXPECT_EQ(listed({"missed"})[0]["Surname"], name);
    EXPECT_NE(done({"--format", "xml", "list", "missed"}).find("<Surname>" + name + "</Surname>"), std::string::npos);
}

TEST_F(Command, ShowsInTablesWhatNobodySees) {
    done({"record", "missed", "--number", "1", "--surname", "Ann\u200b\u2060"});
    EXPECT_NE(done({"--format", "table", "list", "missed"}).find(R"(Ann\u200b\u2060)"), std::string::npos);
}

TEST_F(Command, TheTourShowsEachStep) {
    const Finished tour = runProgram({COMMAND, "demo"});
    EXPECT_EQ(tour.status, 0) << tour.err;
    for (const char* step :
         {"64 missed calls recorded in", "$ calljournal list missed", "missedCallsUpdate",
          "<Method>missedCallsCountUpdate</Method>", "<Method>dialledCallsUpdate</Method>",
          "<Method>receivedCallsUpdate</Method>", "<Method>forwardedCallsUpdate</Method>",
          "Anneliese Schäfer, +49 221 998877, 2 calls", "callback entry", "deleted: missed entry 2",
          "--surname 'O'\\''Brien'", "$ calljournal import --convert examples/contacts/refused-web-export.csv"}) {
        EXPECT_NE(tour.out.find(step), std::string::npos) << step << tour.out;
    }
}

}  // namespace
