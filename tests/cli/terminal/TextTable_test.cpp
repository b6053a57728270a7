#include "TextTable.h"

#include <gtest/gtest.h>
#include <sstream>

using calljournal::TextTable;

namespace {

std::string printed(TextTable table, std::size_t width) {
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

TEST(TextTable, GoesOnInTheColumnsOfItsFirstRows) {
    TextTable table({{"", false, false},
                     {"Id", false, true},
                     {"Name", true, false},
                     {"Kind", false, false},
                     {"Note", true, false}});
    std::ostringstream out;
    table.add({"", "1", "Jürgen", "", ""});
    table.add({"", "12", "Ann", "", ""});
    EXPECT_EQ(table.rowCount(), 2u);
    table.print(out, 0, TextTable::Rest::follows);
    EXPECT_EQ(table.rowCount(), 0u);
    table.add({"●", "2", "山田", "dialled", "transfer destination"});
    table.print(out, 5, TextTable::Rest::follows);
    table.add({"", "1234567", "Jürgen Müller", "", "group"});
    table.print(out, 0);
    EXPECT_EQ(out.str(),
              "   Id  Name    Kind  Note\n"
              "    1  Jürgen\n"
              "   12  Ann\n"
              "●   2  山田    dialled  trans…\n"
              "   1234567  Jürge…        group\n");
}

TEST(TextTable, ShowsControlCharactersOfACell) {
    TextTable table({{"Name", true, false}});
    table.add({"a\x1b]0;x\x07"});
    EXPECT_EQ(printed(table, 0), "Name\na\\x1b]0;x\\x07\n");
}

}  // namespace
