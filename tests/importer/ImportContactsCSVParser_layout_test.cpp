#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <new>
#include <type_traits>

#include "../library/VirtualTable.h"
#include "ImportFixture.h"
#include "Probe.h"

namespace {

/// Calls what a slot of the object's own table holds, as a caller compiled against the fixed slots does.
template <class Result>
Result callSlot(const void* object, std::size_t slot) {
    const void* const entry = slotsOf(object, slot + 1)[slot];
    Result (*function)(const void*) = nullptr;
    static_assert(sizeof function == sizeof entry, "functions and data have addresses of one size");
    std::memcpy(&function, &entry, sizeof function);
    return function(object);
}

/// Tells of its end.
class Mortal : public ImportContactsCSVParser {
public:
    explicit Mortal(bool& dead) : ImportContactsCSVParser("", 0), dead_(dead) {}
    ~Mortal() override { dead_ = true; }

private:
    bool& dead_;
};

class ImporterLayout : public ImportTest {};

TEST_F(ImporterLayout, HasTheFixedSlots) {
    EXPECT_EQ(slotOf(&CSVParserIfc::getContacts), 2U);
    EXPECT_EQ(slotOf(&CSVParserIfc::getCSVType), 3U);
    EXPECT_EQ(slotOf(&ImportContactsCSVParser::getContacts), 2U);
    EXPECT_EQ(slotOf(&ImportContactsCSVParser::getCSVType), 3U);
}

TEST_F(ImporterLayout, AnswersThroughItsSlots) {
    Probe importer;
    importer.csvType = 42;
    importer.contacts.resize(3);
    importer.contacts[1].lastName = "Doe";
    const std::vector<Contact> contacts = callSlot<std::vector<Contact>>(&importer, 2);
    ASSERT_EQ(contacts.size(), 3U);
    EXPECT_EQ(contacts[1].lastName, "Doe");
    EXPECT_EQ(callSlot<int>(&importer, 3), 42);
}

TEST_F(ImporterLayout, EndsThroughItsFirstTwoSlots) {
    bool dead = false;
    std::aligned_storage<sizeof(Mortal), alignof(Mortal)>::type place;
    callSlot<void>(new (&place) Mortal(dead), 0);
    EXPECT_TRUE(dead);
    dead = false;
    callSlot<void>(new Mortal(dead), 1);
    EXPECT_TRUE(dead);
}

TEST_F(ImporterLayout, IsDeletedThroughItsInterface) {
    bool dead = false;
    std::unique_ptr<CSVParserIfc>(new Mortal(dead)).reset();
    EXPECT_TRUE(dead);
}

TEST_F(ImporterLayout, HasItsMembersInTheFixedOrder) {
    const Probe importer;
    const void* const addresses[] = {
        &importer.contacts,  &importer.emptyText, &importer.columnMap,     &importer.tokens,      &importer.separator,
        &importer.tokenizer, &importer.csvType,   &importer.headerPending, &importer.headerCount, &importer.lineCount,
        &importer.line,      &importer.nextLine,  &importer.file,
    };
    std::uintptr_t last = reinterpret_cast<std::uintptr_t>(&importer);
    for (const void* address : addresses) {
        EXPECT_GT(reinterpret_cast<std::uintptr_t>(address), last);
        last = reinterpret_cast<std::uintptr_t>(address);
    }
}

TEST_F(ImporterLayout, HasMembersOfTheFixedTypes) {
    typedef boost::escaped_list_separator<char> Separator;
    EXPECT_TRUE((std::is_same<decltype(Probe::contacts), std::vector<Contact>>::value));
    EXPECT_TRUE((std::is_same<decltype(Probe::emptyText), std::string>::value));
    EXPECT_TRUE((std::is_same<decltype(Probe::columnMap), std::vector<int>>::value));
    EXPECT_TRUE((std::is_same<decltype(Probe::tokens), std::vector<std::string>>::value));
    EXPECT_TRUE((std::is_same<decltype(Probe::separator), Separator>::value));
    EXPECT_TRUE((std::is_same<decltype(Probe::tokenizer), boost::tokenizer<Separator>>::value));
    EXPECT_TRUE((std::is_same<decltype(Probe::csvType), int>::value));
    EXPECT_TRUE((std::is_same<decltype(Probe::headerPending), bool>::value));
    EXPECT_TRUE((std::is_same<decltype(Probe::headerCount), unsigned>::value));
    EXPECT_TRUE((std::is_same<decltype(Probe::lineCount), unsigned>::value));
    EXPECT_TRUE((std::is_same<decltype(Probe::line), std::string>::value));
    EXPECT_TRUE((std::is_same<decltype(Probe::nextLine), std::string>::value));
    EXPECT_TRUE((std::is_same<decltype(Probe::file), std::ifstream>::value));
    EXPECT_EQ(sizeof(CSVType), sizeof(int));
}

TEST_F(ImporterLayout, StartsInTheFixedState) {
    const Probe importer("", 7);
    EXPECT_EQ(importer.getCSVType(), 6);
    EXPECT_TRUE(importer.getContacts().empty());
    EXPECT_EQ(importer.emptyText, "");
    EXPECT_TRUE(importer.columnMap.empty());
    EXPECT_TRUE(importer.tokens.empty());
    EXPECT_TRUE(importer.walkTokenizer().empty());
    EXPECT_TRUE(importer.headerPending);
    EXPECT_EQ(importer.headerCount, 0U);
    EXPECT_EQ(importer.lineCount, 7U);
    EXPECT_EQ(importer.line, "");
    EXPECT_EQ(importer.nextLine, "");
    EXPECT_FALSE(importer.file.is_open());
}

TEST_F(ImporterLayout, NumbersItsOutcomes) {
    EXPECT_EQ(CSV_NO_CAPACITY, 0);
    EXPECT_EQ(CSV_INVALID_DELIMITERS, 1);
    EXPECT_EQ(CSV_TOO_MANY_HEADERS, 2);
    EXPECT_EQ(CSV_INVALID_HEADERS, 3);
    EXPECT_EQ(CSV_INVALID_DEFAULT_DIAL, 4);
    EXPECT_EQ(CSV_COLUMN_MISMATCH, 5);
    EXPECT_EQ(CSV_FILE_ERROR, 6);
    EXPECT_EQ(CSV_TAMBER, 7);
    EXPECT_EQ(CSV_OUTLOOK, 8);
}

TEST_F(ImporterLayout, ExportsTheNumberOfTamberColumns) {
    EXPECT_EQ(TAMBER_HEADERS_SIZE, 12);
}

}  // namespace
