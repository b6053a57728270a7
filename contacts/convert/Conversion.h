#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "AddressReader.h"
#include "ContactFiles.h"
#include "ContactMapper.h"
#include "ContactSpool.h"
#include "DuplicateFinder.h"
#include "NumberWriter.h"
#include "TemporaryFolder.h"

namespace calljournal {

/// How address books become files of contacts.
struct ConversionOptions {
    std::vector<std::string> books;
    ReadingOptions reading;
    NumberStyle numbers = NumberStyle::keep;
    std::string region;  ///< Where numbers are dialled.
    ContactFormat format = ContactFormat::phone;
    std::string out;  ///< The file, as ContactFilesOptions::path is; empty if publish() is not called.
    bool overwrite = false;
    bool merge = false;     ///< Make one contact of those that are one person.
    bool cut = false;       ///< Leave out what does not fit, rather than write further files.
    unsigned limit = 0;     ///< Contacts that the phone holds, 100 or 1000; 0: 100 for a phone's file, else none.
    unsigned existing = 0;  ///< Contacts that it holds already.
};

/// What became of one record.
enum class RecordResult { taken, duplicate, empty, broken };

/// What became of two contacts that may be one person.
enum class NearOutcome {
    kept,        ///< Nobody asked for more.
    alreadyOne,  ///< Others made one contact of them before.
    different,   ///< They stay two, since something would be lost.
    merged
};

struct NearResult {
    NearOutcome outcome;
    std::string_view difference;  ///< The field that keeps them apart: "company1"; empty if it is the name.
};

/// There are more contacts than the phone has room for.
struct LimitReached {
    unsigned limit;
    unsigned existing;
    std::uint64_t contacts;  ///< That there are.
    std::uint64_t written;
    std::size_t files;
    bool isCut;  ///< What does not fit was left out.
};

enum class ConversionStep { reading, comparing, writing };

/// Numbers of a whole conversion.
struct ConversionCounts {
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
    std::map<std::string, std::uint64_t, std::less<>> leftOutOf;  ///< Texts of the first columns that lost some.
};

/// Gets what a conversion does, as it does it. References last for the call.
class ConversionReport {
public:
    virtual ~ConversionReport() = default;

    /// A book was opened; `file` says which, from 0.
    virtual void book(std::size_t file, const Recognition& recognition) = 0;

    /// A record was looked at. `earlier` is the contact that it repeats, null if it is no duplicate.
    virtual void record(const ContactOrigin& origin, const AddressRecord& record, const MappedContact& mapped,
                        RecordResult result, const SpooledContact* earlier) = 0;

    /// Two contacts share a number or a mail address and may be one person.
    virtual void near(const SpooledContact& earlier, const SpooledContact& later, const std::string& shared,
                      const NearResult& result) = 0;

    virtual void limit(const LimitReached& reached) = 0;

    /// A step begins; that of reading begins for each file.
    virtual void step(ConversionStep step, std::size_t file) = 0;

    /// How far the step is, in bytes; total 0 if that is not known.
    virtual void progress(std::uint64_t done, std::uint64_t total) = 0;
};

/// Converts address books to contacts that a phone imports without loss.
class Conversion {
public:
    /// `report` has to outlive the object. Throws ContactFilesError if the phone has no room for a contact, or if the
    /// file cannot be written.
    Conversion(ConversionOptions options, ConversionReport& report);
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    /// Reads the books and writes their contacts, to files that are not yet under their names. Throws AddressBookError
    /// for a book that cannot be read, and as ContactFiles does.
    void run();

    /// The files before they have names.
    const std::vector<std::string>& files() const { return files_.temporaryFiles(); }

    /// Gives the files their names, all or none, and returns these.
    std::vector<std::string> publish() { return files_.publish(); }

    const ConversionCounts& counts() const { return counts_; }

private:
    ContactFilesOptions filesOptions() const;
    void readBook(std::size_t file);
    void take(std::size_t file, const AddressRecord& record, const MappedContact& mapped);
    RecordResult settle(const ContactOrigin& origin, const AddressRecord& record, const Contact& contact);
    void count(RecordResult result, const std::vector<Remark>& remarks);
    void findNear();
    NearResult settleNear(const NearPair& pair);
    std::uint64_t rootOf(std::uint64_t place) const;
    void readCurrent(std::uint64_t place, SpooledContact& contact);
    void write();

    const ConversionOptions options_;
    const unsigned limit_;
    ConversionReport& report_;
    const TemporaryFolder folder_;
    ContactFiles files_;
    ContactSpool spool_;
    std::optional<IdentityTable> table_;
    DuplicateFinder duplicates_;
    SpooledContact earlier_;                             ///< The contact that a duplicate repeats.
    std::map<std::uint64_t, std::uint64_t> mergedInto_;  ///< Contacts that are part of an earlier one.
    std::map<std::uint64_t, std::uint64_t> current_;     ///< Where the text of a contact is that grew.
    std::uint64_t firstPass_ = 0;                        ///< The end of the contacts as they were read.
    std::uint64_t contacts_ = 0;
    ConversionCounts counts_;
};

/// "contacts.csv: record 3 (lines 5 to 7)".
std::string placeOf(const std::string& book, const ContactOrigin& contact);

}  // namespace calljournal
