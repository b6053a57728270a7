#include "CallListDatabaseAdapter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

#include "CallListDatabaseAdapterHelper.h"
#include "detail/Log.h"
#include "format/CallKinds.h"
#include "format/Texts.h"

namespace text = calljournal::format::text;

using Helper = CallListDatabaseAdapterHelper;

namespace {

constexpr char module[] = "CallListDatabaseAdapter";
constexpr char source[] = "CallListDatabaseAdapter";

/// The text by which an item is ordered. An item without calls has no time; its entry id is taken instead.
const std::string& sortKey(const MissedCallItem& item) {
    const auto& calls = item.getMissedCallInfoList();
    return calls.empty() ? item.getEntryId() : calls.front().timeDate;
}

/// The first bytes of a key, a whole time, as numbers: where those of two keys differ, they are ordered as the keys.
struct KeyFront {
    std::uint64_t numbers[3];

    explicit KeyFront(std::string_view key) : numbers{} {
        for (std::size_t i = 0; i < std::min(key.size(), sizeof numbers); ++i) {
            const unsigned shift = 8 * (7 - i % 8);
            numbers[i / 8] |= static_cast<std::uint64_t>(static_cast<unsigned char>(key[i])) << shift;
        }
    }
};

/// Sorts as isMissedCallOrdered says. Items are large and their keys far apart in memory, so the fronts of the keys are
/// sorted by themselves and each item is moved once, to its place.
void sortNewestFirst(std::deque<MissedCallItem>& list) {
    struct Keyed {
        KeyFront front;
        std::size_t index;
    };
    std::vector<Keyed> order;
    order.reserve(list.size());
    for (const MissedCallItem& item : list) {
        order.push_back({KeyFront(sortKey(item)), order.size()});
    }
    std::sort(order.begin(), order.end(), [&list](const Keyed& first, const Keyed& second) {
        for (std::size_t i = 0; i < std::size(first.front.numbers); ++i) {
            if (first.front.numbers[i] != second.front.numbers[i]) {
                return first.front.numbers[i] > second.front.numbers[i];
            }
        }
        return isMissedCallOrdered(list[first.index], list[second.index]);
    });
    for (std::size_t start = 0; start < order.size(); ++start) {
        if (order[start].index == start) {
            continue;
        }
        // Lift one item and move the others of its cycle up until its own place is free.
        MissedCallItem lifted = std::move(list[start]);
        std::size_t hole = start;
        while (order[hole].index != start) {
            const std::size_t next = order[hole].index;
            list[hole] = std::move(list[next]);
            order[hole].index = hole;
            hole = next;
        }
        list[hole] = std::move(lifted);
        order[hole].index = hole;
    }
}

/// Logs the calls of one item of the walk, and returns whether the log wanted it.
bool logCalls(const MissedCallItem& item) {
    if (!loggingOnAppZel(module, 5)) {
        return false;
    }
    const auto& calls = item.getMissedCallInfoList();
    logAppZel(module, source, 5, __LINE__, "(*it).getMissedCallInfoList(): size:%d, groupname:%s, groupNumber:%s\n",
              static_cast<int>(calls.size()), calls.empty() ? "" : calls.front().groupName.c_str(),
              calls.empty() ? "" : calls.front().groupNumber.c_str());
    return true;
}

/// Takes items out of a queue in one walk of linear cost. An item leaves at once where that moves a few others only, as
/// in any list of a phone. Else a gap opens: kept items close up as the walk goes, and what is behind the gap at its
/// end, also when the walk is left by an exception; the item at hand is then still in the queue.
class ClosingGap {
public:
    explicit ClosingGap(std::deque<MissedCallItem>& list) : list_(list) {}
    ClosingGap(const ClosingGap&) = delete;
    ClosingGap& operator=(const ClosingGap&) = delete;

    ~ClosingGap() {
        if (kept_ != next_) {
            const auto rest = std::move(position(next_), list_.end(), position(kept_));
            list_.erase(rest, list_.end());
        }
    }

    bool atEnd() const { return next_ == list_.size(); }
    const MissedCallItem& current() const { return list_[next_]; }
    std::size_t keptCount() const { return kept_; }

    void keep() {
        if (kept_ != next_) {
            std::swap(list_[kept_], list_[next_]);
        }
        ++kept_;
        ++next_;
    }

    void drop() {
        const std::size_t behind = list_.size() - next_ - 1;
        if (kept_ == next_ && std::min(kept_, behind) <= fewItems) {
            list_.erase(position(next_));
        } else {
            ++next_;
        }
    }

private:
    std::deque<MissedCallItem>::iterator position(std::size_t index) {
        return list_.begin() + static_cast<std::ptrdiff_t>(index);
    }

    static constexpr std::size_t fewItems = 64;

    std::deque<MissedCallItem>& list_;
    std::size_t kept_ = 0;
    std::size_t next_ = 0;
};

}  // namespace

CallListDatabaseAdapter::CallListDatabaseAdapter() : service_(nullptr) {}

CallListDatabaseAdapter::~CallListDatabaseAdapter() = default;

void CallListDatabaseAdapter::init(DataAccessServiceIfc* dataAccessService) {
    service_ = dataAccessService;
}

std::string CallListDatabaseAdapter::processRequest(const std::string& request) {
    return service_ == nullptr ? "failed" : service_->processRequest(request);
}

bool CallListDatabaseAdapter::isDeleteRequest(const std::string& reason) const {
    return reason == Helper::DELETEREQUEST;
}

std::string CallListDatabaseAdapter::updateEntries(const std::string& entries, const std::string& reason,
                                                   const std::string& schemaName) {
    std::string request = Helper::createXMLField(Helper::REASONFORMESSAGE, reason);
    request += entries;
    Helper::addXMLHeaderFooter(request, schemaName);
    CALLJOURNAL_LOG(module, source, 5, "CallListDatabaseAdapter::updateEntries msg: \n %s\n", request.c_str());
    std::string reply = processRequest(request);
    CALLJOURNAL_LOG(module, source, 5, "DAS resp %s \n", reply.c_str());
    return reply;
}

void CallListDatabaseAdapter::updateEntry(const std::string& body, const std::string& reason,
                                          const std::string& schemaName) {
    updateEntries(Helper::createXMLField(Helper::ENTRY, body), reason, schemaName);
}

#define CALLJOURNAL_UPDATE_ENTRY(Kind, word)                                                                   \
    void CallListDatabaseAdapter::update##Kind##Entry(const Kind##CallItem& item, const std::string& reason) { \
        updateEntry(Helper::createXML##Kind##CallItemBody(item, isDeleteRequest(reason)), reason,              \
                    std::string(calljournal::format::CallKind<Kind##CallItem>::schema));                       \
    }

CALLJOURNAL_CALL_KINDS(CALLJOURNAL_UPDATE_ENTRY)

void CallListDatabaseAdapter::deleteFromConversationsTable(const std::string& callLogId) {
    std::string request = Helper::createXMLField(Helper::REASONFORMESSAGE, Helper::DELETEREQUEST);
    request += Helper::createXMLField(Helper::ENTRY, Helper::createXMLField(text::CALLLOGID.data(), callLogId));
    Helper::addXMLHeaderFooter(request, std::string(text::DAS_CONVERSATIONS));
    CALLJOURNAL_LOG(module, source, 6, "CallListDatabaseAdapter::deleteFromConversationsTable() - DAS req '%s'",
                    request.c_str());
    const std::string reply = processRequest(request);
    CALLJOURNAL_LOG(module, source, 6, "CallListDatabaseAdapter::deleteFromConversationsTable() - DAS resp '%s'",
                    reply.c_str());
}

bool CallListDatabaseAdapter::populateMissedCallListFromXml(const std::string& reply,
                                                            std::deque<MissedCallItem>& list) {
    list.clear();
    return Helper::parseXMLMissedCallList(reply, list);
}

void CallListDatabaseAdapter::normalizeMissedCallList(std::deque<MissedCallItem>& list) {
    CALLJOURNAL_LOG(module, source, 6, "before sort normalizeMissedCallList: missedCallList.size():%d\n",
                    static_cast<int>(list.size()));
    sortNewestFirst(list);
    CALLJOURNAL_LOG(module, source, 6, "after sort normalizeMissedCallList: missedCallList.size():%d\n",
                    static_cast<int>(list.size()));

    const std::string deleteRequest = Helper::DELETEREQUEST;
    for (ClosingGap walk(list); !walk.atEnd();) {
        logCalls(walk.current());
        if (!walk.current().getMissedCallInfoList().empty()) {
            walk.keep();
            continue;
        }
        updateMissedEntry(walk.current(), deleteRequest);
        walk.drop();
        // After a removal the walk starts anew. All that a second walk over the kept items does is log them.
        std::size_t logged = 0;
        while (logged < walk.keptCount() && logCalls(list[logged])) {
            ++logged;
        }
    }
}

void CallListDatabaseAdapter::processMissedCallDbXml(const std::string& reply, std::deque<MissedCallItem>& list) {
    populateMissedCallListFromXml(reply, list);
    normalizeMissedCallList(list);
}

bool isMissedCallOrdered(const MissedCallItem& first, const MissedCallItem& second) {
    return sortKey(first) > sortKey(second);
}
