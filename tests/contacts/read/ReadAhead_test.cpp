#include "ReadAhead.h"

#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace calljournal {
namespace {

constexpr std::size_t endless = std::numeric_limits<std::size_t>::max();

/// A reader of records that hold their own number, each of ten bytes.
class NumberedReader : public AddressReader {
public:
    explicit NumberedReader(std::size_t count, bool isSound = true) : count_(count), isSound_(isSound) {}

    bool next(AddressRecord& record) override {
        if (read_ == count_) {
            return isSound_ ? false : throw AddressBookError(AddressBookError::Reason::file, "it cannot be read on");
        }
        record.number = ++read_;
        record.values.clear();
        record.values.add().text = std::to_string(read_);
        return true;
    }
    std::size_t bytesRead() const override { return 10 * read_; }

    /// The records that were read so far; from any thread.
    std::size_t read() const { return read_; }

private:
    const std::size_t count_;
    const bool isSound_;
    std::atomic<std::size_t> read_{0};
};

/// Takes records as long as they come in order; returns how many.
std::size_t takeAll(ReadAhead& records) {
    std::size_t taken = 0;
    while (const AddressRecord* record = records.next()) {
        ++taken;
        EXPECT_EQ(record->number, taken);
        EXPECT_EQ(record->values[0].text, std::to_string(taken));
    }
    return taken;
}

TEST(ReadAhead, GivesTheRecordsInTheirOrder) {
    for (const std::size_t count : {0u, 1u, 255u, 256u, 257u, 10000u}) {
        NumberedReader reader(count);
        ReadAhead records(reader);
        EXPECT_EQ(takeAll(records), count);
        EXPECT_EQ(records.next(), nullptr);
    }
}

TEST(ReadAhead, ReportsAFaultBehindTheRecordsBeforeIt) {
    for (const std::size_t count : {0u, 1u, 256u, 1000u}) {
        NumberedReader reader(count, false);
        ReadAhead records(reader);
        for (std::size_t number = 1; number <= count; ++number) {
            const AddressRecord* record = records.next();
            ASSERT_NE(record, nullptr);
            ASSERT_EQ(record->number, number);
        }
        try {
            records.next();
            FAIL() << "nothing is thrown";
        } catch (const AddressBookError& error) {
            EXPECT_STREQ(error.what(), "it cannot be read on");
        }
    }
}

TEST(ReadAhead, StopsReadingWhenNobodyTakesThem) {
    NumberedReader untouched(endless);
    { const ReadAhead records(untouched); }
    NumberedReader reader(endless);
    {
        ReadAhead records(reader);
        for (std::size_t taken = 1; taken <= 5000; ++taken) {
            ASSERT_EQ(records.next()->number, taken);
            ASSERT_LE(reader.read(), taken + 3 * 256);
        }
    }
    EXPECT_LE(reader.read(), 5000u + 3 * 256);
}

TEST(ReadAhead, SaysHowMuchOfTheFileWasRead) {
    NumberedReader reader(1000);
    ReadAhead records(reader);
    EXPECT_EQ(records.bytesRead(), 0u);
    std::size_t before = 0;
    for (std::size_t taken = 1; records.next() != nullptr; ++taken) {
        EXPECT_GE(records.bytesRead(), std::max(before, 10 * taken));
        before = records.bytesRead();
    }
    EXPECT_EQ(records.bytesRead(), 10000u);
}

/// What makes a record long.
enum class Length { text, source, problems, problemText, problemColumn };
constexpr Length lengths[] = {Length::text, Length::source, Length::problems, Length::problemText,
                              Length::problemColumn};

/// A reader of records now long and now short, which looks at the memory that it gets to fill.
class LongReader : public AddressReader {
public:
    static constexpr std::size_t usual = std::size_t{8} << 10;

    LongReader(std::size_t every, Length length) : every_(every), length_(length) {}

    bool next(AddressRecord& record) override {
        EXPECT_LE(record.values.memory(), usual);
        EXPECT_LE(record.problems.capacity(), 100u);
        isKept_ = isKept_ || record.values.memory() != 0;
        ++read_;
        const bool isLong = read_ % every_ == 0;
        const auto textFor = [&](Length way) { return std::string(isLong && way == length_ ? 1000000 : 100, 'x'); };
        record.values.clear();
        record.problems.clear();
        AddressValue& value = record.values.add();
        value.text = textFor(Length::text);
        value.source = textFor(Length::source);
        record.problems.push_back({1, textFor(Length::problemColumn), textFor(Length::problemText)});
        record.problems.resize(isLong && length_ == Length::problems ? 10000 : 1);
        return true;
    }
    std::size_t bytesRead() const override { return 0; }

    std::size_t read() const { return read_; }
    bool isMemoryKept() const { return isKept_; }

private:
    const std::size_t every_;
    const Length length_;
    std::atomic<std::size_t> read_{0};
    std::atomic<bool> isKept_{false};
};

TEST(ReadAhead, HoldsOnlyAFewLongRecords) {
    for (const Length length : lengths) {
        LongReader reader(1, length);
        ReadAhead records(reader);
        for (std::size_t taken = 1; taken <= 50; ++taken) {
            ASSERT_NE(records.next(), nullptr);
            ASSERT_LE(reader.read(), taken + 3);
        }
    }
}

TEST(ReadAhead, KeepsTheMemoryOfUsualRecordsAlone) {
    for (const Length length : lengths) {
        LongReader reader(77, length);
        ReadAhead records(reader);
        for (std::size_t taken = 1; taken <= 2000; ++taken) {
            ASSERT_NE(records.next(), nullptr);
        }
        EXPECT_TRUE(reader.isMemoryKept());
    }
}

}  // namespace
}  // namespace calljournal
