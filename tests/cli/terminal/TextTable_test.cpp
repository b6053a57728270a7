#include "TextTable.h"

#include <gtest/gtest.h>
#include <sstream>

using calljournal::TextTable;

namespace {

std::string printed(const TextTable& table, std::size_t width) {
    std::ostringstream out;
    table.print(out, width);
    return out.str();
}

TextTable calls() {
    TextTable table({{"Id", false, true}, {"Name", true, false}, {"Empty", false, false}, {"Number", true, false}});
    table.add({"1", "Jürgen Müller", "", "+49 30 1234501"});
    table.add({"12", "山田", "", "0"});
    return table;
}

TEST(TextTable, AlignsColumnsByDisplayWidthAndLeavesOutEmptyOnes) {
    EXPECT_EQ(printed(calls(), 0),
              "Id  Name           Number\n"
              " 1  Jürgen Müller  +49 30 1234501\n"
              "12  山田           0\n");
}

TEST(TextTable, ShrinksTheWidestColumnsToTheTerminal) {
    EXPECT_EQ(printed(calls(), 26),
              "Id  Name        Number\n"
              " 1  Jürgen Mü…  +49 30 12…\n"
              "12  山田        0\n");
}

TEST(TextTable, KeepsAFewPlacesOfEachColumnInAVeryNarrowTerminal) {
    EXPECT_EQ(printed(calls(), 5),
              "Id  Name    Number\n"
              " 1  Jürge…  +49 3…\n"
              "12  山田    0\n");
}

TEST(TextTable, ShowsControlCharactersOfACell) {
    TextTable table({{"Name", true, false}});
    table.add({"a\x1b]0;x\x07"});
    EXPECT_EQ(printed(table, 0), "Name\na\\x1b]0;x\\x07\n");
}

}  // namespace
