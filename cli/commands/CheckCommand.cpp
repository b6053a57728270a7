#include "CheckCommand.h"

#include <algorithm>
#include <fstream>
#include <istream>
#include <iterator>
#include <memory>
#include <ostream>
#include <set>
#include <stdexcept>

#include "CallListDatabaseAdapterHelper.h"
#include "EntryBody.h"
#include "EntryDiff.h"
#include "FieldValue.h"
#include "Message.h"
#include "MessageCheck.h"
#include "PrintableText.h"
#include "RecordCommand.h"
#include "Store.h"
#include "WordOption.h"
#include "Wording.h"

namespace calljournal {

namespace {

constexpr std::string_view storeMark = "SQLite format 3";
constexpr std::string_view declarationBegin = "<?xml ";

std::string readAll(std::istream& in) {
    return std::string{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string readInput(const std::string& path, std::istream& in) {
    if (path == "-") {
        return readAll(in);
    }
    std::ifstream file(path, std::ios::binary);
    std::string text = readAll(file);
    if (!file.is_open() || file.bad()) {
        throw std::runtime_error("cannot be read");
    }
    return text;
}

std::string nameOf(const std::string& path) {
    return path == "-" ? "standard input" : printable(path);
}

/// Turns offsets, which come in ascending order, into lines and columns.
class Position {
public:
    explicit Position(std::string_view text) : text_(text), lineEnd_(text.find('\n')) {}

    std::string of(std::size_t at) {
        while (lineEnd_ < at) {
            lineBegin_ = lineEnd_ + 1;
            lineEnd_ = text_.find('\n', lineBegin_);
            ++line_;
        }
        return "line " + std::to_string(line_) + ", column " + std::to_string(at - lineBegin_ + 1);
    }

private:
    std::string_view text_;
    std::size_t line_ = 1;
    std::size_t lineBegin_ = 0;
    std::size_t lineEnd_;
};

/// Returns where the messages of a capture begin and, behind them, its end. One begins on a line of its own, with the
/// XML declaration, behind the mark that --show-xml puts in front of a request or a reply.
std::vector<std::size_t> messageBounds(std::string_view text) {
    std::vector<std::size_t> bounds;
    for (std::size_t line = 0; line < text.size();) {
        const std::string_view rest = text.substr(line);
        const bool isMarked = rest.substr(0, 2) == "> " || rest.substr(0, 2) == "< ";
        const std::size_t begin = line + (isMarked ? 2 : 0);
        if (text.substr(begin, declarationBegin.size()) == declarationBegin) {
            bounds.push_back(begin);
        }
        const std::size_t end = text.find('\n', line);
        line = end == std::string_view::npos ? text.size() : end + 1;
    }
    if (bounds.empty() || text.find_first_not_of(" \t\r\n<>") < bounds.front()) {
        bounds.insert(bounds.begin(), 0);
    }
    bounds.push_back(text.size());
    return bounds;
}

/// Prints what the messages of a text are and what is wrong with them; returns whether nothing is.
bool report(const std::string& file, const std::string& text, const std::string& kind, std::ostream& out) {
    const std::vector<std::size_t> bounds = messageBounds(text);
    Position position(text);
    bool isFine = true;
    for (std::size_t i = 0; i + 1 < bounds.size(); ++i) {
        std::string_view message = std::string_view(text).substr(bounds[i], bounds[i + 1] - bounds[i]);
        const bool isMarked = i + 2 < bounds.size() && text[bounds[i + 1] - 1] == ' ';
        message.remove_suffix(isMarked ? 2 : 0);
        const std::string name = file + (bounds.size() == 2 ? "" : ": message " + std::to_string(i + 1));
        const CheckedMessage checked = checkMessage(message, kind);
        const std::size_t count = checked.findings.size();
        out << name << ": " << checked.title << ": "
            << (count == 0 ? "nothing found" : std::to_string(count) + (count == 1 ? " finding" : " findings")) << '\n';
        for (const Finding& finding : checked.findings) {
            out << name << ": " << position.of(bounds[i] + finding.at) << ": " << printable(finding.what) << '\n';
        }
        isFine = isFine && count == 0;
    }
    return isFine;
}

/// Checks the replies to the requests that read each schema of a store.
bool reportStore(const std::string& path, std::ostream& out) {
    const std::unique_ptr<Store> store = openStore(path);
    bool isFine = true;
    for (const KindDescriptor& kind : kindDescriptors()) {
        std::string request = CallListDatabaseAdapterHelper::createXMLField("ReasonForMessage", "read_request");
        CallListDatabaseAdapterHelper::addXMLHeaderFooter(request, std::string(kind.schema));
        const std::string name = nameOf(path) + ": " + std::string(kind.schema);
        isFine = report(name, store->processRequest(request), std::string(), out) && isFine;
    }
    return isFine;
}

bool checkFile(const std::string& path, const CheckOptions& options, std::istream& in, std::ostream& out) {
    const std::string text = readInput(path, in);
    if (path != "-" && text.compare(0, storeMark.size(), storeMark) == 0) {
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
        text = readInput(path, in);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(nameOf(path) + ": " + error.what());
    }
    const Message message = messageOf(text, options.kind);
    if (message.kind == nullptr || message.entries.size() != 1) {
        throw ValueError(nameOf(path) + ": a comparison takes a text with one entry, and this is: " + titleOf(message));
    }
    // A missed entry's picture goes by one name when it is written and by another when it is read.
    std::string body;
    appendWithPictureClip(message.bodyOf(message.entries.front()), body);
    return {message.kind, message.kind->decode(body.c_str())};
}

}  // namespace

ExitCode checkFiles(const CheckOptions& options, std::istream& in, std::ostream& out, std::ostream& err) {
    ExitCode code = exitDone;
    for (const std::string& path : options.files) {
        try {
            code = checkFile(path, options, in, out) ? code : exitRefused;
        } catch (const std::runtime_error& error) {
            err << "calljournal: " << nameOf(path) << ": " << printable(error.what()) << '\n';
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
    const std::vector<std::string> lines = diffEntries(*a.kind, a.values, b.values);
    for (const std::string& line : lines) {
        out << line << '\n';
    }
    return lines.empty() ? exitDone : exitRefused;
}

void addCheckCommand(CLI::App& app, CommandContext& context) {
    CLI::App* check = app.add_subcommand("check", "Say what is wrong with captured messages or a store");
    auto options = std::make_shared<CheckOptions>();
    CLI::Option* files = check->add_option("files", options->files,
                                           "requests, replies, notifications, entries or stores; - for standard input");
    files->required();
    context.offers[files] = {fileOffer};
    const std::vector<std::string> kinds = recordableKinds();
    CLI::Option* kind =
        check->add_option("--kind", options->kind, "the kind of entries that do not tell: " + joined(kinds));
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
