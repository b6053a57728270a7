#pragma once

#include <string>
#include <vector>

#include "Contact.h"

/// The import told a second time: step by step, with no thought of speed, and without Boost, streams or the importer's
/// own code. Its state has the importer's names.
class ReferenceImporter {
public:
    /// Reads `content` as the file.
    ReferenceImporter(std::string content, unsigned existingContacts);

    void parseFile(bool isNq);
    void lineContentParser();

    std::vector<Contact> contacts;
    std::vector<int> columnMap;
    std::vector<std::string> tokens;
    char separator = ';';
    int csvType = 6;
    bool headerPending = true;
    unsigned headerCount = 0;
    unsigned lineCount;
    std::string line;
    std::string nextLine;
    bool fileOpen = false;
    std::vector<std::string> log;
    bool isTq2 = false;

private:
    bool readLine(std::string& into);
    void parseLines(bool isNq);
    void headerLineParser();
    void tokenizeLine();
    bool assembleRecord();
    bool fillUp();
    Contact tamberContact() const;
    Contact outlookContact() const;

    std::string content_;
    std::size_t position_ = 0;
    bool atEnd_ = false;
};

/// Returns the longest prefix that takes at most 249 bytes when it is escaped.
std::string longestFittingPrefix(const std::string& field);

/// Returns whether `text` matches the grammar of RFC 3629.
bool matchesUtf8Grammar(const char* text);
