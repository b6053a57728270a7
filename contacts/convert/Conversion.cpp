#include "Conversion.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "ContactFields.h"
#include "ReadAhead.h"
#include "Wording.h"

namespace calljournal {

namespace {

/// So many columns are counted one by one where texts were left out; a file may have any number.
constexpr std::size_t mostColumnsCounted = 200;

/// Returns how many contacts the phone holds, of which some have to be free.
unsigned limitOf(const ConversionOptions& options) {
    const bool isUsual = options.limit == 0 && options.format == ContactFormat::phone;
    const unsigned limit = isUsual ? standardLimit : options.limit;
    if (limit != 0 && options.existing >= limit) {
        throw ContactFilesError("the phone takes " + counted(limit, "contact") + " and holds " +
                                std::to_string(options.existing) + ": there is no room for any");
    }
    return limit;
}

bool isEmpty(const Contact& contact) {
    return std::all_of(std::begin(contactTexts), std::end(contactTexts),
                       [&](const ContactText& text) { return (contact.*text.member).empty(); });
}

}  // namespace

std::string placeOf(const std::string& book, const ContactOrigin& contact) {
    const std::string first = std::to_string(contact.firstLine);
    return book + ": record " + std::to_string(contact.record) +
           (contact.firstLine == contact.lastLine
                ? " (line " + first + ')'
                : " (lines " + first + " to " + std::to_string(contact.lastLine) + ')');
}

Conversion::Conversion(ConversionOptions options, ConversionReport& report)
    : options_(std::move(options)),
      limit_(limitOf(options_)),
      report_(report),
      files_(filesOptions()),
      table_(spool_),
      duplicates_(options_.region) {}

ContactFilesOptions Conversion::filesOptions() const {
    ContactFilesOptions files;
    files.format = options_.format;
    files.path = options_.out.empty() ? (folder_.path() / "contacts").string() : options_.out;
    files.overwrite = options_.overwrite;
    files.limit = limit_;
    files.existing = options_.existing;
    files.place = [this](const ContactOrigin& contact) { return placeOf(options_.books[contact.file], contact); };
    return files;
}

void Conversion::run() {
    for (std::size_t file = 0; file < options_.books.size(); ++file) {
        readBook(file);
    }
    // What is the same is known; the rest needs the memory for something else.
    table_.reset();
    findNear();
    write();
    if (limit_ != 0 && contacts_ > limit_ - options_.existing) {
        report_.limit({limit_, options_.existing, contacts_, counts_.contacts, files().size(), options_.cut});
    }
}

void Conversion::readBook(std::size_t file) {
    const std::string& name = options_.books[file];
    const std::unique_ptr<AddressReader> book = openAddressBook(name, options_.reading);
    report_.book(file, book->recognition());
    report_.step(ConversionStep::reading, file);
    std::error_code unknown;
    const std::uintmax_t size = std::filesystem::file_size(name, unknown);
    const ContactMapper mapper(options_.numbers, options_.region);
    MappedContact mapped;
    ReadAhead records(*book);
    while (const AddressRecord* record = records.next()) {
        mapper.map(*record, mapped);
        take(file, *record, mapped);
        report_.progress(records.bytesRead(), unknown ? 0 : size);
    }
}

void Conversion::take(std::size_t file, const AddressRecord& record, const MappedContact& mapped) {
    const ContactOrigin origin = {mapped.isJoinedAddress, static_cast<std::uint32_t>(file), record.number,
                                  record.firstLine, record.lastLine};
    const RecordResult result = settle(origin, record, mapped.contact);
    count(result, mapped.remarks);
    report_.record(origin, record, mapped, result, result == RecordResult::duplicate ? &earlier_ : nullptr);
}

RecordResult Conversion::settle(const ContactOrigin& origin, const AddressRecord& record, const Contact& contact) {
    if (!record.fault.empty()) {
        return RecordResult::broken;
    }
    if (isEmpty(contact)) {
        return RecordResult::empty;
    }
    const std::string_view identity = spool_.identityOf(contact);
    std::uint64_t place = 0;
    if (table_->find(identity, place)) {
        spool_.read(place, earlier_);
        return RecordResult::duplicate;
    }
    duplicates_.add(contact, spool_.add(origin, identity));
    ++contacts_;
    return RecordResult::taken;
}

void Conversion::count(RecordResult result, const std::vector<Remark>& remarks) {
    ++counts_.records;
    counts_.duplicates += result == RecordResult::duplicate ? 1 : 0;
    counts_.empty += result == RecordResult::empty ? 1 : 0;
    counts_.broken += result == RecordResult::broken ? 1 : 0;
    for (const Remark& remark : remarks) {
        counts_.changed += remark.kind == Remark::changed ? 1 : 0;
        counts_.doubtful += remark.kind == Remark::doubtful ? 1 : 0;
        if (remark.kind == Remark::leftOut) {
            ++counts_.leftOut;
            const auto known = counts_.leftOutOf.find(remark.source);
            if (known != counts_.leftOutOf.end()) {
                ++known->second;
            } else if (counts_.leftOutOf.size() < mostColumnsCounted) {
                counts_.leftOutOf.emplace(remark.source, 1);
            }
        }
    }
}

void Conversion::findNear() {
    firstPass_ = spool_.end();
    report_.step(ConversionStep::comparing, 0);
    duplicates_.find(spool_, [this](const NearPair& pair) {
        SpooledContact earlier;
        SpooledContact later;
        spool_.read(pair.earlier, earlier);
        spool_.read(pair.later, later);
        const NearResult result = settleNear(pair);
        ++counts_.near;
        counts_.merged += result.outcome == NearOutcome::merged ? 1 : 0;
        report_.near(earlier, later, pair.shared, result);
    });
}

NearResult Conversion::settleNear(const NearPair& pair) {
    if (!options_.merge) {
        return {NearOutcome::kept, {}};
    }
    const auto [one, other] = std::minmax({rootOf(pair.earlier), rootOf(pair.later)});
    if (one == other) {
        return {NearOutcome::alreadyOne, {}};
    }
    SpooledContact both;
    SpooledContact its;
    readCurrent(one, both);
    readCurrent(other, its);
    // Each may have been merged with somebody since; their names have to fit as they are now.
    std::string_view difference;
    const std::optional<Contact> merged = areNamesCompatible(both.contact, its.contact)
                                              ? duplicates_.merged(both.contact, its.contact, difference)
                                              : std::nullopt;
    if (!merged) {
        return {NearOutcome::different, difference};
    }
    both.contact = *merged;
    both.isJoinedAddress = both.isJoinedAddress || its.isJoinedAddress;
    current_[one] = spool_.add(both);
    mergedInto_[other] = one;
    --contacts_;
    return {NearOutcome::merged, {}};
}

/// Follows merged contacts to the one that holds them now.
std::uint64_t Conversion::rootOf(std::uint64_t place) const {
    for (auto merged = mergedInto_.find(place); merged != mergedInto_.end(); merged = mergedInto_.find(place)) {
        place = merged->second;
    }
    return place;
}

void Conversion::readCurrent(std::uint64_t place, SpooledContact& contact) {
    const auto changed = current_.find(place);
    spool_.read(changed == current_.end() ? place : changed->second, contact);
}

void Conversion::write() {
    report_.step(ConversionStep::writing, 0);
    SpooledContact contact;
    for (std::uint64_t place = 0; place != firstPass_;) {
        const std::uint64_t here = place;
        place = spool_.read(here, contact);
        if (mergedInto_.count(here) != 0) {
            continue;
        }
        if (options_.cut && limit_ != 0 && counts_.contacts == limit_ - options_.existing) {
            break;
        }
        if (current_.count(here) != 0) {
            readCurrent(here, contact);
        }
        files_.add(contact);
        ++counts_.contacts;
        report_.progress(place, firstPass_);
    }
    files_.finish();
}

}  // namespace calljournal
