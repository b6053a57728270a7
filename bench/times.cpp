// Times the library's jobs beside the same jobs done by others, in one process and in turns, for script/bench. Checks
// every result against the same records first. Prints a table of medians and then the goals; options are those of
// Google Benchmark.

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <numeric>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

#include "CallListDatabaseAdapter.h"
#include "Codec.h"
#include "Data.h"
#include "Events.h"
#include "HostPlatform.h"
#include "ImportContactsCSVParser.h"
#include "Peers.h"
#include "TimeTable.h"
#include "WordForWord.h"

using Helper = CallListDatabaseAdapterHelper;
using bench::Form;

namespace {

/// Whether this is the program whose library was built without vector instructions.
#ifdef BENCH_PORTABLE
constexpr bool isPortable = true;
#else
constexpr bool isPortable = false;
#endif

bench::TimeTable table;

const std::string literal = "rules, word for word";
const std::string rapid = "rapidxml";
const std::string fastestRapid = "rapidxml, fastest flags";

/// What a job works on, for the table.
struct Job {
    std::string name;
    std::size_t bytes;
    std::size_t entries;
};

Job jobOf(const std::string& what, const std::string& data, std::size_t count, std::size_t bytes, std::size_t entries) {
    return {what + " " + data + " " + std::to_string(count), bytes, entries};
}

const char* wordOf(Form form) {
    return form == Form::full ? "full" : "mixed";
}

void demand(bool isRight, const Job& job, const std::string& contender) {
    if (!isRight) {
        std::fprintf(stderr, "%s: wrong result by %s\n", job.name.c_str(), contender.c_str());
        std::exit(1);
    }
}

template <class Body>
void enter(const Job& job, const std::string& contender, Body body) {
    benchmark::RegisterBenchmark(table.add(job.name, contender, job.bytes, job.entries).c_str(), body);
}

/// Enters a contender whose whole work is `work`.
template <class Work>
void enterWork(const Job& job, const std::string& contender, Work work) {
    enter(job, contender, [work](benchmark::State& state) {
        for (auto step : state) {
            (void)step;
            work();
            benchmark::ClobberMemory();
        }
    });
}

std::size_t bytesOf(const std::vector<std::string>& texts) {
    return std::accumulate(texts.begin(), texts.end(), std::size_t{0},
                           [](std::size_t sum, const std::string& text) { return sum + text.size(); });
}

// Limits: no way of doing a job can take less than these.

void enterLimits(const Job& job, const std::shared_ptr<const std::string>& text) {
    enterWork(job, "memcpy of the text", [text, room = std::make_shared<std::string>(*text)] {
        std::memcpy(room->data(), text->data(), text->size());
        benchmark::DoNotOptimize(room->data());
    });
    enterWork(job, "one memchr pass", [text] { benchmark::DoNotOptimize(std::memchr(text->data(), 1, text->size())); });
}

// The list.

struct ListData {
    ListData(Form form, std::size_t count)
        : items(bench::makeItems<MissedCallItem>(form, count)), reply(bench::makeReply(items)) {}

    std::vector<MissedCallItem> items;
    std::string reply;
};

using ReadList = void (*)(const std::string&, std::deque<MissedCallItem>&);

void readByLibrary(const std::string& reply, std::deque<MissedCallItem>& list) {
    Helper::parseXMLMissedCallList(reply, list);
}

void enterList(const Job& job, const std::string& contender, const std::shared_ptr<const ListData>& data,
               ReadList read) {
    std::deque<MissedCallItem> list;
    read(data->reply, list);
    demand(bench::sameItems(list, data->items), job, contender);
    enterWork(job, contender, [data, read] {
        std::deque<MissedCallItem> fresh;
        read(data->reply, fresh);
        benchmark::DoNotOptimize(fresh.size());
    });
}

void enterCopy(const Job& job, const std::shared_ptr<const ListData>& data) {
    const auto list = std::make_shared<const std::deque<MissedCallItem>>(data->items.begin(), data->items.end());
    enterWork(job, "copying the records", [list] {
        const std::deque<MissedCallItem> copy(*list);
        benchmark::DoNotOptimize(copy.size());
    });
}

void enterLists(Form form, std::size_t count, bool everyPeer) {
    const auto data = std::make_shared<const ListData>(form, count);
    const Job job = jobOf("list", wordOf(form), count, data->reply.size(), count);
    enterList(job, table.library, data, &readByLibrary);
    enterList(job, literal, data, &bench::wordForWord::readList);
    enterList(job, rapid, data, &bench::readWithRapidxml);
    enterList(job, fastestRapid, data, &bench::readWithFastestRapidxml);
    if (everyPeer) {
        enterList(job, "pugixml", data, &bench::readWithPugixml);
        enterList(job, "tinyxml2", data, &bench::readWithTinyxml2);
        enterList(job, "expat", data, &bench::readWithExpat);
        enterList(job, "libxml2", data, &bench::readWithLibxml2);
        enterCopy(job, data);
        enterLimits(job, std::shared_ptr<const std::string>(data, &data->reply));
    }
}

template <class Reader>
void enterReplay(const Job& job, const std::string& contender, const std::shared_ptr<const ListData>& data,
                 const std::shared_ptr<const bench::Events>& events) {
    const auto replay = [events](std::deque<MissedCallItem>& list) {
        Reader reader(list);
        events->replay(reader);
    };
    std::deque<MissedCallItem> list;
    replay(list);
    demand(bench::sameItems(list, data->items), job, contender);
    enterWork(job, contender, [replay] {
        std::deque<MissedCallItem> fresh;
        replay(fresh);
        benchmark::DoNotOptimize(fresh.size());
    });
}

void enterCallbacks(Form form, std::size_t count) {
    const auto data = std::make_shared<const ListData>(form, count);
    const auto events = std::make_shared<const bench::Events>(data->reply);
    const Job job = jobOf("callbacks", wordOf(form), count, data->reply.size(), count);
    enterReplay<Helper::MissedCallParser>(job, table.library, data, events);
    enterReplay<bench::wordForWord::ListReader>(job, literal, data, events);
    enterCopy(job, data);
}

// Bodies.

template <class Item>
struct BodyData {
    BodyData(Form form, std::size_t count) : items(bench::makeItems<Item>(form, count)) {
        for (const Item& item : items) {
            served.push_back(bench::servedBody(item));
            written.push_back(bench::Codec<Item>::encode(item));
        }
    }

    std::vector<Item> items;
    std::vector<std::string> served;
    std::vector<std::string> written;
};

template <class Item>
using SharedBodies = std::shared_ptr<const BodyData<Item>>;

template <class Item>
void enterDecoder(const Job& job, const std::string& contender, const SharedBodies<Item>& data,
                  void (*decode)(const std::string&, Item&)) {
    for (std::size_t i = 0; i < data->items.size(); ++i) {
        Item item;
        decode(data->served[i], item);
        demand(bench::same(item, data->items[i]), job, contender);
    }
    enterWork(job, contender, [data, decode] {
        for (const std::string& body : data->served) {
            Item item;
            decode(body, item);
            benchmark::DoNotOptimize(&item);
        }
    });
}

template <class Item>
void enterEncoder(const Job& job, const std::string& contender, const SharedBodies<Item>& data,
                  std::string (*encode)(const Item&)) {
    for (std::size_t i = 0; i < data->items.size(); ++i) {
        demand(encode(data->items[i]) == data->written[i], job, contender);
    }
    enterWork(job, contender, [data, encode] {
        for (const Item& item : data->items) {
            const std::string body = encode(item);
            benchmark::DoNotOptimize(body.data());
        }
    });
}

template <class Item>
void enterCodec(Form form, std::size_t count) {
    const auto data = std::make_shared<const BodyData<Item>>(form, count);
    const std::string kind = bench::Codec<Item>::name;
    const Job decoding = jobOf("decode " + kind, wordOf(form), count, bytesOf(data->served), count);
    enterDecoder<Item>(decoding, table.library, data, &bench::Codec<Item>::decode);
    enterDecoder<Item>(decoding, literal, data, &bench::wordForWord::decode<Item>);
    enterDecoder<Item>(decoding, rapid, data, &bench::decodeWithRapidxml<Item>);
    enterDecoder<Item>(decoding, fastestRapid, data, &bench::decodeWithFastestRapidxml<Item>);
    enterDecoder<Item>(decoding, "pugixml", data, &bench::decodeWithPugixml<Item>);

    const Job encoding = jobOf("encode " + kind, wordOf(form), count, bytesOf(data->written), count);
    enterEncoder<Item>(encoding, table.library, data, &bench::Codec<Item>::encode);
    enterEncoder<Item>(encoding, literal, data, &bench::wordForWord::encode<Item>);
    enterEncoder<Item>(encoding, "append with reserve", data, &bench::encodeByAppending<Item>);
    enterEncoder<Item>(encoding, "tinyxml2", data, &bench::encodeWithTinyxml2<Item>);
    enterEncoder<Item>(encoding, "pugixml", data, &bench::encodeWithPugixml<Item>);
    enterEncoder<Item>(encoding, "libxml2", data, &bench::encodeWithLibxml2<Item>);
    enterWork(encoding, "copying the texts", [data] {
        for (const std::string& body : data->written) {
            const std::string copy(body);
            benchmark::DoNotOptimize(copy.data());
        }
    });
}

// Single values.

struct ValueData {
    explicit ValueData(Form form, std::size_t count)
        : texts(bench::makeCallTexts(bench::makeItems<MissedCallItem>(form, count))) {
        for (const auto& field : bench::Kind<MissedCallItem>::callFields) {
            tags.emplace_back(std::string_view(field.tag));
        }
    }

    std::vector<std::string> texts;
    std::vector<std::string> tags;
};

template <class TakeValue, class Sink>
void takeAll(const ValueData& data, TakeValue takeValue, Sink sink) {
    std::string value;
    for (const std::string& text : data.texts) {
        const char* cursor = text.c_str();
        for (const std::string& tag : data.tags) {
            cursor = takeValue(cursor, tag.c_str(), value);
            sink(value);
        }
    }
}

void enterValues(Form form, std::size_t count) {
    using TakeValue = const char* (*)(const char*, const char*, std::string&);
    const auto data = std::make_shared<const ValueData>(form, count);
    const Job job = jobOf("values", wordOf(form), count, bytesOf(data->texts), data->texts.size());
    std::string all[2];
    const std::pair<std::string, TakeValue> contenders[] = {
        {table.library, static_cast<TakeValue>(&Helper::getXMLValue2)}, {literal, &bench::wordForWord::takeValue}};
    for (std::size_t i = 0; i < 2; ++i) {
        const auto [contender, takeValue] = contenders[i];
        takeAll(*data, takeValue, [&](const std::string& value) { all[i] += value + ";"; });
        demand(all[i] == all[0] && !all[i].empty(), job, contender);
        enterWork(job, contender, [data, takeValue = takeValue] {
            takeAll(*data, takeValue, [](const std::string& value) { benchmark::DoNotOptimize(value.data()); });
        });
    }
}

// Sorting.

/// Enters `sort` of a list that is made anew, outside the time taken, for each run.
template <class List, class Sort>
void enterSort(const Job& job, const std::string& contender, const std::shared_ptr<const List>& shuffled, Sort sort) {
    enter(job, contender, [shuffled, sort](benchmark::State& state) {
        for (auto step : state) {
            (void)step;
            state.PauseTiming();
            auto list = std::make_unique<List>(*shuffled);
            state.ResumeTiming();
            sort(*list);
            benchmark::ClobberMemory();
            state.PauseTiming();
            list.reset();
            state.ResumeTiming();
        }
    });
}

void enterSorts(std::size_t count, bool withCopies) {
    const auto shuffled = std::make_shared<const std::deque<MissedCallItem>>(bench::shuffledList(count));
    const Job job = jobOf("sort", "one call", count, count, count);
    const auto sort = [](std::deque<MissedCallItem>& list) { CallListDatabaseAdapter().normalizeMissedCallList(list); };
    std::deque<MissedCallItem> sorted = *shuffled;
    sort(sorted);
    demand(std::is_sorted(sorted.begin(), sorted.end(), &isMissedCallOrdered), job, table.library);
    enterSort(job, table.library, shuffled, sort);
    if (withCopies) {
        using Copies = std::deque<bench::wordForWord::CopiedItem>;
        const auto copies = std::make_shared<const Copies>(shuffled->begin(), shuffled->end());
        Copies other = *copies;
        bench::wordForWord::normalise(other);
        for (std::size_t i = 0; i < count; ++i) {
            demand(bench::same(other[i].item, sorted[i]), job, "a copying sort");
        }
        enterSort(job, "a copying sort", copies, &bench::wordForWord::normalise);
    }
}

// The import.

/// A contact file, and a second name of it for each import, which deletes its file.
class ContactFolder {
public:
    explicit ContactFolder(std::size_t count) : data(bench::makeContacts(count)) {
        folder_ = std::filesystem::temp_directory_path() /
                  ("calljournal-bench-" + std::to_string(getpid()) + "-" + std::to_string(count));
        std::filesystem::create_directory(folder_);
        std::ofstream(folder_ / "contacts.csv", std::ios::binary) << data.content;
    }
    ~ContactFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    ContactFolder(const ContactFolder&) = delete;
    ContactFolder& operator=(const ContactFolder&) = delete;

    std::string fresh() const {
        std::filesystem::path copy = folder_ / "copy.csv";
        std::filesystem::create_hard_link(folder_ / "contacts.csv", copy);
        return copy;
    }

    const bench::ContactFile data;

private:
    std::filesystem::path folder_;
};

void enterImport(const Job& job, const std::string& contender, const std::shared_ptr<const ContactFolder>& folder,
                 std::vector<Contact> (*import)(const std::string&)) {
    demand(bench::sameItems(import(folder->fresh()), folder->data.contacts), job, contender);
    enterWork(job, contender, [folder, import] { benchmark::DoNotOptimize(import(folder->fresh()).size()); });
}

/// The import alone: what its user takes from it, and how, is another matter.
void enterImportByLibrary(const Job& job, const std::shared_ptr<const ContactFolder>& folder) {
    demand(bench::sameItems(ImportContactsCSVParser(folder->fresh(), 0).getContacts(), folder->data.contacts), job,
           table.library);
    enterWork(job, table.library, [folder] {
        const ImportContactsCSVParser parser(folder->fresh(), 0);
        benchmark::DoNotOptimize(parser.getCSVType());
    });
}

/// Deletes the file behind the import, as the library does.
template <std::vector<Contact> (*import)(const std::string&)>
std::vector<Contact> importAndDelete(const std::string& path) {
    std::vector<Contact> contacts = import(path);
    std::filesystem::remove(path);
    return contacts;
}

void enterImports(std::size_t count) {
    const auto folder = std::make_shared<const ContactFolder>(count);
    const std::shared_ptr<const std::string> content(folder, &folder->data.content);
    const Job job = jobOf("import", "contacts", count, content->size(), count);
    enterImportByLibrary(job, folder);
    enterImport(job, literal, folder, &importAndDelete<&bench::wordForWord::import>);
    enterImport(job, "libcsv", folder, &importAndDelete<&bench::importWithLibcsv>);
    enterWork(job, "boost::tokenizer alone", [folder] {
        const std::string path = folder->fresh();
        benchmark::DoNotOptimize(bench::walkWithBoost(path));
        std::filesystem::remove(path);
    });
    enterLimits(job, content);
}

// What is aimed at.

void printGoal(const std::string& job, const std::string& contender, double goal) {
    const double figure = table.ratio(job, contender);
    if (figure > 0) {
        std::printf("%-28s %-28s %8.2f %8.2f  %s\n", job.c_str(), contender.c_str(), goal, figure,
                    figure >= goal ? "met" : "not met");
    }
}

/// The jobs whose goals hold without vector instructions, too.
void enterPortable() {
    enterLists(Form::full, 1000, false);
}

void printPortableGoals() {
    printGoal("list full 1000", rapid, 0.95);
    printGoal("list full 1000", fastestRapid, 0.95);
}

void enterAll() {
    for (const Form form : {Form::full, Form::mixed}) {
        for (const std::size_t count : {100U, 1000U, 10000U}) {
            enterLists(form, count, count == 1000);
        }
        enterCallbacks(form, 1000);
        enterCodec<MissedCallItem>(form, 1000);
        enterCodec<DialledCallItem>(form, 1000);
        enterCodec<ReceivedCallItem>(form, 1000);
        enterCodec<ForwardedCallItem>(form, 1000);
        enterValues(form, 1000);
    }
    enterSorts(1000, true);
    enterSorts(10000, true);
    enterSorts(100000, false);
    enterImports(100);
    enterImports(1000);
}

void printGoals() {
    printGoal("list full 1000", rapid, 1.25);
    printGoal("list full 1000", fastestRapid, 1.25);
    printGoal("list full 1000", literal, 4.3);
    printGoal("callbacks full 1000", literal, 5);
    for (const std::string kind : {"missed", "dialled", "received", "forwarded"}) {
        printGoal("decode " + kind + " full 1000", rapid, 2.2);
        printGoal("decode " + kind + " full 1000", fastestRapid, 2.2);
        printGoal("decode " + kind + " full 1000", literal, 15);
    }
    printGoal("values full 1000", literal, 6);
    printGoal("values mixed 1000", literal, 4.2);
    for (const std::string kind : {"missed", "dialled", "received", "forwarded"}) {
        printGoal("encode " + kind + " full 1000", "tinyxml2", 10);
        printGoal("encode " + kind + " full 1000", "append with reserve", 8);
        printGoal("encode " + kind + " full 1000", literal, 30);
    }
    printGoal("sort one call 1000", "a copying sort", 9);
    printGoal("sort one call 10000", "a copying sort", 9);
    printGoal("import contacts 1000", literal, 2.6);
    printGoal("import contacts 1000", "boost::tokenizer alone", 1);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    Helper::init();
    calljournal::setHardware(true, 0);
    isPortable ? enterPortable() : enterAll();
    benchmark::RunSpecifiedBenchmarks(&table);
    table.print(stdout);
    std::printf("\n%-28s %-28s %8s %8s\n", "# job", "times as fast as", "goal", "figure");
    isPortable ? printPortableGoals() : printGoals();
    return 0;
}
