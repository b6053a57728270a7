#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "CommandContext.h"

namespace calljournal {

/// The phone that this machine plays; an nq takes 1000 contacts, the others 100.
enum class Hardware { standard, nq, tq2 };

/// What `calljournal import` is asked to do.
struct ImportOptions {
    std::vector<std::string> files;
    bool check = false;       ///< Say what an import would do; show no contacts.
    bool consume = false;     ///< Delete each file that the importer was asked about, whatever the outcome.
    bool convert = false;     ///< Convert each file first, whatever program it is from.
    std::string region;       ///< Where numbers are dialled, for the conversion; empty for the locale's.
    bool fromLatin1 = false;  ///< The files are ISO 8859-1.
    Hardware hardware = Hardware::standard;
    unsigned existing = 0;                          ///< Contacts that the phonebook holds already.
    OutputFormat format = OutputFormat::automatic;  ///< Any but xml.
    int log = 0;  ///< The log level, which stays off while an import is looked at once more.
};

/// Imports each file from a private copy, shows its contacts and its outcome. The outcome goes to `err` where the
/// contacts are data for another program, below them otherwise. Returns exitRefused if any file was
/// refused.
ExitCode importFiles(const ImportOptions& options, std::ostream& out, std::ostream& err);

/// Declares `import`.
void addImportCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal
