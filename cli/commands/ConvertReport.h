#ifndef CALLJOURNAL_CONVERTREPORT_H
#define CALLJOURNAL_CONVERTREPORT_H

#include <cstdint>
#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "AddressReader.h"
#include "ContactMapper.h"
#include "ContactSpool.h"

namespace calljournal {

/// What became of one record.
enum class RecordResult { taken, duplicate, empty, broken };

/// Numbers of a whole conversion.
struct ConvertCounts {
    std::uint64_t records = 0;
    std::uint64_t contacts = 0;  ///< That are written.
    std::uint64_t duplicates = 0;
    std::uint64_t near = 0;  ///< Pairs that may be one person.
    std::uint64_t merged = 0;
    std::uint64_t empty = 0;
    std::uint64_t broken = 0;
    std::uint64_t changed = 0;  ///< Texts.
    std::uint64_t doubtful = 0;
    std::uint64_t leftOut = 0;
};

/// Writes what a conversion did, as it goes: for people, or as one JSON object a line.
class ConvertReport {
public:
    enum Detail {
        remarkable,  ///< Only records that are not in the contacts just as they came.
        text,        ///< Every record.
        json         ///< Every record, for programs.
    };

    ConvertReport(Detail detail, std::vector<std::string> files, std::ostream& out)
        : detail_(detail), files_(std::move(files)), out_(out) {}

    /// A book was opened.
    void book(std::size_t file, const Recognition& recognition);

    /// A record was looked at. `earlier` is the contact that it repeats, if it is a duplicate.
    void record(std::size_t file, const AddressRecord& record, const MappedContact& mapped, RecordResult result,
                const SpooledContact* earlier);

    /// Two contacts may be one person. `outcome` says what was done: "they were merged".
    void near(const SpooledContact& earlier, const SpooledContact& later, const std::string& shared,
              const std::string& outcome, bool isMerged);

    /// Says a sentence about the whole.
    void say(const std::string& sentence);

    /// Ends the report.
    void finish(std::uint64_t contacts, const std::vector<std::string>& written);

    ConvertCounts& counts() { return counts_; }

    /// "contacts.csv: record 3 (lines 5 to 7)".
    std::string place(const ContactOrigin& contact) const;

private:
    void countRemarks(const MappedContact& mapped);
    void textRecord(std::size_t file, const AddressRecord& record, const MappedContact& mapped, RecordResult result,
                    const SpooledContact* earlier);
    void jsonRecord(std::size_t file, const AddressRecord& record, const MappedContact& mapped, RecordResult result,
                    const SpooledContact* earlier);

    Detail detail_;
    std::vector<std::string> files_;
    std::ostream& out_;
    ConvertCounts counts_;
    std::map<std::string, std::uint64_t, std::less<>> leftOut_;  ///< How many texts of each column were left out.
};

}  // namespace calljournal

#endif
