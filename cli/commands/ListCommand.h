#ifndef CALLJOURNAL_LISTCOMMAND_H
#define CALLJOURNAL_LISTCOMMAND_H

#include <iosfwd>
#include <string>

#include "Session.h"

namespace calljournal {

/// Which entries `list` shows.
struct ListOptions {
    std::string kind;       ///< A kind, or "all".
    std::string since;      ///< Newest call at or after this time; empty for no limit.
    std::string until;      ///< Newest call at or before this time; empty for no limit.
    std::string number;     ///< A call of this number; empty for any.
    std::string name;       ///< A part of the name, in any case; empty for any.
    std::size_t limit = 0;  ///< At most so many; 0 for all.
    bool follow = false;    ///< Go on with what changes.
};

/// Throws ValueError unless the times are times; a date alone stands for its first or last second.
void checkFilters(ListOptions& options);

/// Reads the entries and shows them on `out`, newest first, in the format of `globals`.
void listEntries(const ListOptions& options, Session& session, const GlobalOptions& globals, std::ostream& out);

/// Declares `list`.
void addListCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal

#endif
