#ifndef CALLJOURNAL_MISSEDCALLITEM_H
#define CALLJOURNAL_MISSEDCALLITEM_H

#include <list>
#include <string>

#include "CallInfo.h"
#include "CallItemWithPicture.h"
#include "CallJournalExport.h"
#include "Redirecting.h"
#include "TimeFormat.h"

/// One entry of the missed calls list: a party with its missed calls, newest first, and whether the user has seen it.
///
///     MissedCallItem::MissedCallInfo call;
///     call.number = "0301234";
///     MissedCallItem entry;
///     entry.addCallInfoToList(call);
class CALLJOURNAL_EXPORT MissedCallItem : public CallItemWithPicture {
public:
    /// One missed call. It has no duration.
    class CALLJOURNAL_EXPORT MissedCallInfo : public CallInfo, public TimeFormat, public Redirecting {
    public:
        /// All texts empty, all enumerations 0, not completed elsewhere.
        MissedCallInfo();

        using CallInfo::operator==;
        using Redirecting::operator==;
        using TimeFormat::operator==;

        /// Goes back to the state of a new object.
        void reset() override;

        /// Compares CallInfo, TimeFormat and the own members. The Redirecting part does not count: two missed calls
        /// that differ only in the deflecting party are equal.
        virtual bool operator==(const MissedCallInfo& other) const;

        bool completedElsewhere;  ///< The call was answered at another phone.
        std::string groupName;    ///< UTF-8.
        std::string groupNumber;
    };

    /// Empty texts, no calls, not viewed.
    MissedCallItem();

    /// Takes copies of all `infos` in their order, however many; the limit of ten holds for single calls only.
    MissedCallItem(const std::string& entryId, const std::string& surname, const std::string& firstname,
                   std::list<MissedCallInfo>& infos, bool viewed);

    using CallItemWithPicture::operator==;

    /// Goes back to the state of a new object.
    void reset() override;

    /// Compares everything: texts, viewed, and the calls pairwise in order.
    virtual bool operator==(const MissedCallItem& other) const;

    /// The calls, newest first.
    const std::list<MissedCallInfo>& getMissedCallInfoList() const;

    /// Replaces the calls by copies of all `infos`, however many.
    void setMissedCallInfoList(const std::list<MissedCallInfo>& infos);

    /// Puts a new call in front. When that makes more than ten, one call, the oldest, leaves at the back.
    void addCallInfoToList(const MissedCallInfo& info);

    /// Puts a call at the back, for loading a list in order. Does nothing when ten or more are there.
    void appendCallInfoToList(const MissedCallInfo& info);

    /// Whether the user has seen the entry.
    bool getViewed() const;
    void setViewed(bool seen);

private:
    /// Decoding hands a list of calls over without a copy.
    friend struct calljournal::detail::OwnMembers<MissedCallItem>;

    std::list<MissedCallInfo> missedCallInfoList_;
    bool viewed_;
};

#endif
