#include "ManText.h"

#include <gtest/gtest.h>

namespace calljournal {

namespace {

TEST(ManText, TurnsParagraphsTitlesAndCode) {
    EXPECT_EQ(manText("**log target**\n\nAn empty one is read as `a-b'c\\d.` there.\n"),
              ".Sy log target\n"
              ".Pp\nAn empty one is read as \\fBa\\-b\\(aqc\\ed\\&.\\fP there.\n");
}

TEST(ManText, BreaksLongLines) {
    const std::string word(30, 'w');
    EXPECT_EQ(manText(word + ' ' + word + ' ' + word + '\n'), word + ' ' + word + '\n' + word + '\n');
}

TEST(ManText, KeepsTheLinesOfACodeBlock) {
    EXPECT_EQ(manText("```xml\n<a>\n  <b>-</b>\n</a>\n```\n"),
              ".Bd -literal -offset indent\n<a>\n  <b>\\-</b>\n</a>\n.Ed\n");
}

TEST(ManText, MakesATableAsWideAsItsCells) {
    EXPECT_EQ(manText("| # | Element |\n| --- | --- |\n| 1 | `Id` |\n| 2 |  |\n\nAfter.\n"),
              ".TS\nlbw(1n)2 lbw(7n)\nlw(1n)2 lw(7n).\n#\tElement\n1\t\\fBId\\fP\n2\t\n.TE\n.Pp\nAfter.\n");
}

TEST(ManText, BreaksTheCellsOfTheWidestColumnUntilTheTableFits) {
    const std::string wide = std::string(30, 'a') + ' ' + std::string(30, 'b');
    EXPECT_EQ(
        manText("| " + wide + " | " + std::string(30, 'c') + " |\n| --- | --- |\n| d | e |\n"),
        ".TS\nlbw(40n)2 lbw(30n)\nlw(40n)2 lw(30n).\nT{\n" + wide + "\nT}\t" + std::string(30, 'c') + "\nd\te\n.TE\n");
}

TEST(ManText, LeavesATableWithoutBlanksTooWide) {
    const std::string wide(80, 'a');
    EXPECT_EQ(manText("| " + wide + " |\n| --- |\n"), ".TS\nlbw(80n)\nlw(80n).\n" + wide + "\n.TE\n");
}

}  // namespace

}  // namespace calljournal
