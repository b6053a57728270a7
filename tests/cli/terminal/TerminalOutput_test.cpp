#include "TerminalOutput.h"

#include <gtest/gtest.h>
#include <sstream>
#include <unistd.h>

using namespace calljournal;

namespace {

TEST(PrintableLines, ComeOutWhenTheyAreWhole) {
    std::ostringstream target;
    PrintableLines lines(*target.rdbuf());
    std::ostream out(&lines);
    out << "a\xc3";
    EXPECT_EQ(target.str(), "");
    out << "\xa4\x1b[31m" << '\n' << "b\x9b";
    EXPECT_EQ(target.str(), "aä\\x1b[31m\n");
    out << std::flush;
    EXPECT_EQ(target.str(), "aä\\x1b[31m\nb\\x9b");
    out << "\n\nc\r\n";
    EXPECT_EQ(target.str(), "aä\\x1b[31m\nb\\x9b\n\nc\\x0d\n");
}

TEST(PrintableLines, FailWithTheirTarget) {
    struct Broken : std::streambuf {
    } broken;
    PrintableLines intoNothing(broken);
    std::ostream out(&intoNothing);
    out << "a\n";
    EXPECT_FALSE(out.good());
}

TEST(TerminalOutput, LeavesFilesAndPipesAlone) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::ostringstream stream;
    {
        const TerminalOutput output(stream, ends[1]);
        stream << "\x1b\xff\n";
    }
    EXPECT_EQ(stream.str(), "\x1b\xff\n");
    close(ends[0]);
    close(ends[1]);
}

}  // namespace
