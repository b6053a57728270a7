#ifndef CALLJOURNAL_KINDINTERFACE_H
#define CALLJOURNAL_KINDINTERFACE_H

#include <string>

#include "CallListDatabaseAdapter.h"
#include "CallListDatabaseAdapterHelper.h"

namespace calljournal {

/// The library's functions for one kind of item, under names that do not depend on the kind, and the word that people
/// call the kind by.
template <class Item>
struct KindInterface;

#define CALLJOURNAL_KIND_INTERFACE(Kind, word)                                                                      \
    template <>                                                                                                     \
    struct KindInterface<Kind##CallItem> {                                                                          \
        static constexpr const char* name = word;                                                                   \
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

CALLJOURNAL_KIND_INTERFACE(Missed, "missed")
CALLJOURNAL_KIND_INTERFACE(Dialled, "dialled")
CALLJOURNAL_KIND_INTERFACE(Received, "received")
CALLJOURNAL_KIND_INTERFACE(Forwarded, "forwarded")
#undef CALLJOURNAL_KIND_INTERFACE

}  // namespace calljournal

#endif
