#ifndef CALLJOURNAL_CHECKCOMMAND_H
#define CALLJOURNAL_CHECKCOMMAND_H

#include <iosfwd>
#include <string>
#include <vector>

#include "CommandContext.h"

namespace calljournal {

struct CheckOptions {
    std::vector<std::string> files;  ///< Paths; "-" stands for standard input.
    std::string kind;                ///< Of entries that say nothing of it; empty for the kind that fits.
    bool isDiff = false;
};

/// Says for each file what it is and what is wrong with it: a request, a reply, a notification, entries, or a store.
/// Returns exitRefused if it found something or cannot read a file.
ExitCode checkFiles(const CheckOptions& options, std::istream& in, std::ostream& out, std::ostream& err);

/// Prints each value in which the entries of two files differ. Throws ValueError unless there are two files with one
/// entry each, of one kind.
ExitCode diffFiles(const CheckOptions& options, std::istream& in, std::ostream& out);

/// Declares `check`.
void addCheckCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal

#endif
