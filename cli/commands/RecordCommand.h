#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "JsonText.h"
#include "Session.h"

namespace calljournal {

/// What `record` was asked to do: one call given by options, or a file of calls.
struct RecordOptions {
    std::string kind;
    Json call = Json::object();  ///< Elements by name.
    std::string from;            ///< A file of JSON objects, "-" for standard input; empty for none.
    bool notify = false;
};

/// Records `calls`, which are checked (see CallRecord.h), and says on `out` what was written.
void recordCalls(const RecordOptions& options, const std::vector<Json>& calls, Session& session,
                 const GlobalOptions& globals, std::ostream& out);

/// Declares `record`.
void addRecordCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal
