#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <unistd.h>

#include "ImportFixture.h"
#include "Probe.h"
#include "WorkCounters.h"

namespace {

struct Work {
    std::uint64_t blocks;
    std::uint64_t bytes;
    std::uint64_t movedBytes;
    int code;
};

Work workOf(const std::string& content) {
    const TemporaryFile file(content);
    const WorkCounters before = workCounters();
    const Probe importer(file.path(), 0);
    const WorkCounters after = workCounters();
    return {after.blocks - before.blocks, after.allocatedBytes - before.allocatedBytes,
            after.movedBytes - before.movedBytes, importer.getCSVType()};
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t index = 0; index < count; ++index) {
        all += text;
    }
    return all;
}

/// Counts what the importer does, in a program whose importer reports the basic blocks it enters.
class ImportWork : public ImportTest {};

TEST_F(ImportWork, IsCountedAtAll) {
    const Work work = workOf(tamberHeader() + repeated("Doe;;;;;;;;;;;0\n", 10));
    EXPECT_GT(work.blocks, 1000U);
    EXPECT_GT(work.bytes, 1000U);
}

TEST_F(ImportWork, GrowsWithTheFileOnly) {
    const std::string start = outlookHeader();
    struct {
        const char* story;
        std::string first;
        std::string repeatedPart;
        int code;
    } const rows[] = {
        {"a field in quotes over many lines", start + "\"", "some text\n", 5},
        {"a field in quotes over blank lines", start + "\"x\n", "\n", 5},
        {"a field in quotes full of separators", start + "\"x\n", "a,b,c,d\n", 5},
        {"a plain field over many lines", start + "x\n", "text\n", 8},
        {"a plain field over lines with doubled quotes", start + "x\n", "\"\"a\"\"\n", 8},
        {"a field that closes and opens again", start + "\"x\n", "a\",\"b\n", 8},
        {"a field of escapes", start + "\"x\n", "\\\\\\n\n", 5},
        {"one long line", start, "abc", 8},
        {"one long line in quotes", start + "\"", "a,b", 5},
        {"one line of many columns", start, "a,", 8},
        {"one line of many doubled quotes", start, "\"\"", 8},
        {"many blank lines", start, "\n", 0},
        {"a long header", "", "a;", 2},
        {"a long header of quotes", "a;b", "\"", 3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.story);
        const Work once = workOf(row.first + repeated(row.repeatedPart, 4000));
        const Work twice = workOf(row.first + repeated(row.repeatedPart, 8000));
        EXPECT_EQ(twice.code, row.code);
        EXPECT_LT(twice.blocks, once.blocks * 5 / 2);
        EXPECT_LT(twice.bytes, once.bytes * 5 / 2);
        EXPECT_LE(twice.movedBytes, once.movedBytes * 5 / 2);
    }
}

TEST_F(ImportWork, GrowsWithTheFileOnlyWhereBlankLinesTakeCarriageReturns) {
    const auto content = [](std::size_t count) {
        return outlookHeader() + "\"x" + std::string(count, '\r') + "\n" + std::string(count, '\n') + "\",\n";
    };
    const Work once = workOf(content(4000));
    const Work twice = workOf(content(8000));
    EXPECT_EQ(twice.code, 8);
    EXPECT_LT(twice.blocks, once.blocks * 5 / 2);
    EXPECT_LT(twice.bytes, once.bytes * 5 / 2);
    EXPECT_LE(twice.movedBytes, once.movedBytes * 5 / 2);
}

TEST_F(ImportWork, IsNotWastedOnCopiesOfALine) {
    const std::string line = repeated("a,", 1000);
    const Work work = workOf(outlookHeader() + line + "\n");
    EXPECT_LT(work.bytes, 200000U);  // 1001 columns of 1 byte, in strings of 32 bytes, in a vector that doubles.
}

/// Imports `content` once for each allocation on the way, which fails, and returns how often each outcome came.
std::map<int, int> outcomesWithoutMemory(const std::string& content) {
    // With a path too short for an allocation, and room to note its deletion, it is not the fake phone that fails
    // there.
    const std::string path = std::to_string(getpid()) + ".csv";
    std::map<int, int> outcomes;
    bool failed = true;
    for (std::int64_t failing = 0; failed; ++failing) {
        std::ofstream(path) << content;
        fakePlatform().log.clear();
        fakePlatform().deletedFiles.clear();
        fakePlatform().deletedFiles.reserve(1);
        workCounters().allocationsUntilFailure = failing;
        int code = -1;
        EXPECT_NO_THROW(code = Probe(path, 0).getCSVType()) << failing;
        failed = workCounters().allocationsUntilFailure < 0;
        workCounters().allocationsUntilFailure = -1;
        EXPECT_FALSE(std::filesystem::exists(path)) << failing;
        ++outcomes[code];
    }
    return outcomes;
}

int count(const std::map<int, int>& outcomes) {
    int all = 0;
    for (const auto& outcome : outcomes) {
        all += outcome.second;
    }
    return all;
}

TEST_F(ImportWork, SurvivesEachFailureOfMemory) {
    const std::filesystem::path folder = std::filesystem::current_path();
    std::filesystem::current_path(testing::TempDir());
    const std::string record = ",,,\"" + std::string(100, 'a') + "\n" + std::string(1000, 'b') + "\",\n";
    std::map<int, int> good = outcomesWithoutMemory(outlookHeader() + record + ",,,Doe,\n");
    std::map<int, int> bad = outcomesWithoutMemory(outlookHeader() + record + "x\\y\n");
    std::filesystem::current_path(folder);
    // A read that fails ends the file there: code 8 if it is a line's, 5 if it is a continuation's.
    EXPECT_GT(good[6], 10);
    EXPECT_GT(good[8], 0);
    EXPECT_EQ(good[5] + good[6] + good[8], count(good));
    EXPECT_GT(bad[6], 10);
    EXPECT_EQ(bad[5] + bad[6], count(bad));
}

}  // namespace
