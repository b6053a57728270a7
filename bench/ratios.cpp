// Tells how many times the time of the library's jobs the rules, written down word for word, take. Needs nothing but
// the library and the phone's platform, so that it runs where Google Benchmark does not: under emulation, for
// script/bench.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "Codec.h"
#include "Data.h"
#include "Events.h"
#include "HostPlatform.h"
#include "ImportContactsCSVParser.h"
#include "WordForWord.h"

using Helper = CallListDatabaseAdapterHelper;
namespace wordForWord = bench::wordForWord;

namespace {

constexpr std::size_t count = 100;
constexpr int rounds = 9;

template <class Work>
double secondsOf(const Work& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Takes turns, each after `prepare`, and prints the ratio of the least times.
template <class Own, class Literal, class Prepare>
void compare(const std::string& job, const Own& own, const Literal& literal, const Prepare& prepare) {
    double ownLeast = std::numeric_limits<double>::max();
    double literalLeast = ownLeast;
    for (int round = 0; round < rounds; ++round) {
        prepare();
        ownLeast = std::min(ownLeast, secondsOf(own));
        prepare();
        literalLeast = std::min(literalLeast, secondsOf(literal));
    }
    std::printf("%-28s %8.2f\n", job.c_str(), literalLeast / ownLeast);
}

template <class Own, class Literal>
void compare(const std::string& job, const Own& own, const Literal& literal) {
    compare(job, own, literal, [] {});
}

void demand(bool isRight, const char* what) {
    if (!isRight) {
        std::fprintf(stderr, "bench_ratios: wrong result (%s)\n", what);
        std::exit(1);
    }
}

void compareLists(bench::Form form, const std::string& data) {
    const auto items = bench::makeItems<MissedCallItem>(form, count);
    const std::string reply = bench::makeReply(items);
    const bench::Events events(reply);
    std::deque<MissedCallItem> list;
    compare(
        "list " + data, [&] { Helper::parseXMLMissedCallList(reply, list); },
        [&] { wordForWord::readList(reply, list); });
    demand(bench::sameItems(list, items), "list");
    compare(
        "callbacks " + data,
        [&] {
            list.clear();
            Helper::MissedCallParser reader(list);
            events.replay(reader);
        },
        [&] {
            list.clear();
            wordForWord::ListReader reader(list);
            events.replay(reader);
        });
    demand(bench::sameItems(list, items), "callbacks");
}

template <class Item>
void compareCodec() {
    const auto items = bench::makeItems<Item>(bench::Form::full, count);
    std::vector<std::string> bodies;
    for (const Item& item : items) {
        bodies.push_back(bench::servedBody(item));
    }
    std::vector<Item> decoded(count);
    const auto decodeAll = [&](auto decode) {
        return [&, decode] {
            for (std::size_t i = 0; i < count; ++i) {
                decode(bodies[i], decoded[i]);
            }
            demand(bench::same(decoded.back(), items.back()), "decode");
        };
    };
    const auto encodeAll = [&](auto encode) {
        return [&, encode] {
            for (const Item& item : items) {
                demand(!encode(item).empty(), "encode");
            }
        };
    };
    const std::string kind = bench::Codec<Item>::name;
    compare("decode " + kind, decodeAll(&bench::Codec<Item>::decode), decodeAll(&wordForWord::decode<Item>));
    compare("encode " + kind, encodeAll(&bench::Codec<Item>::encode), encodeAll(&wordForWord::encode<Item>));
}

void compareImport(const std::string& path) {
    const bench::ContactFile file = bench::makeContacts(count);
    std::vector<Contact> contacts;
    std::unique_ptr<ImportContactsCSVParser> parser;
    compare(
        "import", [&] { parser = std::make_unique<ImportContactsCSVParser>(path, 0); },
        [&] {
            contacts = wordForWord::import(path);
            std::remove(path.c_str());
        },
        [&] { std::ofstream(path, std::ios::binary) << file.content; });
    demand(bench::sameItems(contacts, file.contacts) && bench::sameItems(parser->getContacts(), contacts), "import");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: bench_ratios SCRATCHFILE\n");
        return 2;
    }
    Helper::init();
    calljournal::setHardware(true, 0);
    compareLists(bench::Form::full, "full");
    compareLists(bench::Form::mixed, "mixed");
    compareCodec<MissedCallItem>();
    compareCodec<DialledCallItem>();
    compareCodec<ReceivedCallItem>();
    compareCodec<ForwardedCallItem>();
    compareImport(argv[1]);
    return 0;
}
