#pragma once

#include <cstddef>
#include <list>
#include <utility>

namespace calljournal::detail {

/// How many calls an entry takes one by one. A list handed over whole may be longer and stays so.
constexpr std::size_t callLimit = 10;

/// Puts a new call in front; beyond the limit one call, the oldest, leaves.
template <class Call>
void addNewest(std::list<Call>& calls, const Call& call) {
    calls.push_front(call);
    if (calls.size() > callLimit) {
        calls.pop_back();
    }
}

/// Puts an older call at the back while there is room.
template <class Call, class GivenCall>
void appendOlder(std::list<Call>& calls, GivenCall&& call) {
    if (calls.size() < callLimit) {
        calls.push_back(std::forward<GivenCall>(call));
    }
}

}  // namespace calljournal::detail
