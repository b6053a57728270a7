#include "StoreReply.h"

#include "CallListDatabaseAdapterHelper.h"
#include "StoreWords.h"

namespace calljournal {

using Helper = CallListDatabaseAdapterHelper;

StoreReply readStoreReply(const std::string& reply) {
    StoreReply result;
    std::string word;
    const char* cursor = Helper::getXMLValue2(reply.c_str(), std::string(resultElement).c_str(), word);
    result.ok = word == okResult;
    if (!result.ok) {
        Helper::getXMLValue2(cursor, std::string(reasonElement).c_str(), result.reason);
        if (result.reason.empty()) {
            result.reason = "unexpected reply of the data access service: " + reply;
        }
        return result;
    }
    const std::string open = Helper::createXMLBegin(Helper::UNIQUEID);
    for (std::size_t at = reply.find(open); at != std::string::npos; at = reply.find(open, at + open.size())) {
        result.uniqueIds.emplace_back();
        Helper::getXMLValue2(reply.c_str() + at, Helper::UNIQUEID, result.uniqueIds.back());
    }
    return result;
}

std::vector<std::string> readEntryBodies(const std::string& reply) {
    const std::string open = Helper::createXMLBegin(Helper::ENTRY);
    const std::string close = Helper::createXMLClose(Helper::ENTRY);
    std::vector<std::string> bodies;
    for (std::size_t at = reply.find(open); at != std::string::npos; at = reply.find(open, at)) {
        const std::size_t begin = at + open.size();
        const std::size_t end = reply.find(close, begin);
        if (end == std::string::npos) {
            break;
        }
        bodies.push_back(reply.substr(begin, end - begin));
        at = end + close.size();
    }
    return bodies;
}

}  // namespace calljournal
