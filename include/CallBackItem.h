#ifndef CALLJOURNAL_CALLBACKITEM_H
#define CALLJOURNAL_CALLBACKITEM_H

#include <string>

#include "CallItem.h"
#include "CallJournalExport.h"
#include "NumberType.h"

/// One request to be called back. It has no unique id, no picture and no list of calls.
class CALLJOURNAL_EXPORT CallBackItem : public CallItem {
public:
    /// Why the call-back was asked for; stored values stay.
    enum CallBackType : int {
        NOTYPE = 0,   ///< "NOTYPE"
        NOREPLY = 1,  ///< "NOREPLY"
        BUSY = 2      ///< "BUSY"
    };

    /// What became of it; stored values stay.
    enum CallBackState : int {
        NOSTATE = 0,   ///< "NOSTATE"
        ACTIVE = 1,    ///< "ACTIVE"
        SUSPENDED = 2  ///< "SUSPENDED"
    };

    /// All texts empty, all enumerations 0.
    CallBackItem();
    CallBackItem(const std::string& entryId, const std::string& surname, const std::string& firstname,
                 const std::string& number, NumberType::NT numberType, const std::string& timeDate, CallBackType type,
                 CallBackState state, const std::string& deviceId);

    using CallItem::operator==;

    /// Empties the call-back's own members. Entry id and names stay, unlike in every other item: the request is over,
    /// the party is the same.
    void reset() override;

    /// Compares the call-back's own members. Entry id and names do not count.
    virtual bool operator==(const CallBackItem& other) const;

    const std::string& getNumber() const;
    void setNumber(const std::string& text);

    NumberType::NT getNumberType() const;
    void setNumberType(NumberType::NT value);

    const std::string& getTimeDate() const;
    void setTimeDate(const std::string& text);

    CallBackType getCallBackType() const;
    void setCallBackType(CallBackType value);

    CallBackState getCallBackState() const;
    void setCallBackState(CallBackState value);

    /// The phone that the request belongs to.
    const std::string& getDeviceId() const;
    void setDeviceId(const std::string& id);

private:
    std::string number_;
    NumberType::NT numberType_;
    std::string timeDate_;
    CallBackType callBackType_;
    CallBackState callBackState_;
    std::string deviceId_;
};

#endif
