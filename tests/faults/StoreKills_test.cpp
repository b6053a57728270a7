#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <thread>

#include "KilledCommand.h"
#include "RunCommand.h"
#include "StoreTest.h"
#include "TestKeys.h"

namespace {

using Clock = std::chrono::steady_clock;
using Json = nlohmann::json;
using std::chrono::microseconds;

constexpr unsigned seed = 20250601;

/// How many processes each test kills; more where somebody runs them for long.
int killCount() {
    const char* count = std::getenv("CALLJOURNAL_KILLS");
    return count == nullptr ? 10 : std::atoi(count);
}

std::string numberOf(int call) {
    return std::to_string(5000000 + call);
}

/// Long enough for several pages, so that there would be something to tear.
std::string surnameOf(int call) {
    return "call " + std::to_string(call) + " <&> " +
           std::string(static_cast<std::size_t>(100 + call * 37 % 9000), 'x') + " end";
}

/// The real command on a store, killed again and again.
class KilledCommands : public StoreTest {
protected:
    std::vector<std::string> command(const std::vector<std::string>& arguments) const {
        std::vector<std::string> all = {COMMAND, "--store", file(), "--region", "DE"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return all;
    }

    std::vector<std::string> recordOne(int call) const {
        return command({"record", "missed", "--number", numberOf(call), "--surname", surnameOf(call)});
    }

    /// Calls `first` to `first` + `count` from a file, which are one piece of work.
    std::vector<std::string> recordMany(int first, int count) const {
        std::string lines;
        for (int call = first; call < first + count; ++call) {
            lines += Json{{"Kind", "missed"}, {"Number", numberOf(call)}, {"Surname", surnameOf(call)}}.dump() + "\n";
        }
        writeFile(file("calls"), lines);
        return command({"record", "--from", file("calls")});
    }

    /// The calls that are in the store. Each is whole, and is there once.
    std::set<int> storedCalls() const {
        const Finished list = runProgram(command({"--format", "json", "list", "missed"}));
        EXPECT_EQ(list.status, 0) << list.err;
        std::set<int> calls;
        std::istringstream lines(list.out);
        for (std::string line; std::getline(lines, line);) {
            const Json entry = Json::parse(line);
            const int call = std::stoi(entry["LogList"][0]["Number"].get<std::string>()) - 5000000;
            EXPECT_TRUE(entry["Surname"] == surnameOf(call)) << call;
            EXPECT_EQ(entry["LogList"].size(), 1U);
            EXPECT_TRUE(calls.insert(call).second) << call;
        }
        return calls;
    }

    /// How long one command takes here and now.
    microseconds usualTime(const std::vector<std::string>& arguments) const {
        const Clock::time_point begin = Clock::now();
        EXPECT_EQ(runProgram(arguments).status, 0);
        return std::chrono::duration_cast<microseconds>(Clock::now() - begin);
    }
};

TEST_F(KilledCommands, LoseNoCallThatTheyAcknowledged) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    constexpr int batch = 12;
    const microseconds timeOfOne = usualTime(recordOne(0));
    const microseconds timeOfMany = usualTime(recordMany(1, batch));
    std::set<int> acknowledged = storedCalls();
    ASSERT_EQ(acknowledged.size(), 1U + batch);

    int kills = 0;
    for (int next = 1 + batch; kills < killCount();) {
        const int count = random() % 4 == 0 ? batch : 1;
        const microseconds time = count == 1 ? timeOfOne : timeOfMany;
        const microseconds delay(static_cast<long>(random() % static_cast<unsigned>(time.count() + 1)));
        const KilledRun run = runAndKill(count == 1 ? recordOne(next) : recordMany(next, count), delay);
        kills += run.wasKilled ? 1 : 0;
        const bool isAcknowledged = !run.out.empty() && run.out.back() == '\n';
        ASSERT_TRUE(run.wasKilled || isAcknowledged);
        const std::set<int> stored = storedCalls();
        int storedNow = 0;
        for (int call = next; call < next + count; ++call) {
            storedNow += static_cast<int>(stored.count(call));
            if (isAcknowledged) {
                acknowledged.insert(call);
            }
        }
        ASSERT_TRUE(storedNow == 0 || storedNow == count) << storedNow << " of " << count;
        for (const int call : acknowledged) {
            ASSERT_EQ(stored.count(call), 1U) << "lost: " << call;
        }
        const Finished check = runProgram({COMMAND, "check", file()});
        ASSERT_EQ(check.status, 0) << check.out << check.err;
        next += count;
    }
    std::cout << "kills survived: " << kills << " of the command, calls acknowledged: " << acknowledged.size()
              << ", lost: 0\n";
}

/// Writes entries of many sizes, one a request, and says which were acknowledged.
void writeForever(const std::string& file, int writer, const Child::Say& say) {
    const auto store = calljournal::openStore(file, testKeys);
    for (int i = 0;; ++i) {
        const std::string id = std::to_string(writer) + "-" + std::to_string(i);
        const std::string body = "<EntryId>" + id + std::string(static_cast<std::size_t>(i * 613 % 20000), 'y') +
                                 "</EntryId><Surname>" + id + "</Surname><Number>" + std::to_string(i % 7) +
                                 "</Number>";
        const std::string reply = store->processRequest(
            writeRequest("CallLogDialledCalls", "<Entry><UniqueId>" + id + "</UniqueId>" + body + "</Entry>"));
        if (reply.find("<Result>ok</Result>") == std::string::npos) {
            say("refused: " + reply);
            return;
        }
        say(id);
    }
}

using KilledWriters = StoreTest;

TEST_F(KilledWriters, LoseNoEntryThatTheyAcknowledgedWhileTheyAllWrite) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    constexpr int writersAtOnce = 4;
    std::set<std::string> acknowledged;
    int kills = 0;
    for (int writer = 0; kills < killCount();) {
        std::vector<std::unique_ptr<Child>> writers;
        for (int i = 0; i < writersAtOnce; ++i, ++writer) {
            writers.push_back(
                std::make_unique<Child>([&, writer](const Child::Say& say) { writeForever(file(), writer, say); }));
        }
        // One after the other: those that are left go on with what the dead leave behind.
        for (const auto& child : writers) {
            std::this_thread::sleep_for(microseconds(random() % 40000));
            child->kill();
            ++kills;
        }
        for (const auto& child : writers) {
            for (const std::string& id : child->allLines()) {
                ASSERT_EQ(id.find("refused"), std::string::npos) << id;
                acknowledged.insert(id);
            }
            EXPECT_FALSE(child->endedWell());
        }
        ASSERT_TRUE(calljournal::openStore(file(), testKeys)->checkIndex().empty());
        const std::string reply = ask(readRequest("CallLogDialledCalls"));  // compares checksums and their sums
        ASSERT_EQ(reply.find("<Result>failed"), std::string::npos);
        closeStore();
        for (const std::string& id : acknowledged) {
            ASSERT_NE(reply.find("<UniqueId>" + id + "</UniqueId><EntryId>" + id), std::string::npos) << "lost: " << id;
        }
    }
    std::cout << "kills survived: " << kills << " of writers, entries acknowledged: " << acknowledged.size()
              << ", lost: 0\n";
}

}  // namespace
