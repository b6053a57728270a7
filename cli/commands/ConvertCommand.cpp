#include "ConvertCommand.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <ostream>
#include <system_error>

#include "AddressReader.h"
#include "ContactFields.h"
#include "ContactFiles.h"
#include "ContactMapper.h"
#include "ContactSpool.h"
#include "ConvertReport.h"
#include "DuplicateFinder.h"
#include "ExitCode.h"
#include "ImportReplay.h"
#include "Interruption.h"
#include "NumberMatcher.h"
#include "PrintableText.h"
#include "ProgressBar.h"
#include "ReadAhead.h"
#include "TemporaryFolder.h"
#include "WordOption.h"
#include "Wording.h"

namespace calljournal {

namespace {

constexpr unsigned standardLimit = 100;

/// One run of the command.
class Conversion {
public:
    Conversion(const ConvertOptions& options, std::ostream& out, std::ostream& err)
        : options_(options),
          out_(out),
          isToOutput_(options.out.empty() && !options.isDryRun),
          report_(options.report, options.files, isToOutput_ ? err : out),
          region_(options.region.empty() ? localeRegion() : options.region),
          limit_(options.limit != 0                   ? options.limit
                 : options.to == ContactFormat::phone ? standardLimit
                                                      : 0),
          table_(std::make_unique<IdentityTable>(spool_)),
          near_(region_),
          bar_(terminalDrawing()) {}

    /// Throws what makes it impossible.
    void run() {
        checkLimit();
        const TemporaryFolder folder("convert");
        ContactFiles files(filesIn(folder));
        for (std::size_t file = 0; file < options_.files.size(); ++file) {
            readBook(file);
        }
        // What is the same is known; the rest needs the memory for something else.
        table_.reset();
        findNear();
        const std::uint64_t count = write(files);
        deliver(files, count);
    }

private:
    void checkLimit() const {
        if (limit_ != 0 && options_.existing >= limit_) {
            throw ContactFilesError("the phone takes " + counted(limit_, "contact") + " and holds " +
                                    std::to_string(options_.existing) + ": there is no room for any");
        }
    }

    ContactFilesOptions filesIn(const TemporaryFolder& folder) const {
        const bool isHidden = options_.out.empty() || options_.isDryRun;
        ContactFilesOptions files;
        files.format = options_.to;
        files.path = isHidden ? (folder.path() / "contacts").string() : options_.out;
        files.overwrite = options_.force;
        files.limit = limit_;
        files.existing = options_.existing;
        files.place = [this](const ContactOrigin& contact) { return report_.place(contact); };
        return files;
    }

    void readBook(std::size_t file) {
        ReadingOptions reading;
        reading.charset = options_.fromCharset;
        reading.columnsFile = options_.columns;
        std::transform(options_.maps.begin(), options_.maps.end(), std::back_inserter(reading.mappings),
                       [](const std::string& pair) { return columnMapping(pair); });
        const std::string& name = options_.files[file];
        const std::unique_ptr<AddressReader> book = openAddressBook(name, reading);
        report_.book(file, book->recognition());
        auto done = std::make_shared<std::atomic<std::uint64_t>>(0);
        std::error_code unknown;
        const std::uintmax_t size = std::filesystem::file_size(name, unknown);
        const std::uint64_t total = unknown ? 0 : size;
        bar_.start("reading " + name, [done, total] { return ProgressBar::Position{*done, total}; });
        const ContactMapper mapper(options_.numbers, region_);
        MappedContact mapped;
        ReadAhead records(*book);
        while (const AddressRecord* record = records.next()) {
            mapper.map(*record, mapped);
            take(file, *record, mapped);
            *done = records.bytesRead();
        }
    }

    void take(std::size_t file, const AddressRecord& record, const MappedContact& mapped) {
        if (!record.fault.empty()) {
            report_.record(file, record, mapped, RecordResult::broken, nullptr);
            return;
        }
        if (isEmpty(mapped.contact)) {
            report_.record(file, record, mapped, RecordResult::empty, nullptr);
            return;
        }
        const std::string_view identity = spool_.identityOf(mapped.contact);
        std::uint64_t place = 0;
        if (table_->find(identity, place)) {
            SpooledContact earlier;
            spool_.read(place, earlier);
            report_.record(file, record, mapped, RecordResult::duplicate, &earlier);
            return;
        }
        const ContactOrigin origin = {mapped.isJoinedAddress, static_cast<std::uint32_t>(file), record.number,
                                      record.firstLine, record.lastLine};
        near_.add(mapped.contact, spool_.add(origin, identity));
        ++contacts_;
        report_.record(file, record, mapped, RecordResult::taken, nullptr);
    }

    static bool isEmpty(const Contact& contact) {
        return std::all_of(std::begin(contactTexts), std::end(contactTexts),
                           [&](const ContactText& text) { return (contact.*text.member).empty(); });
    }

    void findNear() {
        firstPass_ = spool_.end();
        bar_.start("comparing contacts", [] { return ProgressBar::Position{0, 0}; });
        near_.find(spool_, [this](const NearPair& pair) { settleNear(pair); });
    }

    /// Follows merged contacts to the one that holds them now.
    std::uint64_t rootOf(std::uint64_t place) const {
        for (auto merged = mergedInto_.find(place); merged != mergedInto_.end(); merged = mergedInto_.find(place)) {
            place = merged->second;
        }
        return place;
    }

    void readCurrent(std::uint64_t place, SpooledContact& contact) {
        const auto changed = current_.find(place);
        spool_.read(changed == current_.end() ? place : changed->second, contact);
    }

    void settleNear(const NearPair& pair) {
        SpooledContact earlier;
        SpooledContact later;
        spool_.read(pair.earlier, earlier);
        spool_.read(pair.later, later);
        if (!options_.merge) {
            report_.near(earlier, later, pair.shared, "they may be one person; --merge makes them one contact", false);
            return;
        }
        const auto [one, other] = std::minmax({rootOf(pair.earlier), rootOf(pair.later)});
        if (one == other) {
            report_.near(earlier, later, pair.shared, "they are one contact already", false);
            return;
        }
        SpooledContact both;
        SpooledContact its;
        readCurrent(one, both);
        readCurrent(other, its);
        std::string conflict;
        // Each may have been merged with somebody since; their names have to fit as they are now.
        const std::optional<Contact> merged = areNamesCompatible(both.contact, its.contact)
                                                  ? near_.merged(both.contact, its.contact, conflict)
                                                  : std::nullopt;
        if (!merged) {
            report_.near(earlier, later, pair.shared,
                         "not merged, they differ in " + (conflict.empty() ? "name" : conflict), false);
            return;
        }
        both.contact = *merged;
        both.isJoinedAddress = both.isJoinedAddress || its.isJoinedAddress;
        current_[one] = spool_.add(both);
        mergedInto_[other] = one;
        --contacts_;
        report_.near(earlier, later, pair.shared, "they were merged", true);
    }

    /// Writes the contacts that there are; returns how many.
    std::uint64_t write(ContactFiles& files) {
        const std::uint64_t end = firstPass_;
        auto position = std::make_shared<std::atomic<std::uint64_t>>(0);
        bar_.start("writing contacts", [position, end] { return ProgressBar::Position{*position, end}; });
        std::uint64_t count = 0;
        SpooledContact contact;
        for (std::uint64_t place = 0; place != end;) {
            const std::uint64_t here = place;
            place = spool_.read(here, contact);
            if (mergedInto_.count(here) != 0) {
                continue;
            }
            if (options_.cut && limit_ != 0 && count == limit_ - options_.existing) {
                break;
            }
            const auto changed = current_.find(here);
            if (changed != current_.end()) {
                spool_.read(changed->second, contact);
            }
            files.add(contact);
            ++count;
            *position = place;
        }
        files.finish();
        return count;
    }

    void deliver(ContactFiles& files, std::uint64_t count) {
        sayLimit(count, files.temporaryFiles().size());
        if (isToOutput_ && files.temporaryFiles().size() > 1) {
            throw ContactFilesError("these are " + std::to_string(files.temporaryFiles().size()) +
                                    " files; name the first with -o, or ask for one with --cut");
        }
        if (isToOutput_) {
            const std::ifstream file(files.temporaryFiles().front(), std::ios::binary);
            // An empty file would leave the stream in a failed state.
            if (std::filesystem::file_size(files.temporaryFiles().front()) != 0) {
                out_ << file.rdbuf();
            }
        }
        const bool isWritten = !isToOutput_ && !options_.isDryRun;
        const std::vector<std::string> names = isWritten ? files.publish() : std::vector<std::string>();
        report_.finish(count, options_.isPassedOn ? std::vector<std::string>() : names);
    }

    void sayLimit(std::uint64_t count, std::size_t files) {
        const unsigned capacity = limit_ - options_.existing;
        if (limit_ == 0 || contacts_ <= capacity) {
            return;
        }
        const std::string room = "the phone takes " + counted(limit_, "contact") + " and holds " +
                                 std::to_string(options_.existing) + ": of " + std::to_string(contacts_) + ", ";
        report_.say(options_.cut
                        ? room + "the first " + std::to_string(count) + " were taken"
                        : room + "each of " + std::to_string(files) + " files has at most " + std::to_string(capacity));
    }

    const ConvertOptions& options_;
    std::ostream& out_;
    const bool isToOutput_;
    ConvertReport report_;
    const std::string region_;
    const unsigned limit_;
    ContactSpool spool_;
    std::unique_ptr<IdentityTable> table_;
    DuplicateFinder near_;
    std::map<std::uint64_t, std::uint64_t> mergedInto_;  ///< Contacts that are part of an earlier one.
    std::map<std::uint64_t, std::uint64_t> current_;     ///< Where the text of a contact stands that grew.
    std::uint64_t firstPass_ = 0;                        ///< The end of the contacts as they were read.
    std::uint64_t contacts_ = 0;
    ProgressBar bar_;
};

}  // namespace

ExitCode convertBooks(const ConvertOptions& options, std::ostream& out, std::ostream& err) {
    const Interruption interruption;
    try {
        Conversion(options, out, err).run();
        return exitDone;
    } catch (const AddressBookError& error) {
        err << "calljournal: " << error.what() << '\n';
        return error.reason() == AddressBookError::Reason::option ? exitWrongUsage : exitRefused;
    } catch (const std::exception& error) {
        err << "calljournal: " << error.what() << '\n';
    }
    return exitRefused;
}

void addConvertCommand(CLI::App& app, CommandContext& context) {
    CLI::App* convert = app.add_subcommand("convert", "Turn any address book into a file that the phone imports");
    auto options = std::make_shared<ConvertOptions>();
    CLI::Option* files =
        convert->add_option("files", options->files, "CSV or vCard files of any program; they stay as they are");
    files->required();
    CLI::Option* out = convert->add_option("-o,--out", options->out, "the file to write; standard output if absent");
    addWordOption(*convert, context, "--to", options->to,
                  {{"tamber", ContactFormat::phone}, {"vcard", ContactFormat::vCard}, {"json", ContactFormat::json}},
                  "tamber (the phone's own layout), vcard or json");
    addWordOption(*convert, context, "--numbers", options->numbers,
                  {{"keep", NumberStyle::keep},
                   {"international", NumberStyle::international},
                   {"dialable", NumberStyle::dialable}},
                  "keep, international or dialable");
    convert->add_option("--from-charset", options->fromCharset, "the character set, where it cannot be found out");
    CLI::Option* columns = convert->add_option("--columns", options->columns, "a file with more names of columns");
    convert->add_option("--map", options->maps, "what a column means: \"Handy=Mobile1\"; \"Handy=-\" leaves it out")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    addWordOption(*convert, context, "--report", options->report,
                  {{"text", ConvertReport::text}, {"json", ConvertReport::json}},
                  "tell about every record, as text or json");
    convert->add_flag("--dry-run", options->isDryRun, "do everything, prove it, and write nothing");
    convert->add_flag("--merge", options->merge, "make one contact of those that are one person");
    convert->add_flag("--force", options->force, "overwrite files that are there");
    convert->add_flag("--cut", options->cut, "leave out what the phone does not hold, rather than write further files");
    CLI::Option* limit = convert->add_option("--limit", options->limit, "contacts that the phone holds: 100, or 1000");
    limit->check(CLI::IsMember(std::set<unsigned>{100, 1000}));
    convert->add_option("--existing", options->existing, "contacts that it holds already")->check(CLI::Range(0, 1000));
    for (const CLI::Option* option : {files, out, columns}) {
        context.offers[option] = {fileOffer};
    }
    context.offers[limit] = {"100", "1000"};
    convert->callback([&context, options] {
        context.action = [&context, options] {
            options->region = context.globals.region;
            return convertBooks(*options, context.out, context.err);
        };
    });
}

}  // namespace calljournal
