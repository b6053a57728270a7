#ifndef CALLJOURNAL_RECORDCOMMAND_H
#define CALLJOURNAL_RECORDCOMMAND_H

#include <iosfwd>
#include <string>
#include <vector>

#include "ItemJson.h"
#include "Session.h"

namespace calljournal {

/// What `record` was asked to do: one call given by options, or a file of calls.
struct RecordOptions {
    std::string kind;
    Json call = Json::object();  ///< Elements by name.
    std::string from;            ///< A file of JSON objects, "-" for standard input; empty for none.
    bool notify = false;
};

/// The kinds of call and "callback".
std::vector<std::string> recordableKinds();

/// Returns `json` with its "Kind" written down, `kind` where it names none. Throws ValueError unless it is a call of a
/// known kind whose elements make sense.
Json checkedCall(Json json, const std::string& kind);

/// Reads calls from JSON: one array of objects, or one object a line. Each names its "Kind"; `kind` stands in where it
/// does not. Returns [{"Kind", elements...}, ...]. Throws ValueError that names the line.
std::vector<Json> readCallFile(std::istream& in, const std::string& kind);

/// Records and says on `out` what was written. Throws ValueError for values that make no sense, before anything is
/// written.
void recordCalls(const RecordOptions& options, const std::vector<Json>& calls, Session& session,
                 const GlobalOptions& globals, std::ostream& out);

/// Declares `record`.
void addRecordCommand(CLI::App& app, CommandContext& context);

}  // namespace calljournal

#endif
