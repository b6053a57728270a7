#include "CallListDatabaseAdapterData.h"

#include <gtest/gtest.h>
#include <string>

#include "CallListDatabaseAdapterHelper.h"

namespace {

using Helper = CallListDatabaseAdapterHelper;
using Data = CallListDatabaseAdapterData;

struct Row {
    const char* name;
    int number;
};

const Row rows[] = {
    {"Entry", 0},
    {"Item", 1},
    {"Method", 2},
    {"UniqueId", 3},
    {"Category", 4},
    {"EntryId", 5},
    {"Surname", 6},
    {"Firstname", 7},
    {"PictureClip", 8},
    {"JSGroupBy", 9},
    {"Viewed", 10},
    {"CallBackNumber", 23},
    {"CallBackType", 24},
    {"CallBackState", 25},
    {"CallBackDeviceId", 26},
    {"Number", 11},
    {"NumberType", 12},
    {"ResolvedNumber", 13},
    {"ConnectedNumberPriority", 14},
    {"ConnectedNumber", 15},
    {"ConnectedNumberType", 16},
    {"ConnectedSurname", 17},
    {"ConnectedFirstName", 18},
    {"IsBluetoothCall", 19},
    {"TimeDate", 20},
    {"Duration", 21},
    {"CompletedElsewhere", 22},
    {"TargetLog", 27},
    {"NumberPresentation", 28},
    {"NamePresentation", 29},
    {"TimeFormat", 30},
    {"DeflectNumberPresentation", 31},
    {"DeflectNumber", 32},
    {"DeflectNumberType", 33},
    {"DeflectNamePresentation", 34},
    {"DeflectName", 35},
    {"GroupName", 37},
    {"GroupNumber", 38},
    {"TransferType", 39},
    {"UniqueID", 40},
    {"Office", 41},
    {"Mobile", 42},
    {"Private", 43},
    {"Email", 44},
    {"Group", 45},
    {"DefaultNumber", 46},
    {"Company", 47},
    {"Office2", 48},
    {"Address", 49},
    {"Address2", 50},
    {"JobFunction", 51},
    {"VoiceDial", 52},
    {"Picture", 53},
    {"ExternalID", 54},
    {"ContactSource", 55},
};

class ParseTags : public ::testing::Test {
protected:
    ParseTags() { Helper::finit(); }
    ~ParseTags() override { Helper::finit(); }
};

void expectAllRows() {
    for (const Row& row : rows) {
        EXPECT_EQ(static_cast<int>(Data::getTag(row.name)), row.number) << row.name;
    }
}

void expectNoRow() {
    for (const Row& row : rows) {
        EXPECT_EQ(static_cast<int>(Data::getTag(row.name)), 56) << row.name;
    }
}

TEST_F(ParseTags, AreFiftyFiveNumbersWithTheirGaps) {
    EXPECT_EQ(sizeof rows / sizeof rows[0], 55u);
    Helper::init();

    expectAllRows();
}

TEST_F(ParseTags, AreUnknownBeforeInit) {
    expectNoRow();
}

TEST_F(ParseTags, SurviveASecondInit) {
    Helper::init();
    Helper::init();

    expectAllRows();
}

TEST_F(ParseTags, AreGoneAfterFinitUntilInitRunsAgain) {
    Helper::init();
    Helper::init();
    Helper::finit();
    expectNoRow();
    Helper::finit();
    expectNoRow();

    Helper::init();
    expectAllRows();
}

TEST_F(ParseTags, AreFoundByExactlyTheirName) {
    Helper::init();

    for (const char* const name : {"",
                                   " ",
                                   "entry",
                                   "ENTRY",
                                   "Entry ",
                                   " Entry",
                                   "Entr",
                                   "Entry2",
                                   "<Entry>",
                                   "Entry>",
                                   "uniqueid",
                                   "UniqueID2",
                                   "Address3",
                                   "Office3",
                                   "Schema",
                                   "LogList",
                                   "Value",
                                   "ActionType",
                                   "UniqueIdToDelete",
                                   "ReasonForMessage",
                                   "Missed",
                                   "True",
                                   "CallLog",
                                   "Conversations",
                                   "IN_BUSY",
                                   "36",
                                   "0",
                                   "Item\xC3\xBC"}) {
        EXPECT_EQ(static_cast<int>(Data::getTag(name)), 56) << name;
    }
    EXPECT_EQ(static_cast<int>(Data::getTag("UniqueId")), 3);
    EXPECT_EQ(static_cast<int>(Data::getTag("UniqueID")), 40);
}

TEST_F(ParseTags, AreFoundUpToTheNamesEnd) {
    Helper::init();
    const char name[] = "Item\0Entry";

    EXPECT_EQ(static_cast<int>(Data::getTag(name)), 1);
}

}  // namespace
