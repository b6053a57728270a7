#pragma once

#include <functional>
#include <string>
#include <vector>

#include "CallInfo.h"
#include "Duration.h"
#include "LiteralRules.h"
#include "Redirecting.h"
#include "TimeFormat.h"

/// The public members of calls as rows of a table, so that one test walks every member of every kind.

/// One member of `Object`, read and written as a text: enumerations as decimal numbers, flags as "0" or "1".
template <class Object>
struct Member {
    std::string name;  ///< Of the element that carries it.
    rules::Form form;
    std::function<std::string(const Object&)> get;
    std::function<void(Object&, const std::string&)> set;
};

inline std::string toText(const std::string& value) {
    return value;
}

inline std::string toText(bool value) {
    return value ? "1" : "0";
}

template <class Enumeration>
std::string toText(Enumeration value) {
    return std::to_string(static_cast<int>(value));
}

inline void fromText(const std::string& text, std::string& value) {
    value = text;
}

inline void fromText(const std::string& text, bool& value) {
    value = text == "1";
}

template <class Enumeration>
void fromText(const std::string& text, Enumeration& value) {
    value = static_cast<Enumeration>(std::stoi(text));
}

template <class Object, class Part, class Type>
Member<Object> member(const char* name, rules::Form form, Type Part::*place) {
    return {name, form, [place](const Object& object) { return toText(object.*place); },
            [place](Object& object, const std::string& text) { fromText(text, object.*place); }};
}

/// A part's own members, in the order they stand in it.
template <class Object>
std::vector<Member<Object>> membersOf(const CallInfo*) {
    using rules::Form;
    return {member<Object>("reference", Form::text, &CallInfo::reference),
            member<Object>("Number", Form::text, &CallInfo::number),
            member<Object>("ConnectedNumber", Form::text, &CallInfo::connectedNumber),
            member<Object>("ConnectedSurname", Form::text, &CallInfo::connectedSurname),
            member<Object>("ConnectedFirstName", Form::text, &CallInfo::connectedFirstname),
            member<Object>("TimeDate", Form::text, &CallInfo::timeDate),
            member<Object>("TargetLog", Form::targetLog, &CallInfo::targetLog),
            member<Object>("NumberPresentation", Form::presentation, &CallInfo::numberPresentation),
            member<Object>("NamePresentation", Form::presentation, &CallInfo::namePresentation),
            member<Object>("NumberType", Form::numberType, &CallInfo::numberType),
            member<Object>("ConnectedNumberType", Form::numberType, &CallInfo::connectedNumberType)};
}

template <class Object>
std::vector<Member<Object>> membersOf(const Duration*) {
    return {member<Object>("Duration", rules::Form::text, &Duration::duration)};
}

template <class Object>
std::vector<Member<Object>> membersOf(const TimeFormat*) {
    return {member<Object>("TimeFormat", rules::Form::timeFormat, &TimeFormat::timeFormat)};
}

template <class Object>
std::vector<Member<Object>> membersOf(const Redirecting*) {
    using rules::Form;
    return {member<Object>("DeflectNumber", Form::text, &Redirecting::deflectNumber),
            member<Object>("DeflectName", Form::text, &Redirecting::deflectName),
            member<Object>("DeflectNumberType", Form::numberType, &Redirecting::deflectNumberType),
            member<Object>("DeflectNumberPresentation", Form::presentation, &Redirecting::deflectNumberPresentation),
            member<Object>("DeflectNamePresentation", Form::presentation, &Redirecting::deflectNamePresentation),
            member<Object>("TransferType", Form::transferType, &Redirecting::transferType)};
}

template <class Object, class Part>
std::vector<Member<Object>> membersOfPart() {
    return membersOf<Object>(static_cast<const Part*>(nullptr));
}

template <class Object>
void add(std::vector<Member<Object>>& members, const std::vector<Member<Object>>& more) {
    members.insert(members.end(), more.begin(), more.end());
}

/// All values of an object.
template <class Object>
rules::Members describe(const Object& object, const std::vector<Member<Object>>& members) {
    rules::Members values;
    for (const Member<Object>& row : members) {
        values[row.name] = row.get(object);
    }
    return values;
}

/// A value that is not the default; texts differ from member to member.
template <class Object>
std::string sample(const Member<Object>& row) {
    return row.form == rules::Form::text ? "the " + row.name : "1";
}

/// Another value that is not the default.
template <class Object>
std::string otherSample(const Member<Object>& row) {
    return row.form == rules::Form::text ? "another " + row.name : row.form == rules::Form::flag ? "0" : "2";
}

template <class Object>
Object filled(const std::vector<Member<Object>>& members) {
    Object object;
    for (const Member<Object>& row : members) {
        row.set(object, sample(row));
    }
    return object;
}
