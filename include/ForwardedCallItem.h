#ifndef CALLJOURNAL_FORWARDEDCALLITEM_H
#define CALLJOURNAL_FORWARDEDCALLITEM_H

#include <list>
#include <string>

#include "CallInfo.h"
#include "CallItemWithPicture.h"
#include "CallJournalExport.h"
#include "Duration.h"
#include "Redirecting.h"

/// One entry of the forwarded calls list: a party with its calls that were forwarded, newest first. It has neither a
/// viewed flag nor a group-by key.
class CALLJOURNAL_EXPORT ForwardedCallItem : public CallItemWithPicture {
public:
    /// One forwarded call. It has no time format.
    class CALLJOURNAL_EXPORT ForwardedCallInfo : public CallInfo, public Duration, public Redirecting {
    public:
        /// All texts empty, all enumerations 0.
        ForwardedCallInfo();

        using CallInfo::operator==;
        using Duration::operator==;
        using Redirecting::operator==;

        /// Goes back to the state of a new object.
        void reset() override;

        /// Compares CallInfo and Duration only. The Redirecting part, which says what kind of transfer it was, does not
        /// count.
        virtual bool operator==(const ForwardedCallInfo& other) const;
    };

    /// Empty texts, no calls.
    ForwardedCallItem();

    /// Takes copies of all `infos` in their order, however many; the limit of ten holds for single calls only.
    ForwardedCallItem(const std::string& entryId, const std::string& surname, const std::string& firstname,
                      const std::list<ForwardedCallInfo>& infos);

    using CallItemWithPicture::operator==;

    /// Goes back to the state of a new object.
    void reset() override;

    /// Compares the texts and the calls pairwise in order.
    virtual bool operator==(const ForwardedCallItem& other) const;

    /// The calls, newest first.
    const std::list<ForwardedCallInfo>& getForwardedCallInfoList() const;

    /// Replaces the calls by copies of all `infos`, however many.
    void setForwardedCallInfoList(const std::list<ForwardedCallInfo>& infos);

    /// Puts a new call in front. When that makes more than ten, one call, the oldest, leaves at the back.
    void addCallInfoToList(const ForwardedCallInfo& info);

    /// Puts a call at the back, for loading a list in order. Does nothing when ten or more are there.
    void appendCallInfoToList(const ForwardedCallInfo& info);

private:
    /// Decoding hands a list of calls over without a copy.
    friend struct calljournal::detail::OwnMembers<ForwardedCallItem>;

    std::list<ForwardedCallInfo> forwardedCallInfoList_;
};

#endif
