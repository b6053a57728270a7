#ifndef CALLJOURNAL_DETAIL_WORDS_H
#define CALLJOURNAL_DETAIL_WORDS_H

#include <cstddef>
#include <string_view>

#include "CallBackItem.h"
#include "CallLogEntryEvent.h"
#include "Contact.h"
#include "NumberType.h"
#include "Texts.h"
#include "TransferNumber.h"

namespace calljournal {
namespace detail {

/// One pair of an enumeration. The values are numbers because a phone's headers may name the enumerators otherwise.
struct Word {
    int value;
    std::string_view word;
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
    {0, std::string_view()}, {3, "CSV"}, {4, "WSI"}, {7, "LDAP"}, {8, "LOCAL"},
};

/// The rows of one enumeration.
struct Words {
    const Word* begin;
    const Word* end;
};

template <std::size_t count>
constexpr Words wordsOf(const Word (&rows)[count]) {
    return {rows, rows + count};
}

constexpr Words wordsFor(CallLogEntryEvent::_LogTarget) {
    return wordsOf(targetLogWords);
}
constexpr Words wordsFor(CallLogEntryEvent::_PresentationValue) {
    return wordsOf(presentationWords);
}
constexpr Words wordsFor(CallLogEntryEvent::_TFormat) {
    return wordsOf(timeFormatWords);
}
constexpr Words wordsFor(NumberType::NT) {
    return wordsOf(numberTypeWords);
}
constexpr Words wordsFor(TransferNumber::TransferNumberType) {
    return wordsOf(transferTypeWords);
}
constexpr Words wordsFor(CallBackItem::CallBackType) {
    return wordsOf(callBackTypeWords);
}
constexpr Words wordsFor(CallBackItem::CallBackState) {
    return wordsOf(callBackStateWords);
}
constexpr Words wordsFor(Contact::eOrderedContactSource) {
    return wordsOf(contactSourceWords);
}

/// Returns the word that `value` is stored as.
template <class Enumeration>
constexpr std::string_view toWord(Enumeration value) {
    const Words words = wordsFor(value);
    for (const Word* row = words.begin; row != words.end; ++row) {
        if (row->value == static_cast<int>(value)) {
            return row->word;
        }
    }
    return words.begin->word;
}

/// Returns the value that is stored as `word`, compared byte for byte.
template <class Enumeration>
constexpr Enumeration fromWord(std::string_view word) {
    const Words words = wordsFor(Enumeration());
    for (const Word* row = words.begin; row != words.end; ++row) {
        if (row->word == word) {
            return static_cast<Enumeration>(row->value);
        }
    }
    return static_cast<Enumeration>(words.begin->value);
}

}  // namespace detail
}  // namespace calljournal

#endif
