#include "CallListDatabaseAdapterHelper.h"
#include "detail/Encoding.h"

namespace detail = calljournal::detail;
namespace text = calljournal::detail::text;

namespace {

/// The message for a changed entry of any kind.
template <class Item>
std::string entryUpdate(const Item& item, const std::string& uniqueIdToDelete,
                        JournalServiceObserverIfc::ActionType action) {
    std::string message(text::XMLHEADER);
    detail::appendElement(message, text::METHOD, detail::CallKind<Item>::updateMethod);
    detail::appendBody(message, item, false);
    message += CallListDatabaseAdapterHelper::createXMLField(CallListDatabaseAdapterHelper::UNIQUEIDTODELETE,
                                                             uniqueIdToDelete);
    detail::appendElement(message, text::ACTIONTYPE, std::to_string(static_cast<int>(action)));
    return message;
}

}  // namespace

std::string CallListDatabaseAdapterHelper::obsReqMissedCallsCountUpdate(unsigned int count) {
    std::string message = createXMLField(METHOD, MISSEDCALLSCOUNTUPDATE_XML);
    message += createXMLField(VALUE, count);
    addXMLHeaderFooter(message, std::string());
    return message;
}

#define CALLJOURNAL_UPDATE(Kind, word)                                                                            \
    std::string CallListDatabaseAdapterHelper::obsReq##Kind##CallsUpdate(                                         \
        const Kind##CallItem& item, std::string uniqueIdToDelete, JournalServiceObserverIfc::ActionType action) { \
        return entryUpdate(item, uniqueIdToDelete, action);                                                       \
    }

CALLJOURNAL_CALL_KINDS(CALLJOURNAL_UPDATE)
