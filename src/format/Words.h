#pragma once

#include <cstddef>
#include <functional>
#include <iterator>
#include <string_view>

#include "CallBackItem.h"
#include "CallLogEntryEvent.h"
#include "Contact.h"
#include "NumberType.h"
#include "ShortText.h"
#include "Texts.h"
#include "TransferNumber.h"

namespace calljournal::format {

/// One pair of an enumeration. The values are numbers because a phone's headers may name the enumerators otherwise.
struct Word {
    int value;
    ShortText word;
};

// The words of each enumeration. Both conversions take the first row that fits, and the first row of all if none does.

// An absent target log is an answered call, not an unknown one.
inline constexpr Word targetLogWords[] = {
    {6, text::OUT_BUSY},     {0, text::IN_ANSWERED},   {0, std::string_view()},
    {1, text::IN_NO_ANSWER}, {2, text::IN_BUSY},       {3, text::IN_GROUP_MISSED},
    {4, text::OUT_ANSWERED}, {5, text::OUT_NO_ANSWER}, {7, text::IN_GROUP_CALL},
};

inline constexpr Word presentationWords[] = {
    {0, text::NOT_AVAILABLE},
    {1, text::ALLOWED},
    {2, text::NOT_ALLOWED},
};

inline constexpr Word timeFormatWords[] = {
    {0, text::FORM_24},
    {1, text::FORM_AM},
    {2, text::FORM_PM},
};

inline constexpr Word numberTypeWords[] = {
    {0, text::NO_ICON}, {1, text::PRIVATE}, {2, text::BUSINESS1}, {3, text::BUSINESS2}, {4, text::MOBILE},
};

inline constexpr Word transferTypeWords[] = {
    {0, text::TRAN_SOURCE_NUM},
    {1, text::TRAN_DEST_NUM},
    {2, text::TRAN_GROUP_NUM},
};

inline constexpr Word callBackTypeWords[] = {
    {CallBackItem::NOTYPE, text::CALLBACKTYPENOTYPE},
    {CallBackItem::NOREPLY, text::CALLBACKTYPENOREPLY},
    {CallBackItem::BUSY, text::CALLBACKTYPEBUSY},
};

inline constexpr Word callBackStateWords[] = {
    {CallBackItem::NOSTATE, text::CALLBACKSTATENOSTATE},
    {CallBackItem::ACTIVE, text::CALLBACKSTATEACTIVE},
    {CallBackItem::SUSPENDED, text::CALLBACKSTATESUSPENDED},
};

// The phonebook's own words, which the call log's vocabulary does not hold.
inline constexpr Word contactSourceWords[] = {
    {0, std::string_view()}, {3, ShortText("CSV")},   {4, ShortText("WSI")},
    {7, ShortText("LDAP")},  {8, ShortText("LOCAL")},
};

inline constexpr ShortText trueWord = text::TRUE;
inline constexpr ShortText falseWord = text::FALSE;

constexpr const ShortText& wordOf(bool value) {
    return value ? trueWord : falseWord;
}

/// The rows of one enumeration, and for each of the first values the row that has it.
struct Words {
    const Word* begin;
    const Word* end;
    unsigned char rowOf[9];
};

template <std::size_t count>
constexpr Words wordsOf(const Word (&rows)[count]) {
    Words words{rows, rows + count, {}};
    for (std::size_t row = count; row > 0; --row) {
        words.rowOf[rows[row - 1].value] = static_cast<unsigned char>(row - 1);
    }
    return words;
}

inline constexpr Words targetLog = wordsOf(targetLogWords);
inline constexpr Words presentation = wordsOf(presentationWords);
inline constexpr Words timeFormat = wordsOf(timeFormatWords);
inline constexpr Words numberType = wordsOf(numberTypeWords);
inline constexpr Words transferType = wordsOf(transferTypeWords);
inline constexpr Words callBackType = wordsOf(callBackTypeWords);
inline constexpr Words callBackState = wordsOf(callBackStateWords);
inline constexpr Words contactSource = wordsOf(contactSourceWords);

constexpr const Words& wordsFor(CallLogEntryEvent::_LogTarget) {
    return targetLog;
}
constexpr const Words& wordsFor(CallLogEntryEvent::_PresentationValue) {
    return presentation;
}
constexpr const Words& wordsFor(CallLogEntryEvent::_TFormat) {
    return timeFormat;
}
constexpr const Words& wordsFor(NumberType::NT) {
    return numberType;
}
constexpr const Words& wordsFor(TransferNumber::TransferNumberType) {
    return transferType;
}
constexpr const Words& wordsFor(CallBackItem::CallBackType) {
    return callBackType;
}
constexpr const Words& wordsFor(CallBackItem::CallBackState) {
    return callBackState;
}
constexpr const Words& wordsFor(Contact::eOrderedContactSource) {
    return contactSource;
}

template <class Enumeration>
constexpr const ShortText& wordOf(Enumeration value) {
    const Words& words = wordsFor(value);
    const auto number = static_cast<unsigned>(value);
    return words.begin[number < std::size(words.rowOf) ? words.rowOf[number] : 0].word;
}

/// Returns the word that `value` is stored as.
template <class Enumeration>
constexpr std::string_view toWord(Enumeration value) {
    return wordOf(value);
}

/// Returns the value that is stored as `word`. `same` compares two texts byte for byte.
template <class Enumeration, class Same = std::equal_to<std::string_view>>
Enumeration fromWord(std::string_view word, Same same = Same()) {
    const Words& words = wordsFor(Enumeration());
    for (const Word* row = words.begin; row != words.end; ++row) {
        if (same(row->word, word)) {
            return static_cast<Enumeration>(row->value);
        }
    }
    return static_cast<Enumeration>(words.begin->value);
}

}  // namespace calljournal::format
