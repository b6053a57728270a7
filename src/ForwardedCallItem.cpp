#include "ForwardedCallItem.h"

#include "detail/BoundedCallList.h"

ForwardedCallItem::ForwardedCallInfo::ForwardedCallInfo() = default;

void ForwardedCallItem::ForwardedCallInfo::reset() {
    CallInfo::reset();
    Duration::reset();
    Redirecting::reset();
}

bool ForwardedCallItem::ForwardedCallInfo::operator==(const ForwardedCallInfo& other) const {
    return CallInfo::operator==(other) && Duration::operator==(other);
}

ForwardedCallItem::ForwardedCallItem() = default;

ForwardedCallItem::ForwardedCallItem(const std::string& entryId, const std::string& surname,
                                     const std::string& firstname, const std::list<ForwardedCallInfo>& infos)
    : CallItemWithPicture(entryId, surname, firstname), forwardedCallInfoList_(infos) {}

void ForwardedCallItem::reset() {
    CallItemWithPicture::reset();
    forwardedCallInfoList_.clear();
}

bool ForwardedCallItem::operator==(const ForwardedCallItem& other) const {
    return operator==(static_cast<const CallItemWithPicture&>(other)) &&
           forwardedCallInfoList_ == other.forwardedCallInfoList_;
}

const std::list<ForwardedCallItem::ForwardedCallInfo>& ForwardedCallItem::getForwardedCallInfoList() const {
    return forwardedCallInfoList_;
}

void ForwardedCallItem::setForwardedCallInfoList(const std::list<ForwardedCallInfo>& infos) {
    forwardedCallInfoList_ = infos;
}

void ForwardedCallItem::addCallInfoToList(const ForwardedCallInfo& info) {
    calljournal::detail::addNewest(forwardedCallInfoList_, info);
}

void ForwardedCallItem::appendCallInfoToList(const ForwardedCallInfo& info) {
    calljournal::detail::appendOlder(forwardedCallInfoList_, info);
}
