#include "CheckCommand.h"

#include <algorithm>
#include <fstream>
#include <istream>
#include <iterator>
#include <ostream>
#include <stdexcept>

#include "CallListDatabaseAdapterHelper.h"
#include "EntryBody.h"
#include "EntryDiff.h"
#include "FieldValue.h"
#include "Message.h"
#include "MessageCheck.h"
#include "SqlDataAccessService.h"
#include "Terminal.h"

namespace calljournal {

namespace {

constexpr std::string_view storeMark = "SQLite format 3";

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

/// Prints what one message is and what is wrong with it; returns whether nothing is.
bool report(const std::string& name, const std::string& text, const std::string& kind, std::ostream& out) {
    const CheckedMessage checked = checkMessage(text, kind);
    const std::size_t count = checked.findings.size();
    out << name << ": " << checked.title << ": "
        << (count == 0 ? "nothing found" : std::to_string(count) + (count == 1 ? " finding" : " findings")) << '\n';
    Position position(text);
    for (const Finding& finding : checked.findings) {
        out << name << ": " << position.of(finding.at) << ": " << printable(finding.what) << '\n';
    }
    return count == 0;
}

/// Checks the replies to the requests that read each schema of a store.
bool reportStore(const std::string& path, std::ostream& out) {
    SqlDataAccessService store(path);
    bool isFine = true;
    for (const KindShape& kind : kindShapes()) {
        std::string request = CallListDatabaseAdapterHelper::createXMLField("ReasonForMessage", "read_request");
        CallListDatabaseAdapterHelper::addXMLHeaderFooter(request, std::string(kind.schema));
        const std::string name = nameOf(path) + ": " + std::string(kind.schema);
        isFine = report(name, store.processRequest(request), std::string(), out) && isFine;
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
    const KindShape* kind;
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

}  // namespace calljournal
