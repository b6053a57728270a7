#include "MissedCallItem.h"

#include "detail/BoundedCallList.h"

MissedCallItem::MissedCallInfo::MissedCallInfo() : completedElsewhere(false) {}

void MissedCallItem::MissedCallInfo::reset() {
    CallInfo::reset();
    TimeFormat::reset();
    Redirecting::reset();
    completedElsewhere = false;
    groupName.clear();
    groupNumber.clear();
}

bool MissedCallItem::MissedCallInfo::operator==(const MissedCallInfo& other) const {
    return CallInfo::operator==(other) && TimeFormat::operator==(other) &&
           completedElsewhere == other.completedElsewhere && groupName == other.groupName &&
           groupNumber == other.groupNumber;
}

MissedCallItem::MissedCallItem() : viewed_(false) {}

MissedCallItem::MissedCallItem(const std::string& entryId, const std::string& surname, const std::string& firstname,
                               std::list<MissedCallInfo>& infos, bool viewed)
    : CallItemWithPicture(entryId, surname, firstname), missedCallInfoList_(infos), viewed_(viewed) {}

void MissedCallItem::reset() {
    CallItemWithPicture::reset();
    viewed_ = false;
    missedCallInfoList_.clear();
}

bool MissedCallItem::operator==(const MissedCallItem& other) const {
    return operator==(static_cast<const CallItemWithPicture&>(other)) && viewed_ == other.viewed_ &&
           missedCallInfoList_ == other.missedCallInfoList_;
}

const std::list<MissedCallItem::MissedCallInfo>& MissedCallItem::getMissedCallInfoList() const {
    return missedCallInfoList_;
}

void MissedCallItem::setMissedCallInfoList(const std::list<MissedCallInfo>& infos) {
    missedCallInfoList_ = infos;
}

void MissedCallItem::addCallInfoToList(const MissedCallInfo& info) {
    calljournal::detail::addNewest(missedCallInfoList_, info);
}

void MissedCallItem::appendCallInfoToList(const MissedCallInfo& info) {
    calljournal::detail::appendOlder(missedCallInfoList_, info);
}

bool MissedCallItem::getViewed() const {
    return viewed_;
}

void MissedCallItem::setViewed(bool seen) {
    viewed_ = seen;
}
