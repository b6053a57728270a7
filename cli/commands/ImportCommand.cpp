#include "ImportCommand.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <ostream>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "ContactJson.h"
#include "ContactViews.h"
#include "ConvertCommand.h"
#include "ErrorMessage.h"
#include "HostPlatform.h"
#include "ImportCheck.h"
#include "ImportContactsCSVParser.h"
#include "ImportReplay.h"
#include "Interruption.h"
#include "PrintableText.h"
#include "PrivateCopy.h"
#include "ProgressBar.h"
#include "Region.h"
#include "Storage.h"
#include "TemporaryFolder.h"
#include "Terminal.h"
#include "VCard.h"
#include "ValueError.h"
#include "WordOption.h"
#include "Wording.h"

namespace calljournal {

namespace {

/// The phone that this machine plays; an nq takes 1000 contacts, the others 100.
enum class Hardware { standard, nq, tq2 };

/// What `calljournal import` is asked to do.
struct ImportOptions {
    std::vector<std::string> files;
    bool check = false;       ///< Say what an import would do; show no contacts.
    bool consume = false;     ///< Delete each file that the importer was asked about, whatever the outcome.
    bool convert = false;     ///< Convert each file first, whatever program it is from.
    bool fromLatin1 = false;  ///< The files are ISO 8859-1.
    Hardware hardware = Hardware::standard;
    unsigned existing = 0;                          ///< Contacts that the phonebook holds already.
    OutputFormat format = OutputFormat::automatic;  ///< Any but xml.
};

constexpr const char* outcomeNames[] = {"CSV_NO_CAPACITY",
                                        "CSV_INVALID_DELIMITERS",
                                        "CSV_TOO_MANY_HEADERS",
                                        "CSV_INVALID_HEADERS",
                                        "CSV_INVALID_DEFAULT_DIAL",
                                        "CSV_COLUMN_MISMATCH",
                                        "CSV_FILE_ERROR",
                                        "CSV_TAMBER",
                                        "CSV_OUTLOOK"};
static_assert(sizeof outcomeNames / sizeof *outcomeNames == CSV_OUTLOOK + 1, "a name for each outcome");

bool isSuccess(int outcome) {
    return outcome == CSV_TAMBER || outcome == CSV_OUTLOOK;
}

/// Keeps the log off while the object lives.
class QuietLog {
public:
    explicit QuietLog(int level) : level_(level) { setLogLevel(0); }
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;
    ~QuietLog() { setLogLevel(level_); }

private:
    int level_;
};

/// The sentence with texts of the file as a terminal bears them.
std::string shown(const Sentence& sentence) {
    constexpr std::size_t widestText = 40;
    return sentence.text([](const std::string& text) { return fitted(printable(text), widestText); });
}

/// The sentence of a refused file: what ended the import, and what was wrong before.
std::string refusal(const ImportReplay& replay, int outcome, const std::string& folder) {
    const auto& faults = replay.faults();
    if (faults.empty() || faults.back().outcome != outcome) {
        return outcome == CSV_NO_CAPACITY ? "too little free space in " + folder : "the file cannot be read";
    }
    std::string sentence = shown(faults.back().sentence);
    for (std::size_t earlier = 0; earlier + 1 < faults.size(); ++earlier) {
        sentence += "; and before that, " + shown(faults[earlier].sentence);
    }
    return sentence;
}

/// The import of one file.
class FileImport {
public:
    FileImport(const std::string& file, const ImportOptions& options, const CommandContext& context)
        : file_(file), shownName_(printable(file)), options_(options), context_(context), bar_(terminalDrawing()) {}

    /// Returns whether the file was, or would be, imported.
    bool run() {
        if (options_.files.size() > 1 && isForPeople()) {
            context_.out << "== " << shownName_ << '\n';
        }
        const TemporaryFolder folder;
        const std::string source = options_.convert ? (folder.path() / "converted.csv").string() : file_;
        if (options_.convert && !convertTo(source)) {
            return false;
        }
        constexpr int tq2Variant = 1;
        setHardware(options_.hardware == Hardware::nq, options_.hardware == Hardware::tq2 ? tq2Variant : 0);
        setDataDirectory(folder.path());
        const std::string copy = folder.path() / "contacts.csv";
        const CopyResult copied = copyFile(source, copy);
        if (copied.state == CopyResult::stopped) {
            tell(copied.problem);
            return false;
        }
        return importCopy(copy, folder.path() / "contacts-again.csv", copied);
    }

private:
    bool isForPeople() const { return options_.check || options_.format == OutputFormat::table; }

    /// Converts the file for the phone that is played, as far as its contacts fit.
    bool convertTo(const std::string& target) {
        ConvertOptions converting;
        converting.conversion.books = {file_};
        converting.conversion.reading.charset = options_.fromLatin1 ? "ISO-8859-1" : "";
        converting.conversion.region = usersRegion(context_.globals);
        converting.conversion.out = target;
        converting.conversion.cut = true;
        converting.conversion.limit = options_.hardware == Hardware::nq ? 1000 : 100;
        converting.conversion.existing = options_.existing;
        converting.isPassedOn = true;
        return convertBooks(converting, context_.err, context_.err) == exitDone;
    }

    CopyResult copyFile(const std::string& source, const std::string& copy) {
        auto position = std::make_shared<SharedPosition>();
        bar_.start("copying " + file_, [position] { return position->get(); });
        CopyOptions copying;
        copying.fromLatin1 = options_.fromLatin1 && !options_.convert;
        copying.progress = [position](std::uint64_t done, std::uint64_t total) { position->set(done, total); };
        return copyPrivately(source, copy, copying);
    }

    bool importCopy(const std::string& copy, const std::string& again, const CopyResult& copied) {
        // The importer deletes what it has read; by another name the same bytes stay for a second look.
        const bool isThere = ::link(copy.c_str(), again.c_str()) == 0;
        const std::uint64_t size = isThere ? std::filesystem::file_size(copy) : 0;
        bar_.start("importing " + file_, [copy, size] { return ProgressBar::Position{readPosition(copy), size}; });
        const ImportContactsCSVParser import(copy, options_.existing);
        const int outcome = import.getCSVType();
        const std::vector<Contact> contacts = import.getContacts();
        if (copied.hadByteOrderMark) {
            tell("the byte-order mark in front was left out");
        }
        std::string sentence;
        if (!isThere) {
            sentence = copied.problem;
        } else if (options_.check || !isSuccess(outcome)) {
            sentence = lookAgain(again, size, outcome);
        }
        if (isSuccess(outcome)) {
            if (!options_.check) {
                show(contacts, outcome);
            }
            sentence = counted(contacts.size(), "contact") + (options_.check ? " would be" : "") + " imported";
        }
        if (copied.isUtf16) {
            sentence += "; the file is UTF-16 and has to be saved as UTF-8";
        }
        tell(std::string(outcomeNames[outcome]) + " (" + std::to_string(outcome) + "): " + sentence);
        if (options_.consume) {
            context_.out.flush();  // throws if what was in the file cannot be shown
            consume();
        }
        return isSuccess(outcome);
    }

    /// Deletes ordinary files only: a link such as /dev/stdin is not the user's to give away.
    void consume() {
        std::error_code error;
        const std::filesystem::file_status status = std::filesystem::symlink_status(file_, error);
        if (std::filesystem::is_regular_file(status)) {
            Storage::deleteFile_noEx(file_);
        }
        if (std::filesystem::exists(std::filesystem::symlink_status(file_, error))) {
            printError(context_.err, shownName_ + ": cannot be deleted");
        }
    }

    /// Finds what is wrong with a refused file, and what a check has to say. Returns the sentence of a refused file.
    std::string lookAgain(const std::string& again, std::uint64_t size, int outcome) {
        const QuietLog quiet(context_.globals.log);
        auto position = std::make_shared<SharedPosition>();
        bar_.start("looking at " + file_, [position] { return position->get(); });
        const auto progress = [&](std::uint64_t done) { position->set(done, size); };
        const std::string folder = std::filesystem::path(again).parent_path();
        if (!options_.check) {
            ImportReplay replay(options_.existing);
            replay.replay(again, progress);
            return refusal(replay, outcome, folder);
        }
        ImportCheck check(options_.existing);
        check.replay(again, progress);
        for (const Sentence& line : check.report()) {
            context_.out << "  " << shown(line) << '\n';
        }
        return refusal(check, outcome, folder);
    }

    void show(const std::vector<Contact>& contacts, int layout) {
        if (options_.format == OutputFormat::table) {
            if (!contacts.empty()) {
                printContactTable(contacts, context_.out, terminalWidth());
            }
            return;
        }
        for (const Contact& contact : contacts) {
            context_.out << (options_.format == OutputFormat::vCard ? toVCard(contact, layout)
                                                                    : contactJson(contact) + '\n');
        }
    }

    /// Says something about the file: to people below its contacts, else beside the data.
    void tell(const std::string& sentence) {
        (isForPeople() ? context_.out : context_.err) << shownName_ << ": " << printable(sentence) << '\n';
    }

    const std::string& file_;
    const std::string shownName_;
    const ImportOptions& options_;
    const CommandContext& context_;
    ProgressBar bar_;
};

/// The format of the import itself, else the one of the command line, else what suits the output.
OutputFormat importFormat(OutputFormat own, OutputFormat global) {
    if (own != OutputFormat::automatic) {
        return own;
    }
    if (global == OutputFormat::xml) {
        throw ValueError("an import has no such format: xml; it has table, json and vcard");
    }
    return global != OutputFormat::automatic ? global : isTerminal() ? OutputFormat::table : OutputFormat::json;
}

}  // namespace

void addImportCommand(CLI::App& app, CommandContext& context) {
    CLI::App* importing = app.add_subcommand("import", "Import contacts from CSV files, as the phone would");
    auto options = std::make_shared<ImportOptions>();
    CLI::Option* files =
        importing->add_option("files", options->files, "exported address books; they stay as they are");
    files->required();
    context.offers[files] = {fileOffer};
    importing->add_flag("--check", options->check, "tell what an import would do, and what would get lost");
    importing->add_flag("--consume", options->consume, "delete each file afterwards, as the phone does")
        ->excludes("--check");
    importing->add_flag("--convert", options->convert, "convert each file first, whatever program it is from")
        ->excludes("--consume");
    importing->add_flag("--from-latin1", options->fromLatin1, "the files are ISO 8859-1, as old exports are");
    addWordOption(*importing, context, "--hardware", options->hardware,
                  {{"standard", Hardware::standard}, {"nq", Hardware::nq}, {"tq2", Hardware::tq2}},
                  "the phone: standard, nq (1000 contacts) or tq2");
    importing->add_option("--existing", options->existing, "contacts that the phonebook holds already")
        ->check(CLI::Range(0, 1000000));
    addWordOption(*importing, context, "--format", options->format,
                  {{"table", OutputFormat::table}, {"json", OutputFormat::json}, {"vcard", OutputFormat::vCard}},
                  "table, json or vcard");
    importing->callback([&context, options] {
        context.action = [&context, options] {
            options->format = importFormat(options->format, context.globals.format);
            const Interruption interruption;
            bool isAllImported = true;
            for (const std::string& file : options->files) {
                isAllImported = FileImport(file, *options, context).run() && isAllImported;
            }
            return isAllImported ? exitDone : exitRefused;
        };
    });
}

}  // namespace calljournal
