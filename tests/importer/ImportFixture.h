#pragma once

#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "Contact.h"
#include "FakePlatform.h"

typedef std::vector<std::string> Texts;

/// A file in the folder for temporary files that is gone with the object, whoever removed it.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& content);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& path() const { return path_; }
    bool exists() const;

private:
    std::string path_;
};

/// What one import came to.
struct Outcome {
    int code = -1;
    Texts contacts;  ///< As describe() has them.
    Texts log;
};

/// Imports a file of that content. Expects that the file is deleted, once, and that every log line bears the names and
/// the level of the importer.
Outcome importText(const std::string& content, unsigned existingContacts = 0);

/// Returns the members of `contact` that are not in the state of a default contact, one "name=value" each, and
/// "dial=... source=..." in front.
std::string describe(const Contact& contact);
Texts describe(const std::vector<Contact>& contacts);

/// Returns the description of a contact from a file.
std::string imported(int defaultDial, const std::vector<std::pair<std::string, std::string>>& members);

std::string join(const Texts& columns, char separator);

/// The 12 column names of the Tamber layout.
const Texts& tamberNames();

/// A Tamber header with line feed.
std::string tamberHeader(char separator = ';');

/// `count` names; with line feed.
std::string anyHeader(std::size_t count, char separator);

/// An Outlook header with line feed.
std::string outlookHeader(char separator = ',');

/// Columns `from` to `to`, the latter excluded, of an Outlook record, with the given texts and all others empty. No
/// line feed.
std::string outlookColumns(const std::map<std::size_t, std::string>& texts, std::size_t from = 0, std::size_t to = 92,
                           char separator = ',');

extern const char* const columnMismatch;
extern const char* const invalidType;
extern const char* const tooManyLines;

/// A fresh fake phone that logs what the importer has to say.
class ImportTest : public testing::Test {
protected:
    ImportTest();
};
