#include <fstream>
#include <iostream>
#include <iterator>

#include "ContactSections.h"
#include "FormatSections.h"

namespace {

std::string readAll(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return std::string{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::string brought(const std::string& path, const std::string& document) {
    if (endsWith(path, ".5")) {
        return calljournal::withSections(document, calljournal::manualSections(), calljournal::manualMarks);
    }
    return calljournal::withSections(
        document, endsWith(path, "contacts.md") ? calljournal::contactSections() : calljournal::formatSections());
}

}  // namespace

/// "format_tables FILE" fails unless the generated sections of the document, Markdown or a manual page, are up to date;
/// "format_tables FILE --rewrite" brings them up to date.
int main(int argc, char** argv) try {
    if (argc < 2) {
        std::cerr << "usage: format_tables FILE [--rewrite]\n";
        return 2;
    }
    const std::string document = readAll(argv[1]);
    const std::string current = brought(argv[1], document);
    if (argc > 2) {
        std::ofstream(argv[1], std::ios::binary) << current;
        return 0;
    }
    if (document != current) {
        std::cerr << argv[1] << " differs from the code's tables; run script/lib/format-doc\n";
        return 1;
    }
    return 0;
} catch (const std::exception& error) {
    std::cerr << argv[1] << ": " << error.what() << '\n';
    return 1;
}
