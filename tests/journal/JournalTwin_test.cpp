#include <algorithm>
#include <cstddef>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include <numeric>
#include <random>
#include <tuple>

#include "CarriedText.h"
#include "Changes.h"
#include "EntryIndex.h"
#include "Filter.h"
#include "Kinds.h"
#include "LiteralJournal.h"
#include "Rounds.h"
#include "RunCommand.h"

using namespace calljournal;

namespace {

/// The journal compared with the literal one: the same operations on two stores.

constexpr unsigned firstSeed = 4711;

const char* const numbers[] = {
    "",
    "020 7946 0123",
    "+44 20 7946 0123",
    "00442079460123",
    "0044 (0)20 7946 0123",
    "0123",
    "70123",
    "+49 30 1234567",
    "030 1234567",
    "0049301234567",
    "０３０１２３４５６７",
    "030 1234567#12",
    "030 1234567 ext. 12",
    "4711",
    "47-11",
    "04711",
    "*21#",
    "anonymous",
    "Anonymous",
    "SIP:bob@Example.com",
    "sip:bob@example.com",
    "sip:Bob@example.com",
    "<b>&amp;",
    "12\n34",
    "12 34",
    "12\03334",
};
const char* const names[] = {"",       "",        "Smith", "smith",        "Smith Jones", "Smithson", "M\xc3\xbcller",
                             "MÜLLER", "A<B & C", " ",     "Smith\tJones", "\xff"};
const char* const filterNames[] = {"", "", "", "SMITH", "müll", "th jo", "&", "\xff"};
const char* const regions[] = {"GB", "DE", "ZZ"};

class NotedMessages : public JournalServiceObserverIfc {
public:
    void notify(const std::string& message) override { messages.push_back(message); }
    std::vector<std::string> messages;
};

template <class Item>
std::string textOf(const Item& entry) {
    return std::string(KindInterface<Item>::name) + ": " + KindInterface<Item>::encode(carriedItem(entry)) + '\n';
}

std::string textOf(const AnyEntry& entry) {
    return std::visit([](const auto& item) { return textOf(item); }, entry);
}

/// The changes as texts, in no order of their own.
std::vector<std::string> textsOf(const std::vector<Change>& changes) {
    std::vector<std::string> texts;
    for (const Change& change : changes) {
        texts.push_back(std::to_string(change.action) + ' ' + textOf(change.entry));
    }
    std::sort(texts.begin(), texts.end());
    return texts;
}

/// What an operation returns or says in its refusal.
template <class Work>
std::string resultOf(const Work& work) {
    try {
        return work();
    } catch (const JournalError& refusal) {
        return refusal.what();
    }
}

class Twins {
public:
    explicit Twins(unsigned seed)
        : random_(seed),
          firstRegion_(regions[below(std::size(regions))]),
          store_(openStore(folder_.file("journal.db"), indexEntry)),
          literalStore_(openStore(folder_.file("literal.db"))),
          journal_(*store_),
          literal_(*literalStore_, firstRegion_),
          times_(4000) {
        store_->setSetting(regionSetting, firstRegion_);
        journal_.addObserver(messages_);
        literal_.addObserver(literalMessages_);
        std::iota(times_.begin(), times_.end(), 0);
        std::shuffle(times_.begin(), times_.end(), random_);
        changeNumber_ = changesSince(journal_, 0).number;
    }

    /// Does one operation on both and compares what comes of it.
    void step() {
        if (below(5) == 0) {
            const std::string region = oneOf(regions);
            compare([&](auto& journal) { return joinedTexts(journal.changeRegion(region)); });
        } else {
            forEachKind([this, wanted = below(5), kind = std::size_t{0}](auto type) mutable {
                if (kind++ == wanted) {
                    stepOn<typename decltype(type)::Item>();
                }
            });
        }
        EXPECT_EQ(messages_.messages, literalMessages_.messages);
        messages_.messages.clear();
        literalMessages_.messages.clear();
        std::vector<Change> changes;
        forEachKind([&](auto type) { compareLists<typename decltype(type)::Item>(changes); });
        const JournalChanges found = changesSince(journal_, changeNumber_);
        EXPECT_EQ(textsOf(found.entries), textsOf(changes));
        changeNumber_ = found.number;
        compareWanted();
    }

private:
    std::size_t below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_); }

    template <std::size_t count>
    std::string oneOf(const char* const (&texts)[count]) {
        return texts[below(count)];
    }

    /// A time that no other call has.
    std::string time() {
        const int minutes = times_.back();
        times_.pop_back();
        char text[32];
        std::snprintf(text, sizeof text, "2024-05-%02d %02d:%02d:00", 1 + minutes / 1440, minutes / 60 % 24,
                      minutes % 60);
        return text;
    }

    template <class Item>
    Item party() {
        Item item;
        item.setSurname(oneOf(names));
        item.setFirstname(oneOf(names));
        item.setEntryId(below(4) == 0 ? "p" + std::to_string(below(3)) : "");
        return item;
    }

    template <class Item>
    NewCall<Item> call() {
        NewCall<Item> one;
        one.party = party<Item>();
        if constexpr (KindInterface<Item>::isCallLog) {
            one.call.number = oneOf(numbers);
            one.call.timeDate = time();
            one.call.numberPresentation = below(4) == 0 ? CallLogEntryEvent::NOT_ALLOWED : CallLogEntryEvent::ALLOWED;
        } else {
            one.party.setNumber(oneOf(numbers));
            one.party.setTimeDate(time());
        }
        return one;
    }

    template <class Item>
    void stepOn() {
        const std::size_t choice = below(12);
        if (choice < 6) {
            std::vector<NewCall<Item>> calls;
            for (std::size_t count = choice < 3 ? 1 + below(12) : 1; count > 0; --count) {
                calls.push_back(call<Item>());
            }
            compare([&](auto& journal) { return written(journal.record(calls)); });
        } else if (choice < 8) {
            const std::string id = std::to_string(1 + below(60));
            compare([&](auto& journal) { return textOf(journal.markViewed(id)); });
        } else if (choice < 10) {
            const std::string id = std::to_string(1 + below(60));
            compare([&](auto& journal) { return textOf(journal.template remove<Item>(id)); });
        } else {
            writeAsAPhone<Item>();
        }
    }

    /// Writes an entry that no journal grouped: with calls of several parties, with none, seen or with those of others.
    template <class Item>
    void writeAsAPhone() {
        Item item = call<Item>().party;
        if constexpr (KindInterface<Item>::isCallLog) {
            std::list<typename format::CallKind<Item>::Call> calls(
                below(3) + (std::is_same_v<Item, MissedCallItem> ? 0 : 1), call<Item>().call);
            for (auto& one : calls) {
                one = call<Item>().call;
            }
            std::invoke(format::CallKind<Item>::setCalls, item, calls);
        }
        if constexpr (std::is_same_v<Item, MissedCallItem>) {
            item.setViewed(below(2) == 0);
        }
        CallListDatabaseAdapter adapter;
        for (Store* store : {store_.get(), literalStore_.get()}) {
            adapter.init(store);
            adapter.updateEntry(KindInterface<Item>::encode(carriedItem(item)),
                                CallListDatabaseAdapterHelper::WRITEREQUEST,
                                std::string(format::CallKind<Item>::schema));
        }
    }

    template <class Item>
    static std::string written(const std::vector<Item>& entries) {
        std::string text;
        for (const Item& entry : entries) {
            text += textOf(entry);
        }
        return text;
    }

    static std::string joinedTexts(const std::vector<JoinedParty>& parties) {
        std::string text;
        for (const JoinedParty& party : parties) {
            text += textOf(party.entry);
            for (const std::string& id : party.joinedIds) {
                text += "with " + id + '\n';
            }
        }
        return text;
    }

    template <class Work>
    void compare(const Work& work) {
        EXPECT_EQ(resultOf([&] { return work(journal_); }), resultOf([&] { return work(literal_); }));
    }

    /// Compares the lists of one kind, and appends what changed in the literal one.
    template <class Item>
    void compareLists(std::vector<Change>& changes) {
        const std::deque<Item> list = literal_.template entries<Item>();
        EXPECT_EQ(written(std::vector<Item>(list.begin(), list.end())), resultOf([this] {
                      const std::deque<Item> entries = journal_.template entries<Item>();
                      return written(std::vector<Item>(entries.begin(), entries.end()));
                  }));
        std::deque<Item>& before = std::get<std::deque<Item>>(lists_);
        for (const Change& change : changesBetween(before, list)) {
            changes.push_back(change);
        }
        before = list;
    }

    void compareWanted() {
        Filter filter;
        for (const std::string& kind : kindNames()) {
            if (below(2) == 0) {
                filter.kinds.push_back(kind);
            }
        }
        filter.since = below(4) == 0 ? "2024-05-01 12:00:00" : "";
        filter.until = below(4) == 0 ? "2024-05-02 00:00:00" : "";
        filter.number = below(3) == 0 ? oneOf(numbers) : "";
        filter.name = oneOf(filterNames);
        filter.limit = below(6);
        std::string found;
        forEachWanted(journal_, filter, [&](const AnyEntry& entry) {
            found += textOf(entry);
            return true;
        });
        std::string expected;
        for (const AnyEntry& entry : literal_.wantedEntries(filter)) {
            expected += textOf(entry);
        }
        EXPECT_EQ(found, expected);
    }

#define CALLJOURNAL_LIST(Kind, word) std::deque<Kind##CallItem>,
    using Lists = std::tuple<CALLJOURNAL_CALL_KINDS(CALLJOURNAL_LIST) std::deque<StoredCallBack>>;
#undef CALLJOURNAL_LIST

    std::mt19937 random_;
    const std::string firstRegion_;
    const TemporaryFolder folder_;
    const std::unique_ptr<Store> store_;
    const std::unique_ptr<Store> literalStore_;
    Journal journal_;
    LiteralJournal literal_;
    NotedMessages messages_;
    NotedMessages literalMessages_;
    std::vector<int> times_;
    Lists lists_;
    std::uint64_t changeNumber_ = 0;
};

TEST(Journal, DoesWhatOneDoesThatReadsWholeLists) {
    constexpr int steps = 50;
    std::cout << "seeds from " << firstSeed << '\n';
    for (unsigned seed = firstSeed; seed < firstSeed + rounds(8); ++seed) {
        Twins twins(seed);
        for (int i = 0; i < steps; ++i) {
            twins.step();
            ASSERT_FALSE(HasFailure()) << "seed " << seed << " step " << i;
        }
    }
}

}  // namespace
