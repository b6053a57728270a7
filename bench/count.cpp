// Runs one job on the library once, for script/check/bench-count: `bench_count JOB FORM N`. Instructions are counted by
// callgrind, which collects while the job itself runs; allocations are counted here. Prints
// "BYTES ENTRIES ALLOCATIONS KEPT", KEPT being the allocations that the result itself takes.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <map>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <valgrind/callgrind.h>
#include <vector>

#include "CallListDatabaseAdapter.h"
#include "ClientUtils.h"
#include "Codec.h"
#include "Data.h"
#include "Events.h"
#include "HostPlatform.h"
#include "ImportContactsCSVParser.h"
#include "WorkCounters.h"

using Helper = CallListDatabaseAdapterHelper;

namespace {

template <class Work>
std::size_t allocationsOf(const Work& work) {
    const std::uint64_t before = workCounters().allocations;
    work();
    return workCounters().allocations - before;
}

/// What is measured: `work` alone. Returns its allocations.
template <class Work>
std::size_t measure(const Work& work) {
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_TOGGLE_COLLECT;
    const std::size_t count = allocationsOf(work);
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_STOP_INSTRUMENTATION;
    return count;
}

struct Result {
    std::size_t bytes;
    std::size_t entries;
    std::size_t allocations;
    std::size_t kept;
};

struct Size {
    bench::Form form;
    std::size_t count;
};

void demand(bool isRight) {
    if (!isRight) {
        std::fprintf(stderr, "bench_count: the result is wrong\n");
        std::exit(1);
    }
}

std::size_t bytesOf(const std::vector<std::string>& texts) {
    return std::accumulate(texts.begin(), texts.end(), std::size_t{0},
                           [](std::size_t sum, const std::string& text) { return sum + text.size(); });
}

template <class List>
std::size_t allocationsOfCopy(const List& list) {
    return allocationsOf([&] { const List copy(list); });
}

Result readList(Size size) {
    const auto items = bench::makeItems<MissedCallItem>(size.form, size.count);
    const std::string reply = bench::makeReply(items);
    std::deque<MissedCallItem> list;
    const std::size_t count = measure([&] { Helper::parseXMLMissedCallList(reply, list); });
    demand(bench::sameItems(list, items));
    return {reply.size(), size.count, count, allocationsOfCopy(list)};
}

Result replayCallbacks(Size size) {
    const auto items = bench::makeItems<MissedCallItem>(size.form, size.count);
    const std::string reply = bench::makeReply(items);
    const bench::Events events(reply);
    std::deque<MissedCallItem> list;
    const std::size_t count = measure([&] {
        Helper::MissedCallParser parser(list);
        events.replay(parser);
    });
    demand(bench::sameItems(list, items));
    return {reply.size(), size.count, count, allocationsOfCopy(list)};
}

template <class Item>
Result decode(Size size) {
    const auto items = bench::makeItems<Item>(size.form, size.count);
    std::vector<std::string> bodies;
    for (const Item& item : items) {
        bodies.push_back(bench::servedBody(item));
    }
    std::vector<Item> decoded(size.count);
    const std::size_t count = measure([&] {
        for (std::size_t i = 0; i < size.count; ++i) {
            bench::Codec<Item>::decode(bodies[i], decoded[i]);
        }
    });
    demand(bench::sameItems(decoded, items));
    return {bytesOf(bodies), size.count, count, allocationsOfCopy(decoded)};
}

template <class Item>
Result encode(Size size) {
    const auto items = bench::makeItems<Item>(size.form, size.count);
    std::vector<std::string> bodies(size.count);
    const std::size_t escaping = allocationsOf([&] {
        for (const Item& item : items) {
            ClientUtils::escapeXMLString(item.getSurname());
            ClientUtils::escapeXMLString(item.getFirstname());
        }
    });
    const std::size_t count = measure([&] {
        for (std::size_t i = 0; i < size.count; ++i) {
            bodies[i] = bench::Codec<Item>::encode(items[i]);
        }
    });
    return {bytesOf(bodies), size.count, count, size.count + escaping};
}

Result takeValues(Size size) {
    const auto texts = bench::makeCallTexts(bench::makeItems<MissedCallItem>(size.form, size.count));
    std::vector<std::string> tags;
    for (const auto& field : bench::Kind<MissedCallItem>::callFields) {
        tags.emplace_back(std::string_view(field.tag));
    }
    std::string value;
    std::size_t taken = 0;
    const std::size_t count = measure([&] {
        for (const std::string& text : texts) {
            const char* cursor = text.c_str();
            for (const std::string& tag : tags) {
                cursor = Helper::getXMLValue2(cursor, tag.c_str(), value);
                taken += value.size();
            }
        }
    });
    demand(taken > 0);
    return {bytesOf(texts), texts.size(), count, 0};
}

Result normalise(Size size) {
    std::deque<MissedCallItem> list = bench::shuffledList(size.count);
    CallListDatabaseAdapter adapter;
    const std::size_t count = measure([&] { adapter.normalizeMissedCallList(list); });
    for (std::size_t i = 1; i < list.size(); ++i) {
        demand(isMissedCallOrdered(list[i - 1], list[i]));
    }
    return {0, size.count, count, 0};
}

Result import(Size size) {
    const bench::ContactFile contacts = bench::makeContacts(size.count);
    const std::string path = "bench_count.csv";
    std::ofstream(path, std::ios::binary) << contacts.content;
    calljournal::setHardware(true, 0);
    // Kept until its contacts are looked at: taking it apart is not part of the import.
    std::unique_ptr<ImportContactsCSVParser> parser;
    const std::size_t count = measure([&] { parser = std::make_unique<ImportContactsCSVParser>(path, 0); });
    const std::vector<Contact> imported = parser->getContacts();
    demand(bench::sameItems(imported, contacts.contacts));
    const std::size_t texts = allocationsOfCopy(imported) - 1;
    return {contacts.content.size(), size.count, count, texts};
}

const std::map<std::string, Result (*)(Size)> jobs = {
    {"list", &readList},
    {"callbacks", &replayCallbacks},
    {"decode-missed", &decode<MissedCallItem>},
    {"decode-dialled", &decode<DialledCallItem>},
    {"decode-received", &decode<ReceivedCallItem>},
    {"decode-forwarded", &decode<ForwardedCallItem>},
    {"values", &takeValues},
    {"encode-missed", &encode<MissedCallItem>},
    {"encode-dialled", &encode<DialledCallItem>},
    {"encode-received", &encode<ReceivedCallItem>},
    {"encode-forwarded", &encode<ForwardedCallItem>},
    {"normalise", &normalise},
    {"import", &import},
};

}  // namespace

int main(int argc, char** argv) {
    const auto job = argc == 4 ? jobs.find(argv[1]) : jobs.end();
    if (job == jobs.end()) {
        std::fprintf(stderr, "usage: bench_count JOB full|mixed N\n");
        return 2;
    }
    Helper::init();
    const bench::Form form = std::string(argv[2]) == "full" ? bench::Form::full : bench::Form::mixed;
    const Result result = job->second({form, static_cast<std::size_t>(std::atol(argv[3]))});
    std::printf("%zu %zu %zu %zu\n", result.bytes, result.entries, result.allocations, result.kept);
    return 0;
}
