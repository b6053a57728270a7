#ifndef CALLJOURNAL_RECEIVEDCALLITEM_H
#define CALLJOURNAL_RECEIVEDCALLITEM_H

#include <list>
#include <string>

#include "CallInfo.h"
#include "CallItemWithPicture.h"
#include "CallJournalExport.h"
#include "Duration.h"
#include "Redirecting.h"
#include "TimeFormat.h"

/// One entry of the received (answered) calls list: a calling party with its calls, newest first. It has neither a
/// viewed flag nor a group-by key.
class CALLJOURNAL_EXPORT ReceivedCallItem : public CallItemWithPicture {
public:
    /// One answered call.
    class CALLJOURNAL_EXPORT ReceivedCallInfo : public CallInfo,
                                                public Duration,
                                                public TimeFormat,
                                                public Redirecting {
    public:
        /// All texts empty, all enumerations 0.
        ReceivedCallInfo();

        using CallInfo::operator==;
        using Duration::operator==;
        using Redirecting::operator==;
        using TimeFormat::operator==;

        /// Goes back to the state of a new object.
        void reset() override;

        /// Compares all four parts: the only kind of call whose equality counts the Redirecting part.
        virtual bool operator==(const ReceivedCallInfo& other) const;
    };

    /// Empty texts, no calls.
    ReceivedCallItem();

    /// Takes copies of all `infos` in their order, however many; the limit of ten holds for single calls only.
    ReceivedCallItem(const std::string& entryId, const std::string& surname, const std::string& firstname,
                     const std::list<ReceivedCallInfo>& infos);

    using CallItemWithPicture::operator==;

    /// Goes back to the state of a new object.
    void reset() override;

    /// Compares the texts and the calls pairwise in order.
    virtual bool operator==(const ReceivedCallItem& other) const;

    /// The calls, newest first.
    const std::list<ReceivedCallInfo>& getReceivedCallInfoList() const;

    /// Replaces the calls by copies of all `infos`, however many.
    void setReceivedCallInfoList(const std::list<ReceivedCallInfo>& infos);

    /// Puts a new call in front. When that makes more than ten, one call, the oldest, leaves at the back.
    void addCallInfoToList(const ReceivedCallInfo& info);

    /// Puts a call at the back, for loading a list in order. Does nothing when ten or more are there.
    void appendCallInfoToList(const ReceivedCallInfo& info);

private:
    /// Decoding hands a list of calls over without a copy.
    friend struct calljournal::detail::OwnMembers<ReceivedCallItem>;

    std::list<ReceivedCallInfo> receivedCallInfoList_;
};

#endif
