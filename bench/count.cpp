// Runs one job on the library once, for script/check/bench-count.

#include <deque>
#include <fstream>
#include <map>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "CallListDatabaseAdapter.h"
#include "ClientUtils.h"
#include "Codec.h"
#include "CountedJob.h"
#include "Data.h"
#include "Events.h"
#include "HostPlatform.h"
#include "ImportContactsCSVParser.h"
#include "WorkCounters.h"

using bench::allocationsOf;
using bench::demand;
using bench::measure;
using bench::Result;
using bench::Size;
using Helper = CallListDatabaseAdapterHelper;

namespace {

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

const bench::Jobs jobs = {
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

std::uint64_t bench::allocationsSoFar() {
    return workCounters().allocations;
}

int main(int argc, char** argv) {
    return bench::runJob(argc, argv, jobs);
}
