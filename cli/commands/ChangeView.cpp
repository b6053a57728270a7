#include "ChangeView.h"

#include <chrono>
#include <csignal>
#include <deque>
#include <ostream>
#include <thread>
#include <tuple>

#include "Changes.h"
#include "EntryView.h"
#include "ItemJson.h"
#include "Kinds.h"
#include "PrintableText.h"

namespace calljournal {

namespace {

constexpr std::chrono::milliseconds pollInterval(200);

volatile std::sig_atomic_t isInterrupted = 0;

void interrupt(int) {
    isInterrupted = 1;
}

/// Ends the loop below on Ctrl-C instead of the process; restored afterwards.
class InterruptHandler {
public:
    InterruptHandler() {
        isInterrupted = 0;
        struct sigaction action = {};
        action.sa_handler = interrupt;
        ::sigaction(SIGINT, &action, &before_[0]);
        ::sigaction(SIGTERM, &action, &before_[1]);
    }
    InterruptHandler(const InterruptHandler&) = delete;
    InterruptHandler& operator=(const InterruptHandler&) = delete;
    ~InterruptHandler() {
        ::sigaction(SIGINT, &before_[0], nullptr);
        ::sigaction(SIGTERM, &before_[1], nullptr);
    }

private:
    struct sigaction before_[2];
};

const char* wordFor(JournalServiceObserverIfc::ActionType action) {
    switch (action) {
        case JournalServiceObserverIfc::ADDED:
            return "added";
        case JournalServiceObserverIfc::VIEWED:
            return "seen";
        case JournalServiceObserverIfc::DELETED:
            return "deleted";
        default:
            return "changed";
    }
}

template <class Item>
void print(const Change<Item>& change, const GlobalOptions& globals, std::ostream& out) {
    const std::string notification = notificationOf(change.entry, change.action);
    if (globals.format == OutputFormat::json) {
        Json json = toJsonWithKind(change.entry);
        json["Change"] = wordFor(change.action);
        json["Notification"] = notification;
        out << jsonText(json, false) << std::endl;
    } else {
        out << wordFor(change.action) << ": " << printable(describe(viewOf(change.entry))) << '\n'
            << notification << std::endl;
    }
}

/// A list of each kind; that of call-backs, of which observers are not notified, stays empty.
#define CALLJOURNAL_LIST(Kind, word) std::deque<Kind##CallItem>,
using Logs = std::tuple<CALLJOURNAL_CALL_KINDS(CALLJOURNAL_LIST) std::deque<StoredCallBack>>;
#undef CALLJOURNAL_LIST

}  // namespace

void followEntries(const Filter& filter, Session& session, const std::function<void()>& list,
                   const GlobalOptions& globals, std::ostream& out) {
    const InterruptHandler handler;
    Logs logs;
    // Reads the logs again and hands what they were and are to `use`.
    const auto look = [&](const auto& use) {
        forEachCallLog([&](auto type) {
            using Item = typename decltype(type)::Item;
            if (filter.wantsKind(KindInterface<Item>::name)) {
                std::deque<Item> now = session.journal().template entries<Item>();
                std::deque<Item>& before = std::get<std::deque<Item>>(logs);
                use(before, now);
                before = std::move(now);
            }
        });
    };

    auto seen = session.store().changeCount();
    look([](const auto&, const auto&) {});
    list();
    out.flush();
    while (isInterrupted == 0 && out.good()) {
        std::this_thread::sleep_for(pollInterval);
        const auto now = session.store().changeCount();
        if (now != seen) {
            seen = now;
            look([&](const auto& before, const auto& after) {
                for (const auto& change : changesBetween(before, after)) {
                    print(change, globals, out);
                }
            });
        }
    }
}

}  // namespace calljournal
