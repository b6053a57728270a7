// Times the two steps that any listing of the missed calls of a store has to take, for script/bench: asking the store
// for the reply, and reading the list from it. Prints "ENTRIES MILLISECONDS MILLISECONDS", the least of a few rounds.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <deque>
#include <string>

#include "CallListDatabaseAdapter.h"
#include "CallListDatabaseAdapterHelper.h"
#include "SqlDataAccessService.h"

namespace {

using Clock = std::chrono::steady_clock;
using Rounds = std::array<double, 9>;

template <class Work>
double millisecondsOf(const Work& work) {
    const Clock::time_point start = Clock::now();
    work();
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double least(const Rounds& rounds) {
    return *std::min_element(rounds.begin(), rounds.end());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: bench_reply STORE\n");
        return 2;
    }
    CallListDatabaseAdapterHelper::init();
    calljournal::SqlDataAccessService store(argv[1]);
    CallListDatabaseAdapter adapter;
    adapter.init(&store);
    std::deque<MissedCallItem> list;
    Rounds asking{};
    Rounds reading{};
    for (std::size_t i = 0; i < asking.size(); ++i) {
        std::string reply;
        asking[i] = millisecondsOf(
            [&] { reply = adapter.processRequest(CallListDatabaseAdapterHelper::readMissedCallList()); });
        reading[i] = millisecondsOf([&] { adapter.processMissedCallDbXml(reply, list); });
    }
    std::printf("%zu %.3f %.3f\n", list.size(), least(asking), least(reading));
    return 0;
}
