#include "FormatSections.h"

#include <gtest/gtest.h>

namespace calljournal {

namespace {

const std::map<std::string, std::string> sections = {{"a", "new a\n"}, {"b", "new b\n"}};

TEST(FormatSections, ReplacesWhatStandsBetweenTheMarksAndNothingElse) {
    const std::string document =
        "before\n<!-- generated: b -->\n\nold\n\n<!-- end -->\nbetween\n"
        "<!-- generated: a -->\n<!-- end -->\nafter\n";
    const std::string expected =
        "before\n<!-- generated: b -->\n\nnew b\n\n<!-- end -->\nbetween\n"
        "<!-- generated: a -->\n\nnew a\n\n<!-- end -->\nafter\n";
    EXPECT_EQ(withSections(document, sections), expected);
    EXPECT_EQ(withSections(expected, sections), expected);
}

TEST(FormatSections, RefusesADocumentThatLacksASectionOrAMark) {
    const std::string a = "<!-- generated: a -->\n<!-- end -->\n";
    const std::string b = "<!-- generated: b -->\n<!-- end -->\n";
    EXPECT_NO_THROW(withSections(a + b, sections));
    EXPECT_THROW(withSections(a, sections), std::runtime_error);
    EXPECT_THROW(withSections(a + b + "<!-- generated: c -->\n<!-- end -->\n", sections), std::runtime_error);
    EXPECT_THROW(withSections(a + "<!-- generated: b -->\n", sections), std::runtime_error);
    EXPECT_THROW(withSections(a + "<!-- generated: b", sections), std::runtime_error);
}

TEST(FormatSections, KnowsTheMarksOfAManualPage) {
    const std::string document =
        ".Sh A\n.\\\" generated: a\n.Pp\nold\n.\\\" end\n.Sh B\n.\\\" generated: b\n.\\\" end\n.Pp\n";
    const std::string expected =
        ".Sh A\n.\\\" generated: a\nnew a\n.\\\" end\n.Sh B\n.\\\" generated: b\nnew b\n.\\\" end\n.Pp\n";
    EXPECT_EQ(withSections(document, sections, manualMarks), expected);
    EXPECT_EQ(withSections(expected, sections, manualMarks), expected);
}

TEST(FormatSections, ShowsOneEntryInTheManual) {
    const std::map<std::string, std::string> made = manualSections();
    EXPECT_EQ(made.count("missed entry"), 1u);
    EXPECT_EQ(made.count("dialled entry"), 0u);
    EXPECT_NE(made.at("received").find("5\t\\fBPictureClip\\fP\ttext as it is\tnot empty\tonce\n"), std::string::npos);
}

TEST(FormatSections, HasTablesAndAnExampleOfEachKind) {
    const std::map<std::string, std::string> made = formatSections();
    for (const std::string kind : {"missed", "dialled", "received", "forwarded", "callback"}) {
        EXPECT_NE(made.at(kind).find("| 1 | `UniqueId` |"), std::string::npos) << kind;
        EXPECT_EQ(made.at(kind + " entry").compare(0, 7, "```xml\n"), 0) << kind;
    }
    EXPECT_NE(made.at("missed").find("| 5 | `Picture`, read as `PictureClip` | text as it is | not empty | once |\n"),
              std::string::npos);
    EXPECT_NE(made.at("dialled").find("looks for `ConnectedNumberPriority` before `ConnectedNumber`"),
              std::string::npos);
}

}  // namespace

}  // namespace calljournal
