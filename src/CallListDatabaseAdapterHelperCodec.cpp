#include <cstring>

#include "CallListDatabaseAdapterHelper.h"
#include "detail/Decoding.h"
#include "detail/Encoding.h"

namespace detail = calljournal::detail;

// The kinds differ in their tables only (format/CallKinds.h); these are their names in the interface.
#define CALLJOURNAL_CODEC(Kind, word)                                                                                 \
    void CallListDatabaseAdapterHelper::createXML##Kind##CallItemBody(const Kind##CallItem& item, std::string& out,   \
                                                                      bool onlyUniqueId) {                            \
        detail::appendBody(out, item, onlyUniqueId);                                                                  \
    }                                                                                                                 \
    std::string CallListDatabaseAdapterHelper::createXML##Kind##CallItemBody(const Kind##CallItem& item,              \
                                                                             bool onlyUniqueId) {                     \
        std::string body;                                                                                             \
        detail::appendBody(body, item, onlyUniqueId);                                                                 \
        return body;                                                                                                  \
    }                                                                                                                 \
    void CallListDatabaseAdapterHelper::createXML##Kind##CallInfoList(const Kind##CallItem& item, std::string& out) { \
        detail::appendCalls(out, item);                                                                               \
    }                                                                                                                 \
    void CallListDatabaseAdapterHelper::getXML##Kind##CallInfo(const char* xml,                                       \
                                                               Kind##CallItem::Kind##CallInfo& info) {                \
        detail::readCall<Kind##CallItem>(xml, info);                                                                  \
    }                                                                                                                 \
    bool CallListDatabaseAdapterHelper::getXML##Kind##CallInfoList(const char* xml,                                   \
                                                                   std::list<Kind##CallItem::Kind##CallInfo>& list) { \
        detail::readCalls<Kind##CallItem>(xml, xml + std::strlen(xml), list);                                         \
        return !list.empty();                                                                                         \
    }                                                                                                                 \
    void CallListDatabaseAdapterHelper::parseXML##Kind##CallItem(const char* xml, Kind##CallItem& item) {             \
        detail::readItem(xml, item);                                                                                  \
    }

CALLJOURNAL_CALL_KINDS(CALLJOURNAL_CODEC)
