#include "Capture.h"

#include "CallListDatabaseAdapterHelper.h"

namespace calljournal {

namespace {

constexpr std::string_view declarationBegin = "<?xml ";

}  // namespace

std::vector<CapturedMessage> messagesOf(std::string_view capture) {
    std::vector<CapturedMessage> messages{{0, capture}};
    for (std::size_t line = 0; line < capture.size();) {
        const std::string_view mark = capture.substr(line, 2);
        const std::size_t begin = line + (mark == "> " || mark == "< " ? 2 : 0);
        if (capture.substr(begin, declarationBegin.size()) == declarationBegin) {
            CapturedMessage& before = messages.back();
            before.text = capture.substr(before.begin, line - before.begin);
            messages.push_back({begin, capture.substr(begin)});
        }
        const std::size_t end = capture.find('\n', line);
        line = end == std::string_view::npos ? capture.size() : end + 1;
    }
    if (messages.size() > 1 && capture.find_first_not_of(" \t\r\n<>") >= messages[1].begin) {
        messages.erase(messages.begin());
    }
    return messages;
}

std::string readSchema(DataAccessServiceIfc& service, std::string_view schema) {
    using Helper = CallListDatabaseAdapterHelper;
    std::string request = Helper::createXMLField(Helper::REASONFORMESSAGE, Helper::READREQUEST);
    Helper::addXMLHeaderFooter(request, std::string(schema));
    return service.processRequest(request);
}

}  // namespace calljournal
