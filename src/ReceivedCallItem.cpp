#include "ReceivedCallItem.h"

#include "detail/BoundedCallList.h"

ReceivedCallItem::ReceivedCallInfo::ReceivedCallInfo() = default;

void ReceivedCallItem::ReceivedCallInfo::reset() {
    CallInfo::reset();
    Duration::reset();
    TimeFormat::reset();
    Redirecting::reset();
}

bool ReceivedCallItem::ReceivedCallInfo::operator==(const ReceivedCallInfo& other) const {
    return CallInfo::operator==(other) && TimeFormat::operator==(other) && Duration::operator==(other) &&
           Redirecting::operator==(other);
}

ReceivedCallItem::ReceivedCallItem() = default;

ReceivedCallItem::ReceivedCallItem(const std::string& entryId, const std::string& surname, const std::string& firstname,
                                   const std::list<ReceivedCallInfo>& infos)
    : CallItemWithPicture(entryId, surname, firstname), receivedCallInfoList_(infos) {}

void ReceivedCallItem::reset() {
    CallItemWithPicture::reset();
    receivedCallInfoList_.clear();
}

bool ReceivedCallItem::operator==(const ReceivedCallItem& other) const {
    return operator==(static_cast<const CallItemWithPicture&>(other)) &&
           receivedCallInfoList_ == other.receivedCallInfoList_;
}

const std::list<ReceivedCallItem::ReceivedCallInfo>& ReceivedCallItem::getReceivedCallInfoList() const {
    return receivedCallInfoList_;
}

void ReceivedCallItem::setReceivedCallInfoList(const std::list<ReceivedCallInfo>& infos) {
    receivedCallInfoList_ = infos;
}

void ReceivedCallItem::addCallInfoToList(const ReceivedCallInfo& info) {
    calljournal::detail::addNewest(receivedCallInfoList_, info);
}

void ReceivedCallItem::appendCallInfoToList(const ReceivedCallInfo& info) {
    calljournal::detail::appendOlder(receivedCallInfoList_, info);
}
