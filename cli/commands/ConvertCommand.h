#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "CommandContext.h"
#include "Conversion.h"
#include "ConvertReport.h"

namespace calljournal {

/// What `calljournal convert` is asked to do.
struct ConvertOptions {
    ConversionOptions conversion;   ///< Its `out` empty for standard output.
    std::vector<std::string> maps;  ///< "Handy=Mobile1".
    ConvertReport::Detail report = ConvertReport::remarkable;
    bool isDryRun = false;
    bool isPassedOn = false;  ///< The file is for another step, so its name is not reported.
};

/// Converts address books to contacts that a phone imports without loss, and reports what it did: on `out`, or on `err`
/// if the contacts themselves go to `out`. Returns exitRefused if nothing was delivered.
ExitCode convertBooks(const ConvertOptions& options, std::ostream& out, std::ostream& err);

/// Declares `convert`.
void addConvertCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal
