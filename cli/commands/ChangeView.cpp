#include "ChangeView.h"

#include <chrono>
#include <csignal>
#include <ostream>
#include <thread>
#include <type_traits>
#include <variant>

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
void print(const Item& entry, JournalServiceObserverIfc::ActionType action, const GlobalOptions& globals,
           std::ostream& out) {
    const std::string notification = notificationOf(entry, action);
    if (globals.format == OutputFormat::json) {
        Json json = toJsonWithKind(entry);
        json["Change"] = wordFor(action);
        json["Notification"] = notification;
        out << jsonText(json, false) << std::endl;
    } else {
        out << wordFor(action) << ": " << printable(describe(viewOf(entry))) << '\n' << notification << std::endl;
    }
}

/// Prints a change of a wanted kind that observers are notified of.
void print(const Change& change, const Filter& filter, const GlobalOptions& globals, std::ostream& out) {
    std::visit(
        [&](const auto& entry) {
            using Kind = KindInterface<std::decay_t<decltype(entry)>>;
            if constexpr (Kind::isCallLog) {
                if (filter.wantsKind(Kind::name)) {
                    print(entry, change.action, globals, out);
                }
            }
        },
        change.entry);
}

}  // namespace

void followEntries(const Filter& filter, Session& session, const std::function<void()>& list,
                   const GlobalOptions& globals, std::ostream& out) {
    const InterruptHandler handler;
    auto seen = session.store().changeCount();
    std::uint64_t number = changesSince(session.journal(), 0).number;
    list();
    out.flush();
    while (isInterrupted == 0 && out.good()) {
        std::this_thread::sleep_for(pollInterval);
        const auto now = session.store().changeCount();
        while (seen != now) {
            const JournalChanges changes = changesSince(session.journal(), number);
            for (const Change& change : changes.entries) {
                print(change, filter, globals, out);
            }
            seen = changes.number == number ? now : seen;
            number = changes.number;
        }
    }
}

}  // namespace calljournal
