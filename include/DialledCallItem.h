#ifndef CALLJOURNAL_DIALLEDCALLITEM_H
#define CALLJOURNAL_DIALLEDCALLITEM_H

#include <list>
#include <string>

#include "CallInfo.h"
#include "CallItemWithPicture.h"
#include "CallJournalExport.h"
#include "Duration.h"
#include "Redirecting.h"
#include "TimeFormat.h"

/// One entry of the dialled calls list: a called party with the calls made to it, newest first, and the key by which
/// the journal service groups entries. It has no viewed flag.
class CALLJOURNAL_EXPORT DialledCallItem : public CallItemWithPicture {
public:
    /// One dialled call.
    class CALLJOURNAL_EXPORT DialledCallInfo : public CallInfo, public Duration, public TimeFormat, public Redirecting {
    public:
        /// All texts empty, all enumerations 0, both flags false.
        DialledCallInfo();

        using CallInfo::operator==;
        using Duration::operator==;
        using Redirecting::operator==;
        using TimeFormat::operator==;

        /// Goes back to the state of a new object.
        void reset() override;

        /// Compares CallInfo, TimeFormat, Duration and the own members. The Redirecting part does not count.
        virtual bool operator==(const DialledCallInfo& other) const;

        std::string resolvedNumber;    ///< The number after the phone's dialling rules were applied.
        bool connectedNumberPriority;  ///< The connected number is shown rather than the dialled one.
        bool isBluetoothCall;
    };

    /// Empty texts, no calls.
    DialledCallItem();

    /// Takes copies of all `infos` in their order, however many; the group-by key stays empty.
    DialledCallItem(const std::string& entryId, const std::string& surname, const std::string& firstname,
                    const std::list<DialledCallInfo>& infos);

    using CallItemWithPicture::operator==;

    /// Goes back to the state of a new object.
    void reset() override;

    /// Compares everything: texts, group-by key, and the calls pairwise in order.
    virtual bool operator==(const DialledCallItem& other) const;

    /// The journal service's group-by key. The accessors' spelling is fixed: callers on the phone use it.
    const std::string& getJournalSeviceGroupBy() const;
    void setJournalSeviceGroupBy(const std::string& key);

    /// The calls, newest first.
    const std::list<DialledCallInfo>& getDialledCallInfoList() const;

    /// Replaces the calls by copies of all `infos`, however many.
    void setDialledCallInfoList(const std::list<DialledCallInfo>& infos);

    /// Returns a copy of the call at `index`, counted from 0 at the newest, which any negative index yields too. A
    /// default DialledCallInfo beyond the end.
    DialledCallInfo getDialledCallInfo(int index) const;

    /// Puts a new call in front. When that makes more than ten, one call, the oldest, leaves at the back.
    void addCallInfoToList(const DialledCallInfo& info);

    /// Puts a call at the back, for loading a list in order. Does nothing when ten or more are there.
    void appendCallInfoToList(const DialledCallInfo& info);

private:
    /// Decoding hands a list of calls over without a copy.
    friend struct calljournal::detail::OwnMembers<DialledCallItem>;

    std::string journalServiceGroupBy_;
    std::list<DialledCallInfo> dialledCallInfoList_;
};

#endif
