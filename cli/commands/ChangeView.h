#pragma once

#include <functional>

#include "Filter.h"
#include "Session.h"

namespace calljournal {

/// Calls `list`, and then shows every change since then to a log of the filter's kinds, made by this process or another
/// one, with its notification: one line each, JSON objects with "Change" where the format is json. Returns when the user
/// interrupts.
void followEntries(const Filter& filter, Session& session, const std::function<void()>& list,
                   const CommandContext& context);

}  // namespace calljournal
