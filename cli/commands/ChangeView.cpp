#include "ChangeView.h"

#include <chrono>
#include <csignal>
#include <ostream>
#include <thread>
#include <type_traits>

#include "Changes.h"
#include "EntryView.h"
#include "ErrorMessage.h"
#include "ItemJson.h"
#include "Kinds.h"
#include "PrintableText.h"

namespace calljournal {

namespace {

constexpr std::chrono::milliseconds pollInterval(100);

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
void print(const Item& entry, JournalServiceObserverIfc::ActionType action, OutputFormat format, std::ostream& out) {
    const std::string notification = notificationOf(entry, action);
    if (format == OutputFormat::json) {
        Json json = toJsonWithKind(entry);
        json["Change"] = wordFor(action);
        json["Notification"] = notification;
        out << jsonText(json, false) << std::endl;
    } else {
        out << wordFor(action) << ": " << printable(describe(viewOf(entry))) << '\n' << notification << std::endl;
    }
}

/// Call-backs are not followed: observers are not notified of them.
void printIfWanted(const Change& change, const Filter& filter, const CommandContext& context) {
    std::visit(
        [&](const auto& entry) {
            using Kind = KindInterface<std::decay_t<decltype(entry)>>;
            if constexpr (Kind::isCallLog) {
                if (filter.wantsKind(Kind::name)) {
                    print(entry, change.action, context.globals.format, context.out);
                }
            }
        },
        change.entry);
}

/// Shows what has changed since the change number `since`, and returns the number to go on from.
std::uint64_t showChanges(std::uint64_t since, const Filter& filter, Journal& journal, const CommandContext& context) {
    for (JournalChanges changes = changesSince(journal, since); changes.number != since;
         changes = changesSince(journal, since)) {
        since = changes.number;
        if (!changes.isWhole) {
            printError(context.err, "more was deleted at once than the store remembers; not all of it is shown here");
        }
        for (const Change& change : changes.entries) {
            printIfWanted(change, filter, context);
        }
    }
    return since;
}

}  // namespace

void followEntries(const Filter& filter, Session& session, const std::function<void()>& list,
                   const CommandContext& context) {
    const InterruptHandler handler;
    auto seen = session.journal().store().changeCount();
    std::uint64_t number = changesSince(session.journal(), 0).number;
    list();
    context.out.flush();
    while (isInterrupted == 0) {
        std::this_thread::sleep_for(pollInterval);
        const auto now = session.journal().store().changeCount();
        if (now != seen) {
            seen = now;
            number = showChanges(number, filter, session.journal(), context);
        }
    }
}

}  // namespace calljournal
