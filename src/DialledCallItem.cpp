#include "DialledCallItem.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "detail/BoundedCallList.h"

DialledCallItem::DialledCallInfo::DialledCallInfo() : connectedNumberPriority(false), isBluetoothCall(false) {}

void DialledCallItem::DialledCallInfo::reset() {
    CallInfo::reset();
    TimeFormat::reset();
    Duration::reset();
    resolvedNumber.clear();
    connectedNumberPriority = false;
    isBluetoothCall = false;
    Redirecting::reset();
}

bool DialledCallItem::DialledCallInfo::operator==(const DialledCallInfo& other) const {
    return CallInfo::operator==(other) && TimeFormat::operator==(other) && Duration::operator==(other) &&
           resolvedNumber == other.resolvedNumber && connectedNumberPriority == other.connectedNumberPriority &&
           isBluetoothCall == other.isBluetoothCall;
}

DialledCallItem::DialledCallItem() = default;

DialledCallItem::DialledCallItem(const std::string& entryId, const std::string& surname, const std::string& firstname,
                                 const std::list<DialledCallInfo>& infos)
    : CallItemWithPicture(entryId, surname, firstname), dialledCallInfoList_(infos) {}

void DialledCallItem::reset() {
    CallItemWithPicture::reset();
    journalServiceGroupBy_.clear();
    dialledCallInfoList_.clear();
}

bool DialledCallItem::operator==(const DialledCallItem& other) const {
    return operator==(static_cast<const CallItemWithPicture&>(other)) &&
           journalServiceGroupBy_ == other.journalServiceGroupBy_ && dialledCallInfoList_ == other.dialledCallInfoList_;
}

const std::string& DialledCallItem::getJournalSeviceGroupBy() const {
    return journalServiceGroupBy_;
}

void DialledCallItem::setJournalSeviceGroupBy(const std::string& key) {
    journalServiceGroupBy_ = key;
}

const std::list<DialledCallItem::DialledCallInfo>& DialledCallItem::getDialledCallInfoList() const {
    return dialledCallInfoList_;
}

void DialledCallItem::setDialledCallInfoList(const std::list<DialledCallInfo>& infos) {
    dialledCallInfoList_ = infos;
}

DialledCallItem::DialledCallInfo DialledCallItem::getDialledCallInfo(int index) const {
    const int position = std::max(index, 0);
    if (static_cast<std::size_t>(position) >= dialledCallInfoList_.size()) {
        return DialledCallInfo();
    }
    return *std::next(dialledCallInfoList_.begin(), position);
}

void DialledCallItem::addCallInfoToList(const DialledCallInfo& info) {
    calljournal::detail::addNewest(dialledCallInfoList_, info);
}

void DialledCallItem::appendCallInfoToList(const DialledCallInfo& info) {
    calljournal::detail::appendOlder(dialledCallInfoList_, info);
}
