#include "Conversion.h"

#include <gtest/gtest.h>
#include <sstream>

#include "RunCommand.h"

namespace calljournal {
namespace {

/// Notes what a conversion reports, an event a line.
class Events : public ConversionReport {
public:
    void book(std::size_t file, const Recognition& recognition) override {
        text_ << "book " << file << ": " << recognition.charset << '\n';
    }
    void record(const ContactOrigin& origin, const AddressRecord&, const MappedContact& mapped, RecordResult result,
                const SpooledContact* earlier) override {
        constexpr const char* results[] = {"taken", "duplicate", "empty", "broken"};
        text_ << "record " << origin.record << ": " << mapped.contact.lastName << ' '
              << results[static_cast<int>(result)];
        text_ << (earlier == nullptr ? "" : " of " + std::to_string(earlier->record)) << '\n';
    }
    void near(const SpooledContact& earlier, const SpooledContact& later, const std::string& shared,
              const NearResult& result) override {
        constexpr const char* outcomes[] = {"kept", "alreadyOne", "different", "merged"};
        text_ << "near " << earlier.record << " and " << later.record << ": " << shared << ' '
              << outcomes[static_cast<int>(result.outcome)] << ' ' << result.difference << '\n';
    }
    void limit(const LimitReached& reached) override {
        text_ << "limit " << reached.limit << ", existing " << reached.existing << ", contacts " << reached.contacts
              << ", written " << reached.written << ", files " << reached.files << (reached.isCut ? ", cut" : "")
              << '\n';
    }
    void step(ConversionStep step, std::size_t file) override {
        constexpr const char* steps[] = {"reading", "comparing", "writing"};
        text_ << "step " << steps[static_cast<int>(step)] << ' ' << file << '\n';
    }
    void progress(std::uint64_t done, std::uint64_t total) override { EXPECT_LE(done, total); }

    std::string text() const { return text_.str(); }

private:
    std::ostringstream text_;
};

class ConversionTest : public ::testing::Test {
protected:
    ConversionOptions optionsFor(const std::string& people) const {
        ConversionOptions options;
        options.books = {folder_.write("book.csv", "Last Name,Mobile Phone,Home Phone\n" + people)};
        options.region = "DE";
        options.out = folder_.file("out.csv");
        return options;
    }

    static std::string eventsOf(const ConversionOptions& options) {
        Events events;
        Conversion(options, events).run();
        return events.text();
    }

    const ::TemporaryFolder folder_;
};

TEST_F(ConversionTest, ReportsWhatItDoesAsValues) {
    EXPECT_EQ(eventsOf(optionsFor("Adams,0170 1234567,\nAdams,0170 1234567,\n,,\n")),
              "book 0: UTF-8\n"
              "step reading 0\n"
              "record 1: Adams taken\n"
              "record 2: Adams duplicate of 1\n"
              "record 3:  empty\n"
              "step comparing 0\n"
              "step writing 0\n");
}

TEST_F(ConversionTest, ReportsWhatBecameOfNearPairs) {
    ConversionOptions options = optionsFor("Adams,0170 1234567,\nAdams,0170 1234567,030 123456\n");
    const std::string beginning =
        "book 0: UTF-8\n"
        "step reading 0\n"
        "record 1: Adams taken\n"
        "record 2: Adams taken\n"
        "step comparing 0\n"
        "near 1 and 2: +491701234567 ";
    EXPECT_EQ(eventsOf(options), beginning + "kept \nstep writing 0\n");
    options.merge = true;
    EXPECT_EQ(eventsOf(options), beginning + "merged \nstep writing 0\n");
    options = optionsFor("Adams,0170 1234567,030 654321\nAdams,0170 1234567,030 123456\n");
    options.merge = true;
    EXPECT_EQ(eventsOf(options), beginning + "different private1\nstep writing 0\n");
}

TEST_F(ConversionTest, ReportsTheLimitInNumbers) {
    ConversionOptions options = optionsFor("Adams,1,\nBrown,2,\nClark,3,\n");
    options.existing = 98;
    const std::string text = eventsOf(options);
    EXPECT_EQ(text.substr(text.find("limit")), "limit 100, existing 98, contacts 3, written 3, files 2\n");
    options.cut = true;
    const std::string cut = eventsOf(options);
    EXPECT_EQ(cut.substr(cut.find("limit")), "limit 100, existing 98, contacts 3, written 2, files 1, cut\n");
}

TEST_F(ConversionTest, CountsAndPublishesWhatItWrote) {
    Events events;
    Conversion conversion(optionsFor("Adams,1,\nAdams,1,\n,,\n"), events);
    conversion.run();
    EXPECT_EQ(conversion.counts().records, 3u);
    EXPECT_EQ(conversion.counts().contacts, 1u);
    EXPECT_EQ(conversion.counts().duplicates, 1u);
    EXPECT_EQ(conversion.counts().empty, 1u);
    EXPECT_EQ(conversion.publish(), std::vector<std::string>{folder_.file("out.csv")});
    EXPECT_NE(readFile(folder_.file("out.csv")).find("Adams"), std::string::npos);
}

}  // namespace
}  // namespace calljournal
