#pragma once

#include <gtest/gtest.h>
#include <list>
#include <string>
#include <type_traits>
#include <vector>

#include "CallListDatabaseAdapter.h"
#include "CallListDatabaseAdapterHelper.h"
#include "CallMembers.h"
#include "DialledCallItem.h"
#include "ForwardedCallItem.h"
#include "LiteralRules.h"
#include "MissedCallItem.h"
#include "ReceivedCallItem.h"

/// The four kinds of call list entries under one set of names, so that a rule that all share is one typed test. What
/// differs between them is told by the tables of each kind.

using Helper = CallListDatabaseAdapterHelper;

/// The members that every kind of entry has.
template <class Item>
std::vector<Member<Item>> commonItemMembers() {
    using rules::Form;
    return {{"UniqueId", Form::text, [](const Item& item) { return item.getUniqueId(); },
             [](Item& item, const std::string& text) { item.setUniqueId(text); }},
            {"EntryId", Form::text, [](const Item& item) { return item.getEntryId(); },
             [](Item& item, const std::string& text) { item.setEntryId(text); }},
            {"Surname", Form::text, [](const Item& item) { return item.getSurname(); },
             [](Item& item, const std::string& text) { item.setSurname(text); }},
            {"Firstname", Form::text, [](const Item& item) { return item.getFirstname(); },
             [](Item& item, const std::string& text) { item.setFirstname(text); }},
            {"PictureClip", Form::text, [](const Item& item) { return item.getPictureClip(); },
             [](Item& item, const std::string& text) { item.setPictureClip(text); }}};
}

struct Missed {
    using Item = MissedCallItem;
    using Info = MissedCallItem::MissedCallInfo;
    static constexpr const char* name = "Missed";
    static constexpr bool redirectingCounts = false;

    static const rules::Format& format() { return rules::missedFormat(); }
    static std::vector<Member<Info>> infoMembers() {
        std::vector<Member<Info>> members = membersOfPart<Info, CallInfo>();
        add(members, membersOfPart<Info, TimeFormat>());
        add(members, membersOfPart<Info, Redirecting>());
        add(members, {member<Info>("CompletedElsewhere", rules::Form::flag, &Info::completedElsewhere),
                      member<Info>("GroupName", rules::Form::text, &Info::groupName),
                      member<Info>("GroupNumber", rules::Form::text, &Info::groupNumber)});
        return members;
    }
    static std::vector<Member<Item>> itemMembers() {
        std::vector<Member<Item>> members = commonItemMembers<Item>();
        add(members, {{"Viewed", rules::Form::flag, [](const Item& item) { return toText(item.getViewed()); },
                       [](Item& item, const std::string& text) { item.setViewed(text == "1"); }}});
        return members;
    }

    static Item make(const std::string& entryId, const std::string& surname, const std::string& firstname,
                     std::list<Info> infos) {
        return Item(entryId, surname, firstname, infos, false);
    }
    static const std::list<Info>& calls(const Item& item) { return item.getMissedCallInfoList(); }
    static void setCalls(Item& item, const std::list<Info>& infos) { item.setMissedCallInfoList(infos); }

    static constexpr auto encode =
        static_cast<std::string (*)(const Item&, bool)>(&Helper::createXMLMissedCallItemBody);
    static constexpr auto encodeTo =
        static_cast<void (*)(const Item&, std::string&, bool)>(&Helper::createXMLMissedCallItemBody);
    static constexpr auto encodeCalls = &Helper::createXMLMissedCallInfoList;
    static constexpr auto decodeCall = &Helper::getXMLMissedCallInfo;
    static constexpr auto decodeCalls = &Helper::getXMLMissedCallInfoList;
    static constexpr auto decode = &Helper::parseXMLMissedCallItem;
    static constexpr auto notification = &Helper::obsReqMissedCallsUpdate;
    static constexpr auto update = &CallListDatabaseAdapter::updateMissedEntry;
};

struct Dialled {
    using Item = DialledCallItem;
    using Info = DialledCallItem::DialledCallInfo;
    static constexpr const char* name = "Dialled";
    static constexpr bool redirectingCounts = false;

    static const rules::Format& format() { return rules::dialledFormat(); }
    static std::vector<Member<Info>> infoMembers() {
        std::vector<Member<Info>> members = membersOfPart<Info, CallInfo>();
        add(members, membersOfPart<Info, Duration>());
        add(members, membersOfPart<Info, TimeFormat>());
        add(members, membersOfPart<Info, Redirecting>());
        add(members, {member<Info>("ResolvedNumber", rules::Form::text, &Info::resolvedNumber),
                      member<Info>("ConnectedNumberPriority", rules::Form::flag, &Info::connectedNumberPriority),
                      member<Info>("IsBluetoothCall", rules::Form::flag, &Info::isBluetoothCall)});
        return members;
    }
    static std::vector<Member<Item>> itemMembers() {
        std::vector<Member<Item>> members = commonItemMembers<Item>();
        add(members, {{"JSGroupBy", rules::Form::text, [](const Item& item) { return item.getJournalSeviceGroupBy(); },
                       [](Item& item, const std::string& text) { item.setJournalSeviceGroupBy(text); }}});
        return members;
    }

    static Item make(const std::string& entryId, const std::string& surname, const std::string& firstname,
                     const std::list<Info>& infos) {
        return Item(entryId, surname, firstname, infos);
    }
    static const std::list<Info>& calls(const Item& item) { return item.getDialledCallInfoList(); }
    static void setCalls(Item& item, const std::list<Info>& infos) { item.setDialledCallInfoList(infos); }

    static constexpr auto encode =
        static_cast<std::string (*)(const Item&, bool)>(&Helper::createXMLDialledCallItemBody);
    static constexpr auto encodeTo =
        static_cast<void (*)(const Item&, std::string&, bool)>(&Helper::createXMLDialledCallItemBody);
    static constexpr auto encodeCalls = &Helper::createXMLDialledCallInfoList;
    static constexpr auto decodeCall = &Helper::getXMLDialledCallInfo;
    static constexpr auto decodeCalls = &Helper::getXMLDialledCallInfoList;
    static constexpr auto decode = &Helper::parseXMLDialledCallItem;
    static constexpr auto notification = &Helper::obsReqDialledCallsUpdate;
    static constexpr auto update = &CallListDatabaseAdapter::updateDialledEntry;
};

struct Received {
    using Item = ReceivedCallItem;
    using Info = ReceivedCallItem::ReceivedCallInfo;
    static constexpr const char* name = "Received";
    static constexpr bool redirectingCounts = true;

    static const rules::Format& format() { return rules::receivedFormat(); }
    static std::vector<Member<Info>> infoMembers() {
        std::vector<Member<Info>> members = membersOfPart<Info, CallInfo>();
        add(members, membersOfPart<Info, Duration>());
        add(members, membersOfPart<Info, TimeFormat>());
        add(members, membersOfPart<Info, Redirecting>());
        return members;
    }
    static std::vector<Member<Item>> itemMembers() { return commonItemMembers<Item>(); }

    static Item make(const std::string& entryId, const std::string& surname, const std::string& firstname,
                     const std::list<Info>& infos) {
        return Item(entryId, surname, firstname, infos);
    }
    static const std::list<Info>& calls(const Item& item) { return item.getReceivedCallInfoList(); }
    static void setCalls(Item& item, const std::list<Info>& infos) { item.setReceivedCallInfoList(infos); }

    static constexpr auto encode =
        static_cast<std::string (*)(const Item&, bool)>(&Helper::createXMLReceivedCallItemBody);
    static constexpr auto encodeTo =
        static_cast<void (*)(const Item&, std::string&, bool)>(&Helper::createXMLReceivedCallItemBody);
    static constexpr auto encodeCalls = &Helper::createXMLReceivedCallInfoList;
    static constexpr auto decodeCall = &Helper::getXMLReceivedCallInfo;
    static constexpr auto decodeCalls = &Helper::getXMLReceivedCallInfoList;
    static constexpr auto decode = &Helper::parseXMLReceivedCallItem;
    static constexpr auto notification = &Helper::obsReqReceivedCallsUpdate;
    static constexpr auto update = &CallListDatabaseAdapter::updateReceivedEntry;
};

struct Forwarded {
    using Item = ForwardedCallItem;
    using Info = ForwardedCallItem::ForwardedCallInfo;
    static constexpr const char* name = "Forwarded";
    static constexpr bool redirectingCounts = false;

    static const rules::Format& format() { return rules::forwardedFormat(); }
    static std::vector<Member<Info>> infoMembers() {
        std::vector<Member<Info>> members = membersOfPart<Info, CallInfo>();
        add(members, membersOfPart<Info, Duration>());
        add(members, membersOfPart<Info, Redirecting>());
        return members;
    }
    static std::vector<Member<Item>> itemMembers() { return commonItemMembers<Item>(); }

    static Item make(const std::string& entryId, const std::string& surname, const std::string& firstname,
                     const std::list<Info>& infos) {
        return Item(entryId, surname, firstname, infos);
    }
    static const std::list<Info>& calls(const Item& item) { return item.getForwardedCallInfoList(); }
    static void setCalls(Item& item, const std::list<Info>& infos) { item.setForwardedCallInfoList(infos); }

    static constexpr auto encode =
        static_cast<std::string (*)(const Item&, bool)>(&Helper::createXMLForwardedCallItemBody);
    static constexpr auto encodeTo =
        static_cast<void (*)(const Item&, std::string&, bool)>(&Helper::createXMLForwardedCallItemBody);
    static constexpr auto encodeCalls = &Helper::createXMLForwardedCallInfoList;
    static constexpr auto decodeCall = &Helper::getXMLForwardedCallInfo;
    static constexpr auto decodeCalls = &Helper::getXMLForwardedCallInfoList;
    static constexpr auto decode = &Helper::parseXMLForwardedCallItem;
    static constexpr auto notification = &Helper::obsReqForwardedCallsUpdate;
    static constexpr auto update = &CallListDatabaseAdapter::updateForwardedEntry;
};

using AllKinds = ::testing::Types<Missed, Dialled, Received, Forwarded>;

/// Names the tests of a kind after it.
struct KindNames {
    template <class Kind>
    static std::string GetName(int) {
        return Kind::name;
    }
};

template <class Kind>
rules::Members describeCall(const typename Kind::Info& info) {
    static const std::vector<Member<typename Kind::Info>> members = Kind::infoMembers();
    return describe(info, members);
}

template <class Kind>
std::vector<rules::Members> describeCalls(const std::list<typename Kind::Info>& infos) {
    std::vector<rules::Members> calls;
    for (const typename Kind::Info& info : infos) {
        calls.push_back(describeCall<Kind>(info));
    }
    return calls;
}

template <class Kind>
rules::Entry describeEntry(const typename Kind::Item& item) {
    static const std::vector<Member<typename Kind::Item>> members = Kind::itemMembers();
    return {describe(item, members), describeCalls<Kind>(Kind::calls(item))};
}

/// A call with every member set, and one with other values.
template <class Kind>
typename Kind::Info filledCall() {
    return filled(Kind::infoMembers());
}

/// A call that is told from others by its number.
template <class Kind>
typename Kind::Info callWithNumber(const std::string& number) {
    typename Kind::Info info;
    info.number = number;
    return info;
}

template <class Kind>
std::list<typename Kind::Info> callsWithNumbers(int first, int last) {
    std::list<typename Kind::Info> infos;
    for (int number = first; number <= last; ++number) {
        infos.push_back(callWithNumber<Kind>(std::to_string(number)));
    }
    return infos;
}

/// The numbers of an item's calls, in order.
template <class Kind>
std::vector<std::string> numbers(const typename Kind::Item& item) {
    std::vector<std::string> result;
    for (const typename Kind::Info& info : Kind::calls(item)) {
        result.push_back(info.number);
    }
    return result;
}

/// An entry with every member set and two calls, the second of which has nothing set.
template <class Kind>
typename Kind::Item filledItem() {
    typename Kind::Item item = filled(Kind::itemMembers());
    Kind::setCalls(item, {filledCall<Kind>(), typename Kind::Info()});
    return item;
}

namespace rules {

inline std::ostream& operator<<(std::ostream& stream, const Entry& entry) {
    return stream << ::testing::PrintToString(entry.item) << " with calls " << ::testing::PrintToString(entry.calls);
}

}  // namespace rules
