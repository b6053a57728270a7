#include "ConvertCommand.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <ostream>
#include <set>
#include <stdexcept>

#include "ErrorMessage.h"
#include "Files.h"
#include "Interruption.h"
#include "ProgressBar.h"
#include "Region.h"
#include "WordOption.h"

namespace calljournal {

namespace {

ConversionOptions conversionOf(const ConvertOptions& options) {
    ConversionOptions conversion = options.conversion;
    std::transform(options.maps.begin(), options.maps.end(), std::back_inserter(conversion.reading.mappings),
                   columnMapping);
    if (options.isDryRun) {
        conversion.out.clear();
    }
    return conversion;
}

/// A report that shows on a terminal how far the conversion is.
class ReportWithProgress : public ConvertReport {
public:
    ReportWithProgress(const ConvertOptions& options, std::ostream& out)
        : ConvertReport(options.report, options.conversion.books, out),
          files_(options.conversion.books),
          bar_(terminalDrawing()) {}

    void step(ConversionStep step, std::size_t file) override {
        position_.set(0, 0);
        bar_.start(step == ConversionStep::reading     ? "reading " + files_[file]
                   : step == ConversionStep::comparing ? "comparing contacts"
                                                       : "writing contacts",
                   [this] { return position_.get(); });
    }

    void progress(std::uint64_t done, std::uint64_t total) override { position_.set(done, total); }

private:
    const std::vector<std::string>& files_;
    SharedPosition position_;
    ProgressBar bar_;
};

void copyTo(std::ostream& out, const std::vector<std::string>& files) {
    if (files.size() > 1) {
        throw ContactFilesError("these are " + std::to_string(files.size()) +
                                " files; name the first with -o, or ask for one with --cut");
    }
    std::ifstream file(files.front(), std::ios::binary);
    readPieces(file, [&out](std::string_view piece) { out << piece; });
}

void convert(const ConvertOptions& options, std::ostream& out, std::ostream& err) {
    const bool isToOutput = options.conversion.out.empty() && !options.isDryRun;
    ReportWithProgress report(options, isToOutput ? err : out);
    Conversion conversion(conversionOf(options), report);
    conversion.run();
    std::vector<std::string> names;
    if (isToOutput) {
        copyTo(out, conversion.files());
    } else if (!options.isDryRun) {
        names = conversion.publish();
    }
    report.finish(conversion.counts(), options.isPassedOn ? std::vector<std::string>() : names);
}

}  // namespace

ExitCode convertBooks(const ConvertOptions& options, std::ostream& out, std::ostream& err) {
    const Interruption interruption;
    try {
        convert(options, out, err);
        return exitDone;
    } catch (const AddressBookError& error) {
        printError(err, error.what());
        return error.reason() == AddressBookError::Reason::option ? exitWrongUsage : exitRefused;
    } catch (const std::runtime_error& error) {
        printError(err, error.what());
    }
    return exitRefused;
}

void addConvertCommand(CLI::App& app, CommandContext& context) {
    CLI::App* convert = app.add_subcommand("convert", "Turn any address book into a file that the phone imports");
    auto options = std::make_shared<ConvertOptions>();
    ConversionOptions& into = options->conversion;
    CLI::Option* files =
        convert->add_option("files", into.books, "CSV or vCard files of any program; they stay as they are");
    files->required();
    CLI::Option* out = convert->add_option("-o,--out", into.out, "the file to write; standard output if absent");
    addWordOption(*convert, context, "--to", into.format,
                  {{"tamber", ContactFormat::phone}, {"vcard", ContactFormat::vCard}, {"json", ContactFormat::json}},
                  "tamber (the phone's own layout), vcard or json");
    addWordOption(*convert, context, "--numbers", into.numbers,
                  {{"keep", NumberStyle::keep},
                   {"international", NumberStyle::international},
                   {"dialable", NumberStyle::dialable}},
                  "keep, international or dialable");
    convert->add_option("--from-charset", into.reading.charset, "the character set, where it cannot be found out");
    CLI::Option* columns =
        convert->add_option("--columns", into.reading.columnsFile, "a file with more names of columns");
    convert->add_option("--map", options->maps, "what a column means: \"Handy=Mobile1\"; \"Handy=-\" leaves it out")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    addWordOption(*convert, context, "--report", options->report,
                  {{"text", ConvertReport::text}, {"json", ConvertReport::json}},
                  "tell about every record, as text or json");
    convert->add_flag("--dry-run", options->isDryRun, "do everything, prove it, and write nothing");
    convert->add_flag("--merge", into.merge, "make one contact of those that are one person");
    convert->add_flag("--force", into.overwrite, "overwrite files that are there");
    convert->add_flag("--cut", into.cut, "leave out what the phone does not hold, rather than write further files");
    CLI::Option* limit = convert->add_option("--limit", into.limit, "contacts that the phone holds: 100, or 1000");
    limit->check(CLI::IsMember(std::set<unsigned>{100, 1000}));
    convert->add_option("--existing", into.existing, "contacts that it holds already")->check(CLI::Range(0, 1000));
    for (const CLI::Option* option : {files, out, columns}) {
        context.offers[option] = {fileOffer};
    }
    context.offers[limit] = {"100", "1000"};
    convert->callback([&context, options] {
        context.action = [&context, options] {
            options->conversion.region = usersRegion(context.globals);
            return convertBooks(*options, context.out, context.err);
        };
    });
}

}  // namespace calljournal
