#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RunCommand.h"
#include "RunSql.h"

namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

/// The built command on a store of its own, in a place of which no region is known.
class Settings : public ::testing::Test {
protected:
    Finished run(std::vector<std::string> arguments, const std::vector<std::string>& environment = {}) const {
        arguments.insert(arguments.begin(), {COMMAND, "--store", store()});
        arguments.insert(arguments.begin(), environment.begin(), environment.end());
        arguments.insert(arguments.begin(), "/usr/bin/env");
        return runProgram(arguments);
    }

    /// Runs a command that is expected to succeed and returns what it printed.
    std::string done(const std::vector<std::string>& arguments) const {
        const Finished finished = run(arguments);
        EXPECT_EQ(finished.status, 0) << finished.err;
        EXPECT_EQ(finished.err, "");
        return finished.out;
    }

    std::string region() const { return done({"settings", "region"}); }

    std::string store() const { return folder_.file("journal.db"); }
    const TemporaryFolder folder_;
};

std::vector<std::string> dialled(const std::string& number, const std::string& time) {
    return {"record", "dialled", "--number", number, "--time", "2024-05-01 " + time};
}

std::string taken(const std::string& region) {
    return "calljournal: numbers in this store are read as those of " + region +
           "; 'calljournal settings region CODE' changes that\n";
}

TEST_F(Settings, ShowsAllOfThemOrOne) {
    done({"record", "--from", "-"});
    EXPECT_EQ(done({"settings"}), "Name    Value\nregion  (not set)\n");
    EXPECT_EQ(done({"settings", "--format", "json"}), "{\"region\":null}\n");
    EXPECT_EQ(region(), "(not set)\n");
    EXPECT_EQ(done({"settings", "region", "DE"}), "numbers in this store are read as those of DE\n");
    EXPECT_EQ(done({"settings"}), "Name    Value\nregion  DE\n");
    EXPECT_EQ(done({"--format", "json", "settings", "region"}), "{\"region\":\"DE\"}\n");
    EXPECT_EQ(region(), "DE\n");
    EXPECT_EQ(done({"settings", "region", "ZZ"}), "numbers in this store are read as those of no region\n");
    EXPECT_EQ(region(), "ZZ\n");
}

TEST_F(Settings, RefuseWhatIsNoneOfThemAndWhatNoneOfThemIs) {
    const Finished name = run({"settings", "colour"});
    EXPECT_EQ(name.status, 2);
    EXPECT_NE(name.err.find("\"colour\" is not one of region"), std::string::npos) << name.err;
    for (const std::string value : {"Germany", "de", "DEU", "", "\x1b"}) {
        const Finished refused = run({"settings", "region", value});
        EXPECT_EQ(refused.status, 2);
        EXPECT_EQ(refused.err, "calljournal: region: \"" + (value == "\x1b" ? "\\x1b" : value) +
                                   "\" is no region such as DE or GB\n");
        EXPECT_EQ(refused.out, "");
    }
    EXPECT_FALSE(std::filesystem::exists(store()));
}

TEST_F(Settings, JoinThePartiesThatAreOneInTheNewRegion) {
    for (const auto& call : {dialled("030 1234567", "10:00:00"), dialled("+49 30 1234567", "11:00:00"),
                             dialled("030 7654321", "12:00:00"), dialled("0049 30 1234567", "09:00:00")}) {
        done(call);
    }
    EXPECT_EQ(done({"settings", "region", "DE"}),
              "numbers in this store are read as those of DE\n"
              "joined: dialled entry 2: +49 30 1234567, 3 calls, of 3 entries\n");
    EXPECT_EQ(done({"list", "all", "--format", "table"}),
              "Id  Kind     Time                 Number          Calls\n"
              " 3  dialled  2024-05-01 12:00:00  030 7654321         1\n"
              " 2  dialled  2024-05-01 11:00:00  +49 30 1234567      3\n");
}

TEST_F(Settings, ListWhatWasJoinedAsJson) {
    done({"record", "callback", "--number", "030 1234567", "--time", "2024-05-01 09:00:00"});
    done(dialled("030 1234567", "10:00:00"));
    done(dialled("+49 30 1234567", "11:00:00"));
    const std::string joined = done({"settings", "region", "DE", "--format", "json"});
    EXPECT_EQ(joined.substr(0, 52), "{\"region\":\"DE\",\"Joined\":[{\"UniqueId\":\"3\",\"JSGroupBy\"") << joined;
    EXPECT_NE(joined.find(R"("Kind":"dialled","JoinedIds":["2"]}]})"), std::string::npos) << joined;
    EXPECT_EQ(done({"settings", "region", "DE", "--format", "json"}), "{\"region\":\"DE\",\"Joined\":[]}\n");
}

TEST_F(Settings, TakeTheRegionOverWithTheFirstCallAndSayItOnce) {
    const Finished first = run(dialled("030 1234567", "10:00:00"), {"LC_ALL=de_AT.UTF-8", "CALLJOURNAL_REGION=DE"});
    EXPECT_EQ(first.status, 0);
    EXPECT_EQ(first.err, taken("DE"));
    EXPECT_EQ(first.out, "dialled entry 1: 030 1234567, 1 call\n");
    EXPECT_EQ(done(dialled("+49 30 1234567", "11:00:00")), "dialled entry 1: +49 30 1234567, 2 calls\n");
    EXPECT_EQ(region(), "DE\n");
}

TEST_F(Settings, TakeTheRegionOfTheOptionBeforeThatOfTheVariableBeforeThatOfTheLocale) {
    const std::vector<std::string> environment = {"LC_ALL=de_AT.UTF-8", "CALLJOURNAL_REGION=Germany"};
    EXPECT_EQ(run({"--region", "GB", "record", "missed", "--number", "1"}, environment).err, taken("GB"));
    std::filesystem::remove(store());
    EXPECT_EQ(run(dialled("1", "10:00:00"), {"LC_ALL=de_AT.UTF-8", "CALLJOURNAL_REGION="}).err, taken("AT"));
}

TEST_F(Settings, TakeNoRegionOverWithoutACall) {
    const std::vector<std::string> environment = {"CALLJOURNAL_REGION=DE"};
    EXPECT_EQ(run({"record", "--from", "-"}, environment).err, "");
    EXPECT_EQ(run({"list", "all"}, environment).err, "");
    EXPECT_EQ(run({"viewed", "1", "--region", "GB"}).status, 1);
    EXPECT_EQ(region(), "(not set)\n");
}

TEST_F(Settings, JoinPartiesWhereTheRegionIsKnownLater) {
    done(dialled("030 1234567", "10:00:00"));
    done(dialled("+49 30 1234567", "11:00:00"));
    const Finished third = run(dialled("4711", "12:00:00"), {"CALLJOURNAL_REGION=DE"});
    EXPECT_EQ(third.err, taken("DE") + "calljournal: joined: dialled entry 2: +49 30 1234567, 2 calls, of 2 entries\n");
    EXPECT_EQ(third.out, "dialled entry 3: 4711, 1 call\n");
}

TEST_F(Settings, NameTheVariableThatIsNoRegionWhereItIsNeeded) {
    const std::vector<std::string> environment = {"CALLJOURNAL_REGION=Germany"};
    const Finished refused = run(dialled("1", "10:00:00"), environment);
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.err, "calljournal: CALLJOURNAL_REGION: \"Germany\" is no region such as DE or GB\n");
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(run({"list", "all"}, environment).err, "");
    done({"settings", "region", "GB"});
    EXPECT_EQ(run(dialled("1", "10:00:00"), environment).err, "");
}

TEST_F(Settings, LetNoOtherRegionWriteToTheStore) {
    done({"settings", "region", "DE"});
    done({"record", "missed", "--number", "030 1234567", "--time", "2024-05-01 10:00:00"});
    const std::string refusal =
        "calljournal: --region GB: numbers in this store are read as those of DE; leave the option out, or change the "
        "store by 'calljournal settings region GB'\n";
    for (std::vector<std::string> command : {dialled("1", "10:00:00"), {"viewed", "1"}, {"delete", "missed", "1"}}) {
        command.insert(command.end(), {"--region", "GB"});
        const Finished refused = run(command);
        EXPECT_EQ(refused.status, 2) << command[0];
        EXPECT_EQ(refused.err, refusal);
        EXPECT_EQ(refused.out, "");
    }
    const std::vector<std::string> environment = {"LC_ALL=en_US.UTF-8", "CALLJOURNAL_REGION=GB"};
    EXPECT_EQ(run({"viewed", "1"}, environment).out, "seen: missed entry 1: 030 1234567, 1 call\n");
    EXPECT_EQ(run(dialled("+49 30 1234567", "10:00:00"), environment).err, "");
    EXPECT_EQ(done({"viewed", "1", "--region", "DE"}), "seen: missed entry 1: 030 1234567, 1 call\n");
    EXPECT_NE(done({"list", "missed", "--number", "+49301234567", "--region", "GB"}), "");
    EXPECT_EQ(region(), "DE\n");
}

TEST_F(Settings, TakeNoValueBesideAnotherRegion) {
    for (const std::string value : {"DE", "ZZ"}) {
        const Finished refused = run({"settings", "region", value, "--region", "US"});
        EXPECT_EQ(refused.status, 2);
        EXPECT_EQ(refused.err, "calljournal: --region US: the value is " + value + "; leave the option out\n");
        EXPECT_EQ(refused.out, "");
    }
    EXPECT_FALSE(std::filesystem::exists(store()));
    EXPECT_EQ(done({"settings", "region", "DE", "--region", "DE"}), "numbers in this store are read as those of DE\n");
}

TEST_F(Settings, EscapeARegionThatIsNoneInTheStore) {
    done({"settings", "region", "DE"});
    runSql(store(), "update setting set value = char(27) || '['");
    EXPECT_EQ(region(), "\\x1b[\n");
    EXPECT_EQ(done({"settings"}), "Name    Value\nregion  \\x1b[\n");
    EXPECT_EQ(done({"settings", "--format", "json"}), "{\"region\":\"\\u001b[\"}\n");
    EXPECT_EQ(run({"viewed", "1", "--region", "GB"}).err,
              "calljournal: --region GB: numbers in this store are read as those of \\x1b[; leave the option out, or "
              "change the store by 'calljournal settings region GB'\n");
}

/// Runs the command with a library in front of libphonenumber and ICU that ends it where it would use one of them.
Finished runWithoutNumbers(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(),
                     {"/usr/bin/env", "LD_PRELOAD=" NO_NUMBERS, "ASAN_OPTIONS=verify_asan_link_order=0",
                      "LC_ALL=de_DE.UTF-8", "CALLJOURNAL_REGION=DE", COMMAND});
    return runProgram(arguments);
}

TEST_F(Settings, AreReadAsListsAreWithoutWhatKnowsNumbersAndLetters) {
    done({"settings", "region", "DE"});
    done({"record", "missed", "--number", "030 1234567", "--surname", "Ä", "--time", "2024-05-01 10:00:00"});
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{"--version"},
                                               {"--help"},
                                               {"settings"},
                                               {"settings", "region"},
                                               {"list", "all"},
                                               {"list", "missed", "--limit", "20"},
                                               {"viewed", "1"},
                                               {"delete", "missed", "1"}}) {
        std::vector<std::string> arguments = {"--store", store()};
        arguments.insert(arguments.end(), command.begin(), command.end());
        const Finished finished = runWithoutNumbers(arguments);
        EXPECT_EQ(finished.status, 0) << command[0] << finished.err;
        EXPECT_EQ(finished.err, "");
    }
    EXPECT_EQ(runWithoutNumbers({"--store", store(), "list", "all", "--number", "1"}).err, "numbers are used\n");
    EXPECT_EQ(runWithoutNumbers({"--store", store(), "list", "all", "--name", "ä"}).err, "letters are used\n");
}

TEST_F(Settings, SayWhatIsMissingWhereTheProgramIsWithoutWhatItKnowsOfNumbers) {
    done({"record", "--from", "-"});
    std::filesystem::create_directory(folder_.file("bin"));
    const std::string copy = folder_.file("bin/calljournal");
    std::filesystem::copy_file(COMMAND, copy);
    const Finished refused = runProgram(
        {"/usr/bin/env", "LD_LIBRARY_PATH=" LIBRARIES, copy, "--store", store(), "settings", "region", "DE"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "");
    EXPECT_THAT(refused.err, StartsWith("calljournal: what is known of phone numbers cannot be loaded; install the "
                                        "program again: "));
    EXPECT_THAT(refused.err, HasSubstr("/calljournal/numbering-plans.so: cannot open shared object file"));
    EXPECT_EQ(runProgram({"/usr/bin/env", "LD_LIBRARY_PATH=" LIBRARIES, copy, "--store", store(), "settings"}).err, "");
}

}  // namespace
