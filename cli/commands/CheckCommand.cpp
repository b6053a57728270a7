#include "CheckCommand.h"

#include <fstream>
#include <istream>
#include <iterator>
#include <memory>
#include <ostream>
#include <set>
#include <stdexcept>

#include "Capture.h"
#include "EntryDiff.h"
#include "EntryIndex.h"
#include "ErrorMessage.h"
#include "Files.h"
#include "FindingView.h"
#include "Input.h"
#include "Interruption.h"
#include "KindDescriptor.h"
#include "Kinds.h"
#include "MessageCheck.h"
#include "PrintableText.h"
#include "Store.h"
#include "StoreCheck.h"
#include "TextPosition.h"
#include "ValueError.h"
#include "WordOption.h"
#include "Wording.h"

namespace calljournal {

namespace {

struct CheckOptions {
    std::vector<std::string> files;  ///< Paths; "-" is standard input.
    std::string kind;                ///< Of entries that do not say it; empty for the kind that fits.
    bool isDiff = false;
};

/// No store's mark is longer.
constexpr std::size_t longestMark = 16;

/// Returns the bytes of a file or of standard input; of a store the first ones alone, since it may be large.
std::string bytesOf(const std::string& path, std::istream& in) {
    if (path == "-") {
        return readAll(in);
    }
    std::ifstream file(path, std::ios::binary);
    std::string text(longestMark, '\0');
    file.read(text.data(), longestMark);
    text.resize(static_cast<std::size_t>(file.gcount()));
    if (!beginsLikeAStore(text)) {
        text += readAll(file);
    }
    return text;
}

std::string nameOf(const std::string& path) {
    return printable(inputName(path));
}

/// Prints what the messages of a text are and what is wrong with them; returns whether nothing is.
bool report(const std::string& file, const std::string& text, const std::string& kind, std::ostream& out) {
    const std::vector<CapturedMessage> messages = messagesOf(text);
    TextPosition position(text);
    bool isFine = true;
    for (std::size_t i = 0; i < messages.size(); ++i) {
        const std::string name = file + (messages.size() == 1 ? "" : ": message " + std::to_string(i + 1));
        const CheckedMessage checked = checkMessage(messages[i].text, kind);
        const std::size_t count = checked.findings.size();
        out << name << ": " << titleOf(checked.message, &showValue) << ": "
            << (count == 0 ? "nothing found" : counted(count, "finding")) << '\n';
        for (const Finding& finding : checked.findings) {
            out << name << ": " << position.of(messages[i].begin + finding.place.at) << ": "
                << sentenceOf(finding, &showValue) << '\n';
        }
        isFine = isFine && count == 0;
    }
    return isFine;
}

bool reportStore(const std::string& path, std::ostream& out) {
    const Interruption interruption;
    const std::unique_ptr<Store> store = openStoreCopy(path, indexEntry);
    bool isFine = true;
    for (const KindDescriptor& kind : kindDescriptors()) {
        const std::string name = nameOf(path) + ": " + std::string(kind.schema);
        isFine = report(name, readSchema(*store, kind.schema), std::string(), out) && isFine;
    }
    const std::vector<Finding> findings = checkIndex(*store);
    for (const Finding& finding : findings) {
        out << nameOf(path) << ": " << sentenceOf(finding, &showValue) << '\n';
    }
    return isFine && findings.empty();
}

bool checkFile(const std::string& path, const CheckOptions& options, std::istream& in, std::ostream& out) {
    const std::string text = bytesOf(path, in);
    if (path != "-" && beginsLikeAStore(text)) {
        return reportStore(path, out);
    }
    return report(nameOf(path), text, options.kind, out);
}

/// The only entry of a file.
struct OnlyEntry {
    const KindDescriptor* kind;
    EntryValues values;
};

OnlyEntry readOnlyEntry(const std::string& path, const CheckOptions& options, std::istream& in) {
    std::string text;
    try {
        text = bytesOf(path, in);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(nameOf(path) + ": " + error.what());
    }
    const Message message = messageOf(text, options.kind);
    std::optional<EntryValues> values = readOnlyEntry(message);
    if (!values) {
        throw ValueError(nameOf(path) +
                         ": a comparison takes a text with one entry, and this is: " + titleOf(message, &showValue));
    }
    return {message.kind, std::move(*values)};
}

std::string shown(const std::optional<std::string>& value) {
    return value ? printable(*value) : "(no such call)";
}

ExitCode checkFiles(const CheckOptions& options, std::istream& in, std::ostream& out, std::ostream& err) {
    ExitCode code = exitDone;
    for (const std::string& path : options.files) {
        try {
            code = checkFile(path, options, in, out) ? code : exitRefused;
        } catch (const std::runtime_error& error) {
            printError(err, inputName(path) + ": " + error.what());
            code = exitRefused;
        }
    }
    return code;
}

ExitCode diffFiles(const CheckOptions& options, std::istream& in, std::ostream& out) {
    if (options.files.size() != 2 || (options.files[0] == "-" && options.files[1] == "-")) {
        throw ValueError("--diff compares two files; give two");
    }
    const OnlyEntry a = readOnlyEntry(options.files[0], options, in);
    const OnlyEntry b = readOnlyEntry(options.files[1], options, in);
    if (a.kind != b.kind) {
        throw ValueError("a comparison takes entries of one kind; these are " + std::string(a.kind->name) + " and " +
                         std::string(b.kind->name));
    }
    const std::vector<Difference> differences = compareEntries(*a.kind, a.values, b.values);
    for (const Difference& difference : differences) {
        out << (difference.call == 0 ? "" : "call " + std::to_string(difference.call) + ", ") << difference.field
            << ": " << shown(difference.a) << " | " << shown(difference.b) << '\n';
    }
    return differences.empty() ? exitDone : exitRefused;
}

}  // namespace

void addCheckCommand(CLI::App& app, CommandContext& context) {
    CLI::App* check = app.add_subcommand("check", "Say what is wrong with captured messages or a store");
    auto options = std::make_shared<CheckOptions>();
    CLI::Option* files = check->add_option("files", options->files,
                                           "requests, replies, notifications, entries or stores; - for standard input");
    files->required();
    context.offers[files] = {fileOffer};
    const std::vector<std::string> kinds = kindNames();
    CLI::Option* kind =
        check->add_option("--kind", options->kind, "the kind of entries that do not say: " + joined(kinds));
    kind->check(CLI::IsMember(std::set<std::string>(kinds.begin(), kinds.end())));
    context.offers[kind] = kinds;
    check->add_flag("--diff", options->isDiff, "compare two files with one entry each, value by value");
    check->callback([&context, options] {
        context.action = [&context, options] {
            return options->isDiff ? diffFiles(*options, context.in, context.out)
                                   : checkFiles(*options, context.in, context.out, context.err);
        };
    });
}

}  // namespace calljournal
