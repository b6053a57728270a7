#include "ConvertReport.h"

#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>

namespace calljournal {
namespace {

/// What a report says about a book with these bytes.
std::string bookLines(const std::string& bytes, ConvertReport::Detail detail) {
    std::istringstream stream(bytes);
    ReadingOptions options;
    options.mappings = {columnMapping("Hndy=Mobile1")};
    std::ostringstream out;
    ConvertReport report(detail, {"book.csv"}, out);
    report.book(0, openAddressBook(stream, options)->recognition());
    return out.str();
}

TEST(ConvertReport, SaysWhichColumnsAreNotKnownAndHowToMapThem) {
    EXPECT_EQ(
        bookLines("Vorname;Handy;;Zuname\n", ConvertReport::remarkable),
        "book.csv: UTF-8 (nothing speaks against it), columns separated by semicolons, 1 of 4 known by name, like "
        "Outlook (de)\n"
        "--map \"Hndy\" fits no column\n"
        "not recognised: Handy, Zuname; say what a column means with --map \"Handy=Mobile1\"\n");
    EXPECT_EQ(bookLines("Vorname;Handy\n", ConvertReport::json),
              R"({"file":"book.csv","charset":"UTF-8","program":"Outlook","language":"de","columns":2,"known":1,)"
              R"("unknownColumns":["Handy"],"unusedMappings":["Hndy"]})"
              "\n");
}

TEST(ConvertReport, NamesTenUnknownColumnsAndCountsTheOthers) {
    std::string header = "Vorname;" + std::string(61, 'x');
    for (int i = 0; i < 11; ++i) {
        header += ";c" + std::to_string(i);
    }
    EXPECT_EQ(
        bookLines(header + ";Hndy\n", ConvertReport::remarkable),
        "book.csv: UTF-8 (nothing speaks against it), columns separated by semicolons, 2 of 14 known by name, like "
        "Outlook (de)\n"
        "not recognised: " +
            std::string(60, 'x') +
            "..., c0, c1, c2, c3, c4, c5, c6, c7, c8 and 2 more; say what a "
            "column means with --map \"" +
            std::string(60, 'x') + "...=Mobile1\"\n");
}

}  // namespace
}  // namespace calljournal
