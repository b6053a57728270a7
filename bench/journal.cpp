// Times the journal's jobs in journals of growing size beside SQLite by its own interface, and the command beside what
// loading takes, for script/bench: `bench_journal [--short] COMMAND LOADING FOLDER` works in FOLDER, on disk. Those that
// are compared take turns; medians are shown. Every result is checked.

#include "Journal.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "BareSqlite.h"
#include "CallListDatabaseAdapterHelper.h"
#include "Data.h"
#include "EntryIndex.h"
#include "JournalCalls.h"
#include "JournalStores.h"
#include "NumberMatcher.h"
#include "Processes.h"
#include "Store.h"

using Helper = CallListDatabaseAdapterHelper;
using bench::bodyOf;
using bench::callOf;
using bench::entriesPerRequest;
using bench::idAt;
using bench::openJournal;
using bench::region;
using calljournal::EntryQuery;
using calljournal::FoundEntry;
using calljournal::Journal;
using calljournal::NewCall;
using calljournal::Store;

namespace {

using Clock = std::chrono::steady_clock;
using Texts = std::vector<std::string>;

constexpr std::size_t rounds = 200;
const std::string schema = bench::missedSchema();

/// The rows of the newest 20 entries, as the sqlite3 tool gives them.
constexpr char selectNewest[] =
    "select unique_id, body from entry where schema_id = (select schema_id from stored_schema where schema_name = "
    "'CallLogMissedCalls') order by newest desc, place desc limit 20";

/// What the program was asked for.
struct Plan {
    std::string command;
    std::string loading;
    std::string folder;
    std::vector<std::size_t> sizes = {1000, 100000, 1000000};  ///< Of the journals beside the empty one.
    std::size_t batch = 100000;                                ///< Calls recorded in one piece; and ten times as many.
    std::chrono::seconds idle{10};
};

void demand(bool isRight, const std::string& what) {
    if (!isRight) {
        std::fprintf(stderr, "bench_journal: %s: wrong result\n", what.c_str());
        std::exit(1);
    }
}

// The table.

void printHead() {
    std::printf("%-56s %9s %12s %12s %8s  %s\n", "# milliseconds (medians)", "entries", "ours", "compared", "times",
                "goal");
}

std::string verdict(double figure, double most, const std::string& unit = "") {
    char text[64];
    std::snprintf(text, sizeof text, "at most %g%s: %s", most, unit.c_str(), figure <= most ? "met" : "not met");
    return text;
}

/// A job beside what it is compared with; a goal of 0 is none.
void printRatio(const std::string& job, std::size_t entries, double own, double peer, double goal) {
    std::printf("%-56s %9zu %12.3f %12.3f %8.2f  %s\n", job.c_str(), entries, own, peer, own / peer,
                goal > 0 ? verdict(own / peer, goal).c_str() : "");
    std::fflush(stdout);
}

/// A figure by itself.
void printFigure(const std::string& job, std::size_t entries, double figure, const std::string& goal) {
    std::printf("%-56s %9zu %12.3f %12s %8s  %s\n", job.c_str(), entries, figure, "", "", goal.c_str());
    std::fflush(stdout);
}

// Times.

template <class Work>
double millisecondsOf(const Work& work) {
    const auto start = Clock::now();
    work();
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double medianOf(std::vector<double> times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

struct Medians {
    double own;
    double peer;
};

/// Both work in turns, each as the first of every second round; they get the number of the round and return their
/// milliseconds.
template <class Own, class Peer>
Medians inTurns(std::size_t count, const Own& own, const Peer& peer) {
    std::vector<double> owns;
    std::vector<double> peers;
    for (std::size_t round = 0; round < count; ++round) {
        if (round % 2 == 0) {
            owns.push_back(own(round));
            peers.push_back(peer(round));
        } else {
            peers.push_back(peer(round));
            owns.push_back(own(round));
        }
    }
    return {medianOf(owns), medianOf(peers)};
}

// Journals.

/// Calls `insert` with each number below `count` in transactions of 500.
template <class Table, class Insert>
void inBatches(Table& table, std::size_t count, const Insert& insert) {
    for (std::size_t i = 0; i < count; ++i) {
        if (i % entriesPerRequest == 0) {
            table.begin();
        }
        insert(i);
        if ((i + 1) % entriesPerRequest == 0 || i + 1 == count) {
            table.commit();
        }
    }
}

void removeDatabase(const std::string& file) {
    for (const char* const end : {"", "-wal", "-shm"}) {
        std::filesystem::remove(file + end);
    }
}

// One call, one change.

/// What is done to journals of all sizes, and what it took.
struct Change {
    std::string name;
    std::vector<double> own = {};
    std::vector<double> peer = {};
};

/// Records a call of a new party and one of a known one, marks an entry as viewed and deletes one; SQLite writes bodies of
/// the same sizes. No two rounds change the same entry; in a journal that was empty it is the one just recorded.
void changeOnce(Journal& journal, bench::BareEntries& bare, std::size_t count, std::size_t round,
                std::vector<Change>& changes) {
    const std::size_t added = count + round;
    const auto place = [&](std::size_t offset) {
        return count == 0 ? added : round * (count / rounds / 4 * 4) + offset;
    };
    const auto measure = [&](Change& change, std::size_t index, std::size_t calls, const auto& work) {
        MissedCallItem like = bench::entryAt(index);
        like.setUniqueId(idAt(index));
        auto call = like.getMissedCallInfoList().front();
        call.timeDate.replace(0, 4,
                              std::to_string(2030 + (&change - changes.data())));  // the same bytes would be no change
        like.setMissedCallInfoList(std::list<MissedCallItem::MissedCallInfo>(calls, call));
        const std::string body = bodyOf(like);
        MissedCallItem entry;
        const auto own = [&] { change.own.push_back(millisecondsOf([&] { entry = work(); })); };
        const auto peer = [&] {
            change.peer.push_back(millisecondsOf([&] { bare.upsert(like.getUniqueId(), body); }));
        };
        if (round % 2 == 0) {
            own();
            peer();
        } else {
            peer();
            own();
        }
        demand(entry.getUniqueId() == idAt(index), change.name);
        demand(entry.getMissedCallInfoList().size() == calls, change.name);
    };
    const auto record = [&](std::size_t index) {
        NewCall<MissedCallItem> call = callOf(bench::entryAt(index));
        call.call.timeDate.replace(0, 4, "2026");
        return journal.record<MissedCallItem>({call}).front();
    };
    const std::size_t many = count == 0 ? 2 : 1;
    measure(changes[0], added, 1, [&] { return record(added); });
    measure(changes[1], place(0), 2, [&] { return record(place(0)); });
    measure(changes[2], place(1), many, [&] { return journal.markViewed(idAt(place(1))); });
    measure(changes[3], place(2), many, [&] { return journal.remove<MissedCallItem>(idAt(place(2))); });
}

/// Has SQLite's log reach the size at which it begins anew: where a file grows, a flush takes several times as long. That
/// of a journal, of which each change writes more pages, does so in the first of the rounds.
void fillLog(bench::BareEntries& bare) {
    const std::string body = bodyOf(bench::entryAt(0));
    for (int i = 0; i < 600; ++i) {
        bare.upsert(idAt(0), body);
    }
}

/// Prints a row for each change and returns what the journal took.
std::vector<double> timeChanges(const Plan& plan, const std::string& file, std::size_t count) {
    const std::unique_ptr<Store> store = openJournal(file);
    Journal journal(*store);
    const std::string bareFile = plan.folder + "/bare.db";
    bench::BareEntries bare(bareFile);
    inBatches(bare, count, [&](std::size_t i) { bare.upsert(idAt(i), bodyOf(bench::entryAt(i))); });
    fillLog(bare);
    ::sync();
    std::vector<Change> changes = {{"record one call of a new party"},
                                   {"record one call of a known party"},
                                   {"mark one entry as viewed"},
                                   {"delete one entry"}};
    for (std::size_t round = 0; round < rounds; ++round) {
        changeOnce(journal, bare, count, round, changes);
    }
    demand(store->count(schema).all == count && bare.count() == count + rounds, "the changes of a journal");
    removeDatabase(bareFile);
    std::vector<double> owns;
    for (const Change& change : changes) {
        owns.push_back(medianOf(change.own));
        printRatio(change.name + ", a bare upsert", count, owns.back(), medianOf(change.peer), 2);
    }
    return owns;
}

// Pages.

void demandSame(const std::vector<FoundEntry>& found, const std::vector<bench::BareRow>& rows,
                const std::string& what) {
    bool isSame = found.size() == rows.size() && found.size() == bench::sharedEntries;
    for (std::size_t i = 0; isSame && i < found.size(); ++i) {
        isSame = found[i].id == rows[i].id;
    }
    demand(isSame, what);
}

/// Prints a row for each way to find a page, and returns what the store took.
std::vector<double> timePages(const Plan& plan, const std::string& file, std::size_t count) {
    const std::unique_ptr<Store> store = openJournal(file);
    const std::string bareFile = plan.folder + "/bare.db";
    bench::BareIndex bare(bareFile);
    inBatches(bare, count, [&](std::size_t i) {
        const MissedCallItem entry = bench::entryOfJournal(i, count);
        const std::string name = calljournal::indexEntry(schema, bodyOf(entry), region).name;
        bare.insert(entry, name, bodyOf(entry));
    });
    ::sync();

    constexpr char since[] = "2022-03-04 00:00:00";
    constexpr char until[] = "2022-10-11 12:00:00";
    EntryQuery query;
    query.schemas = {schema};
    query.limit = bench::sharedEntries;
    const std::string rareName = "quandt";
    std::vector<double> owns;
    const auto compare = [&](const std::string& what, const EntryQuery& wanted, const auto& rows) {
        demandSame(store->find(wanted), rows(), what);
        const Medians times = inTurns(
            rounds, [&](std::size_t) { return millisecondsOf([&] { demand(!store->find(wanted).empty(), what); }); },
            [&](std::size_t) { return millisecondsOf([&] { demand(!rows().empty(), what); }); });
        owns.push_back(times.own);
        printRatio("find 50 " + what + ", a bare indexed select", count, times.own, times.peer, 2);
    };
    EntryQuery wanted = query;
    compare("newest", wanted, [&] { return bare.newest(); });
    wanted = query;
    wanted.numberKey = bench::sharedNumber;
    compare("of a number", wanted, [&] { return bare.ofNumber(bench::sharedNumber); });
    wanted = query;
    wanted.nameBegin = rareName;
    compare("by a name's beginning", wanted, [&] { return bare.ofName(rareName); });
    wanted = query;
    wanted.since = since;
    wanted.until = until;
    compare("by time", wanted, [&] { return bare.between(since, until); });
    removeDatabase(bareFile);
    return owns;
}

void timeParts(const std::string& file, std::size_t count) {
    const std::unique_ptr<Store> store = openJournal(file);
    const auto time = [&](const EntryQuery& wanted, std::size_t index, const std::string& what) {
        std::vector<double> times;
        for (int round = 0; round < 5; ++round) {
            std::vector<FoundEntry> found;
            times.push_back(millisecondsOf([&] { found = store->find(wanted); }));
            demand(!found.empty() && found.front().id == idAt(index), what);
        }
        printFigure("find " + what, count, medianOf(times), verdict(medianOf(times), 2000));
    };
    const std::size_t index = count / 2;  // no change before touched it
    EntryQuery wanted;
    wanted.schemas = {schema};
    wanted.namePart = bench::wordAt(index).substr(1);
    wanted.numberPart = bench::numberAt(index).substr(5);
    time(wanted, index, "any part of a name or a number");
}

// A file of calls.

/// Each number is parsed once, in a process of its own: one that has parsed numbers remembers them.
double millisecondsOfParsing(const Texts& numbers) {
    return bench::millisecondsOfProcesses(1, [&](std::size_t) {
        const calljournal::NumberMatcher other(calljournal::noRegion);
        demand(!other("1").empty(), "parsing numbers");  // forgets those of all other regions
        return [&] {
            const calljournal::NumberMatcher matcher(region);
            for (const std::string& number : numbers) {
                demand(!matcher(number).empty(), "parsing numbers");
            }
        };
    });
}

/// Records `count` calls of as many parties by the command, and writes their bodies by SQLite, `turns` times. Prints the
/// row and returns what the command took.
double timeBatch(const Plan& plan, std::size_t count, bench::Numbers numbers, const std::string& what,
                 std::size_t turns) {
    const std::string calls = plan.folder + "/calls.json";
    const std::string file = plan.folder + "/batch.db";
    const std::string bareFile = plan.folder + "/bare.db";
    Texts bodies;
    Texts texts;
    {
        std::ofstream lines(calls, std::ios::binary);
        for (std::size_t i = 0; i < count; ++i) {
            const MissedCallItem entry = bench::entryAt(i, numbers);
            lines << bench::jsonLineOf(entry);
            bodies.push_back(bodyOf(entry));
            texts.push_back(bench::numberAt(i, numbers));
        }
    }
    std::vector<double> parsing;
    std::vector<double> whole;
    const Medians times = inTurns(
        turns,
        [&](std::size_t) {
            removeDatabase(file);
            ::sync();
            whole.push_back(bench::millisecondsOfProgram(
                {plan.command, "--store", file, "--region", region, "record", "--from", calls}));
            demand(openJournal(file)->count(schema).all == count, "recording a file");
            parsing.push_back(millisecondsOfParsing(texts));
            return whole.back() - parsing.back();
        },
        [&](std::size_t) {
            removeDatabase(bareFile);
            ::sync();
            bench::BareEntries bare(bareFile);
            const double time = millisecondsOf(
                [&] { inBatches(bare, count, [&](std::size_t i) { bare.upsert(idAt(i), bodies[i]); }); });
            demand(bare.count() == count, "bare upserts");
            return time;
        });
    removeDatabase(file);
    removeDatabase(bareFile);
    std::filesystem::remove(calls);
    printFigure("parse the " + what, count, medianOf(parsing), "");
    printRatio("record a file, parsing taken off, upserts by 500", count, times.own, times.peer, 2.5);
    return medianOf(whole);
}

void timeBatches(const Plan& plan) {
    const std::pair<bench::Numbers, std::string> forms[] = {
        {bench::Numbers::distinct, "numbers"},
        {bench::Numbers::sameEnding, "numbers of the same ending"},
        {bench::Numbers::addresses, "SIP addresses"},
    };
    for (const auto& [numbers, what] : forms) {
        const double some = timeBatch(plan, plan.batch, numbers, what, 3);
        const double many = timeBatch(plan, 10 * plan.batch, numbers, what, 1);
        printRatio("record a file of " + what + ", ten times the calls", 10 * plan.batch, many, some, 11);
    }
}

// Several processes.

void timeWriters(const Plan& plan) {
    constexpr std::size_t writers = 8;
    constexpr std::size_t calls = 100;
    constexpr std::size_t count = 1000;
    const std::string file = plan.folder + "/writers.db";
    const std::string bareFile = plan.folder + "/bare.db";
    bench::buildJournal(file, count);
    {
        bench::BareEntries bare(bareFile);
        inBatches(bare, count, [&](std::size_t i) { bare.upsert(idAt(i), bodyOf(bench::entryAt(i))); });
    }
    ::sync();
    constexpr std::size_t turns = 5;
    const auto indexOf = [](std::size_t round, std::size_t writer, std::size_t call) {
        return count + (round * writers + writer) * calls + call;
    };
    const Medians times = inTurns(
        turns,
        [&](std::size_t round) {
            return bench::millisecondsOfProcesses(writers, [&](std::size_t writer) -> std::function<void()> {
                const std::shared_ptr<Store> store = openJournal(file);
                return [=] {
                    Journal journal(*store);
                    for (std::size_t i = 0; i < calls; ++i) {
                        journal.record<MissedCallItem>({callOf(bench::entryAt(indexOf(round, writer, i)))});
                    }
                };
            });
        },
        [&](std::size_t round) {
            return bench::millisecondsOfProcesses(writers, [&](std::size_t writer) -> std::function<void()> {
                const auto bare = std::make_shared<bench::BareEntries>(bareFile);
                return [=] {
                    for (std::size_t i = 0; i < calls; ++i) {
                        const std::size_t index = indexOf(round, writer, i);
                        bare->upsert(idAt(index), bodyOf(bench::entryAt(index)));
                    }
                };
            });
        });
    const std::size_t all = count + turns * writers * calls;
    demand(openJournal(file)->count(schema).all == all && bench::BareEntries(bareFile).count() == all, "8 writers");
    removeDatabase(file);
    removeDatabase(bareFile);
    printRatio("8 processes record 100 calls each, 8 with bare upserts", count, times.own, times.peer, 0);
    const double share = times.peer / times.own;
    printFigure("... calls a second as a share of the bare ones", count, share,
                std::string("at least 0.8: ") + (share >= 0.8 ? "met" : "not met"));
}

void timeFollower(const Plan& plan, const std::string& file, std::size_t count) {
    const std::unique_ptr<Store> store = openJournal(file);
    Journal journal(*store);
    bench::RunningProgram follower(
        {plan.command, "--store", file, "--format", "json", "list", "missed", "--limit", "1", "--follow"});
    follower.nextLine();  // the list; the changes come behind it
    std::this_thread::sleep_for(std::chrono::seconds(1));
    std::vector<double> times;
    for (std::size_t round = 0; round < 20; ++round) {
        // At any moment between two looks.
        std::this_thread::sleep_for(std::chrono::milliseconds(300 + 37 * round % 200));
        const std::size_t index = 2 * count + round;
        const MissedCallItem entry = bench::entryAt(index);
        journal.record<MissedCallItem>({callOf(entry)});
        std::string line;
        times.push_back(millisecondsOf([&] { line = follower.nextLine(); }));
        demand(line.find(bench::numberAt(index)) != std::string::npos, "a change that is followed");
    }
    std::this_thread::sleep_for(std::chrono::seconds(1));
    const double before = follower.processorMilliseconds();
    std::this_thread::sleep_for(plan.idle);
    const double used = follower.processorMilliseconds() - before;
    const double most = *std::max_element(times.begin(), times.end());
    printFigure("a change of another process seen, the latest of 20", count, most, verdict(most, 200));
    const double share = 100 * used / (1000 * static_cast<double>(plan.idle.count()));
    printFigure("a follower at rest, percent of a processor", count, share, verdict(share, 0.2));
}

// The command.

void timeCommand(const Plan& plan, const std::string& small, const std::string& large, std::size_t count) {
    constexpr std::size_t turns = 21;
    const auto run = [&](const std::string& file, Texts words) {
        Texts all = {plan.command, "--store", file};
        all.insert(all.end(), words.begin(), words.end());
        return bench::millisecondsOfProgram(all);
    };
    const auto compare = [&](const std::string& what, const Texts& words, const auto& before) {
        const auto timed = [&](const std::string& file) {
            return [&, file](std::size_t) {
                before(file);
                return run(file, words);
            };
        };
        const Medians times = inTurns(turns, timed(large), timed(small));
        printRatio("command " + what + ", with one entry", count, times.own, times.peer, 1.5);
        return times.own;
    };
    const auto nothing = [](const std::string&) {};
    constexpr std::size_t known = 0;
    const double recording = compare("record", {"record", "missed", "--number", bench::numberAt(known)}, nothing);
    const Medians loading = inTurns(
        turns, [&](std::size_t) { return bench::millisecondsOfProgram({plan.loading}); },
        [&](std::size_t) {
            return bench::millisecondsOfProgram({plan.command, "--version"});
        });
    printFigure("... of which loading: a process that parses one number", count, loading.own, "");
    printFigure("... start-up: calljournal --version", count, loading.peer, "");
    printFigure("... and work, the rest", count, recording - loading.own, "");
    compare("viewed", {"viewed", idAt(known)}, [&](const std::string& file) {
        // A new call makes it unseen again.
        const std::unique_ptr<Store> store = openJournal(file);
        Journal(*store).record<MissedCallItem>({callOf(bench::entryAt(known))});
    });
    const Texts list = {"--format", "json", "list", "missed", "--limit", "20"};
    compare("list --limit 20", list, nothing);
    const Texts select = {"sqlite3", "-readonly", large, selectNewest};
    Texts listing = {plan.command, "--store", large};
    listing.insert(listing.end(), list.begin(), list.end());
    demand(bench::linesOfProgram(listing) == 20 && bench::linesOfProgram(select) == 20, "list --limit 20");
    const Medians times = inTurns(
        turns, [&](std::size_t) { return bench::millisecondsOfProgram(listing); },
        [&](std::size_t) { return bench::millisecondsOfProgram(select); });
    printRatio("command list --limit 20, sqlite3 FILE 'select ...'", count, times.own, times.peer, 2);
}

/// The file against the bodies in it; those of the entries that other jobs work on have one call.
void measureSize(const Plan& plan) {
    const std::string file = plan.folder + "/size.db";
    constexpr std::size_t count = 10000;
    const auto items = bench::makeItems<MissedCallItem>(bench::Form::mixed, count);
    std::uint64_t bytes = 0;
    bench::buildStore(file, count, [&](std::size_t index) {
        MissedCallItem entry = items[index];
        entry.setUniqueId("");
        bytes += bodyOf(entry).size();
        return entry;
    });
    const auto size = static_cast<double>(std::filesystem::file_size(file));
    demand(size > static_cast<double>(bytes), "the size of a store");
    const double share = size / static_cast<double>(bytes);
    printFigure("size of a store of mixed data, times its bodies", count, share, verdict(share, 1.8));
    removeDatabase(file);
}

void timeJournals(const Plan& plan) {
    std::vector<std::vector<double>> changes;
    std::vector<std::vector<double>> pages;
    const auto fileOf = [&](std::size_t count) { return plan.folder + "/journal-" + std::to_string(count) + ".db"; };
    changes.push_back(timeChanges(plan, fileOf(0), 0));
    for (const std::size_t count : plan.sizes) {
        bench::buildJournal(fileOf(count), count);
        pages.push_back(timePages(plan, fileOf(count), count));
        changes.push_back(timeChanges(plan, fileOf(count), count));
    }
    const std::size_t most = plan.sizes.back();
    for (std::size_t i = 0; i < changes.front().size(); ++i) {
        constexpr const char* names[] = {"record, a new party", "record, a known party", "viewed", "delete"};
        printRatio(std::string(names[i]) + ": the empty journal", most, changes.back()[i], changes.front()[i], 1.5);
    }
    for (std::size_t i = 0; i < pages.front().size(); ++i) {
        constexpr const char* names[] = {"newest", "of a number", "by a name's beginning", "by time"};
        printRatio("find 50 " + std::string(names[i]) + ": the smallest journal", most, pages.back()[i],
                   pages.front()[i], 1.5);
    }
    timeParts(fileOf(most), most);
    timeFollower(plan, fileOf(most), most);
    const std::size_t middle = plan.sizes[plan.sizes.size() - 2];
    bench::buildStore(fileOf(1), 1, [](std::size_t) { return bench::entryAt(0); });
    timeCommand(plan, fileOf(1), fileOf(middle), middle);
    for (const std::size_t count : plan.sizes) {
        removeDatabase(fileOf(count));
    }
    removeDatabase(fileOf(0));
    removeDatabase(fileOf(1));
}

}  // namespace

int main(int argc, char** argv) {
    const bool isShort = argc == 5 && std::string(argv[1]) == "--short";
    if (argc != 4 && !isShort) {
        std::fprintf(stderr, "usage: bench_journal [--short] COMMAND LOADING FOLDER\n");
        return 2;
    }
    Plan plan{argv[argc - 3], argv[argc - 2], argv[argc - 1]};
    if (isShort) {
        plan.sizes = {1000, 10000};
        plan.batch = 1000;
        plan.idle = std::chrono::seconds(2);
    }
    Helper::init();
    printHead();
    timeJournals(plan);
    timeWriters(plan);
    measureSize(plan);
    timeBatches(plan);
    return 0;
}
