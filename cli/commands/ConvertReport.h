#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "Conversion.h"

namespace calljournal {

/// Writes what a conversion did, as it goes: for people, or as one JSON object a line.
class ConvertReport : public ConversionReport {
public:
    enum Detail {
        remarkable,  ///< Only records that are not in the contacts just as they came.
        text,        ///< Every record.
        json         ///< Every record, for programs.
    };

    ConvertReport(Detail detail, std::vector<std::string> files, std::ostream& out)
        : detail_(detail), files_(std::move(files)), out_(out) {}

    void book(std::size_t file, const Recognition& recognition) override;
    void record(const ContactOrigin& origin, const AddressRecord& record, const MappedContact& mapped,
                RecordResult result, const SpooledContact* earlier) override;
    void near(const SpooledContact& earlier, const SpooledContact& later, const std::string& shared,
              const NearResult& result) override;
    void limit(const LimitReached& reached) override;
    void step(ConversionStep, std::size_t) override {}
    void progress(std::uint64_t, std::uint64_t) override {}

    /// Ends the report: `written` are the files that were made.
    void finish(const ConversionCounts& counts, const std::vector<std::string>& written);

private:
    std::string place(const ContactOrigin& contact) const;
    void jsonRecord(const ContactOrigin& origin, const AddressRecord& record, const MappedContact& mapped,
                    RecordResult result, const SpooledContact* earlier);

    Detail detail_;
    std::vector<std::string> files_;
    std::ostream& out_;
};

}  // namespace calljournal
