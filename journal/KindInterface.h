#pragma once

#include <string>

#include "CallBacks.h"
#include "CallListDatabaseAdapter.h"
#include "CallListDatabaseAdapterHelper.h"

namespace calljournal {

/// The functions for one kind of item, under names that do not depend on the kind, the word that people call the kind
/// by, and whether it is a log of calls, as a phone keeps them: one entry for each party with a list of its calls,
/// notifications to observers, conversation rows. Call-backs are none.
template <class Item>
struct KindInterface;

#define CALLJOURNAL_KIND_INTERFACE(Kind, word)                                                                      \
    template <>                                                                                                     \
    struct KindInterface<Kind##CallItem> {                                                                          \
        static constexpr const char* name = #word;                                                                  \
        static constexpr bool isCallLog = true;                                                                     \
        static std::string encode(const Kind##CallItem& item) {                                                     \
            return CallListDatabaseAdapterHelper::createXML##Kind##CallItemBody(item, false);                       \
        }                                                                                                           \
        static void decode(const char* xml, Kind##CallItem& item) {                                                 \
            CallListDatabaseAdapterHelper::parseXML##Kind##CallItem(xml, item);                                     \
        }                                                                                                           \
        static std::string update(const Kind##CallItem& item, const std::string& idToDelete,                        \
                                  JournalServiceObserverIfc::ActionType action) {                                   \
            return CallListDatabaseAdapterHelper::obsReq##Kind##CallsUpdate(item, idToDelete, action);              \
        }                                                                                                           \
        static void send(CallListDatabaseAdapter& adapter, const Kind##CallItem& item, const std::string& reason) { \
            adapter.update##Kind##Entry(item, reason);                                                              \
        }                                                                                                           \
    };

CALLJOURNAL_CALL_KINDS(CALLJOURNAL_KIND_INTERFACE)
#undef CALLJOURNAL_KIND_INTERFACE

template <>
struct KindInterface<StoredCallBack> {
    static constexpr const char* name = "callback";
    static constexpr bool isCallLog = false;
    static std::string encode(const StoredCallBack& item);
    static void decode(const char* xml, StoredCallBack& item);
    static void send(CallListDatabaseAdapter& adapter, const StoredCallBack& item, const std::string& reason);
};

}  // namespace calljournal
