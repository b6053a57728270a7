#include "FollowCommand.h"

#include <chrono>
#include <csignal>
#include <map>
#include <ostream>
#include <thread>
#include <tuple>

#include "EntryView.h"
#include "ItemJson.h"
#include "Kinds.h"

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

bool isOnlySeen(const MissedCallItem& before, MissedCallItem now) {
    const bool isSeen = !before.getViewed() && now.getViewed();
    now.setViewed(false);
    return isSeen && now == before;
}

template <class Item>
bool isOnlySeen(const Item&, const Item&) {
    return false;
}

/// The entries of one kind as they were when last looked at.
template <class Item>
class Watched {
public:
    /// Looks again and tells every difference on `out`; nothing the first time.
    void look(Session& session, const GlobalOptions& globals, std::ostream& out) {
        std::map<std::string, Item> now;
        for (Item& entry : session.journal().template entries<Item>()) {
            const std::string id = entry.getUniqueId();
            now.emplace(id, std::move(entry));
        }
        if (isKnown_) {
            tellChanges(now, globals, out);
        }
        isKnown_ = true;
        entries_ = std::move(now);
    }

private:
    void tellChanges(const std::map<std::string, Item>& now, const GlobalOptions& globals, std::ostream& out) {
        for (const auto& [id, entry] : now) {
            const auto before = entries_.find(id);
            if (before == entries_.end()) {
                tell(entry, JournalServiceObserverIfc::ADDED, globals, out);
            } else if (!(before->second == entry)) {
                const bool isSeen = isOnlySeen(before->second, entry);
                tell(entry, isSeen ? JournalServiceObserverIfc::VIEWED : JournalServiceObserverIfc::CHANGED, globals,
                     out);
            }
        }
        for (const auto& [id, entry] : entries_) {
            if (now.count(id) == 0) {
                tell(entry, JournalServiceObserverIfc::DELETED, globals, out);
            }
        }
    }

    static void tell(const Item& entry, JournalServiceObserverIfc::ActionType action, const GlobalOptions& globals,
                     std::ostream& out) {
        const EntryView view = viewOf(entry);
        if (globals.format == OutputFormat::json) {
            Json json = toJson(entry);
            json["Kind"] = view.kind;
            json["Change"] = wordFor(action);
            json["Notification"] = notificationOf(entry, action);
            out << jsonText(json, false) << std::endl;
        } else {
            out << wordFor(action) << ": " << describe(view) << '\n' << notificationOf(entry, action) << std::endl;
        }
    }

    bool isKnown_ = false;
    std::map<std::string, Item> entries_;
};

}  // namespace

void followEntries(const ListOptions& options, Session& session, const GlobalOptions& globals, std::ostream& out) {
    const InterruptHandler handler;
    std::tuple<Watched<MissedCallItem>, Watched<DialledCallItem>, Watched<ReceivedCallItem>, Watched<ForwardedCallItem>>
        watched;
    const auto look = [&] {
        forEachKind([&](auto type) {
            using Item = typename decltype(type)::Item;
            if (options.kind == "all" || options.kind == KindInterface<Item>::name) {
                std::get<Watched<Item>>(watched).look(session, globals, out);
            }
        });
    };

    auto seen = session.store().changeCount();
    look();
    listEntries(options, session, globals, out);
    out.flush();
    while (isInterrupted == 0 && out.good()) {
        std::this_thread::sleep_for(pollInterval);
        const auto now = session.store().changeCount();
        if (now != seen) {
            seen = now;
            look();
        }
    }
}

}  // namespace calljournal
