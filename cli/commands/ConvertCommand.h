#ifndef CALLJOURNAL_CONVERTCOMMAND_H
#define CALLJOURNAL_CONVERTCOMMAND_H

#include <iosfwd>
#include <string>
#include <vector>

#include "CommandContext.h"
#include "ContactFiles.h"
#include "ContactMapper.h"
#include "ConvertReport.h"

namespace calljournal {

/// What `calljournal convert` is asked to do.
struct ConvertOptions {
    std::vector<std::string> files;
    std::string out;  ///< The file to write; empty for standard output.
    ContactFormat to = ContactFormat::phone;
    std::string region;  ///< Empty for the locale's.
    NumberStyle numbers = NumberStyle::keep;
    std::string fromCharset;        ///< Empty to find out.
    std::string columns;            ///< A file with more names of columns; or empty.
    std::vector<std::string> maps;  ///< "Handy=Mobile1".
    ConvertReport::Detail report = ConvertReport::remarkable;
    bool isDryRun = false;
    bool isPassedOn = false;  ///< The file is for another step, so its name is not reported.
    bool merge = false;
    bool force = false;
    bool cut = false;       ///< Leave out what does not fit, rather than write further files.
    unsigned limit = 0;     ///< Contacts that the phone holds, 100 or 1000; 0: 100 for a phone's file, else none.
    unsigned existing = 0;  ///< Contacts that it holds already.
};

/// Converts address books to contacts that a phone imports without loss, and reports what it did: on `out`, or on `err`
/// if the contacts themselves go to `out`. Returns exitRefused if nothing was delivered.
ExitCode convertBooks(const ConvertOptions& options, std::ostream& out, std::ostream& err);

/// Declares `convert`.
void addConvertCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal

#endif
