// Times the two steps that any listing of the missed calls of a store has to take, for script/bench: asking the store
// for the reply, and reading the list from it. Once each, as in a process that lists: the memory is fresh. Prints
// "ENTRIES MILLISECONDS MILLISECONDS".

#include <chrono>
#include <cstdio>
#include <deque>
#include <string>

#include "CallListDatabaseAdapter.h"
#include "CallListDatabaseAdapterHelper.h"
#include "Store.h"

namespace {

using Clock = std::chrono::steady_clock;

template <class Work>
double millisecondsOf(const Work& work) {
    const Clock::time_point start = Clock::now();
    work();
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: bench_reply STORE\n");
        return 2;
    }
    CallListDatabaseAdapterHelper::init();
    const std::unique_ptr<calljournal::Store> store = calljournal::openStore(argv[1]);
    CallListDatabaseAdapter adapter;
    adapter.init(store.get());
    std::deque<MissedCallItem> list;
    std::string reply;
    const double asking =
        millisecondsOf([&] { reply = adapter.processRequest(CallListDatabaseAdapterHelper::readMissedCallList()); });
    const double reading = millisecondsOf([&] { adapter.processMissedCallDbXml(reply, list); });
    std::printf("%zu %.3f %.3f\n", list.size(), asking, reading);
    return 0;
}
