#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <variant>

#include "Entry.h"

namespace calljournal {

/// Returns the form in which the stored format carries `text`, if its reader unescapes `times` times: the text itself
/// where that works, or else the text escaped as often.
std::string carriedText(const std::string& text, int times);

/// Returns whether `text` may have another form where it is carried, its control characters included.
bool mayBeChanged(const std::string& text);

/// Undoes carriedText.
std::string restoredText(const std::string& carried, int times);

/// Returns `text` with a reference, such as `&#x1b;`, in the place of each control character but tab, line feed and
/// carriage return: no XML carries them, the missed list's reader takes each for an apostrophe, and a zero byte ends a
/// text for every decoder. A reference in `text` itself is kept apart by one for its `&`.
std::string carriedControls(const std::string& text);

/// Undoes carriedControls.
std::string restoredControls(const std::string& carried);

/// How often the decoder of an item unescapes what the encoder writes as it is.
constexpr int callTextUnescapes = 2;
constexpr int itemTextUnescapes = 1;

/// Calls `visit(text, times)` for each text of `call` that the format carries, as a reference.
template <class Item, class Visit>
void visitCallTexts(typename format::CallKind<Item>::Call& call, Visit visit) {
    for (const auto& field : format::CallKind<Item>::callFields) {
        if (const auto* member = std::get_if<0>(&field.member)) {
            visit(call.*(*member), callTextUnescapes);
        }
    }
}

/// Returns whether `holds(text)` of any text of the item.
template <class Item, class Holds>
bool anyText(const Item& item, Holds holds) {
    bool isAny = false;
    forEachFieldTable(item, [&](const auto& base, const auto& fields) {
        for (const auto& field : fields) {
            const auto* access = std::get_if<0>(&field.access);
            isAny = isAny || (access != nullptr && holds(std::invoke(access->get, base)));
        }
    });
    for (const auto& call : callsOf(item)) {
        for (const auto& field : format::CallKind<Item>::callFields) {
            const auto* member = std::get_if<0>(&field.member);
            isAny = isAny || (member != nullptr && holds(call.*(*member)));
        }
    }
    return isAny;
}

/// Replaces each text of the item but its id, which is the store's, by `convert(text, times)`; `times` is 0 where the
/// encoder escapes by itself.
template <class Item, class Convert>
void convertTexts(Item& item, Convert convert) {
    forEachFieldTable(item, [&](auto& base, const auto& fields) {
        using Base = std::remove_reference_t<decltype(base)>;
        for (const auto& field : fields) {
            const auto* access = std::get_if<format::TextAccess<Base>>(&field.access);
            if (access != nullptr && field.readAs != format::text::UNIQUEID) {
                const int times = access->form == format::Form::asItIs ? itemTextUnescapes : 0;
                std::invoke(access->set, base, convert(std::invoke(access->get, base), times));
            }
        }
    });
    auto calls = callsOf(item);
    for (auto& call : calls) {
        visitCallTexts<Item>(call, [&](std::string& text, int times) { text = convert(text, times); });
    }
    std::invoke(format::CallKind<Item>::setCalls, item, calls);
}

/// Returns the item with its texts in the form in which the stored format carries them.
template <class Item>
Item carriedItem(Item item) {
    // The encoder of call-backs does so by itself.
    if constexpr (KindInterface<Item>::isCallLog) {
        if (anyText(item, mayBeChanged)) {
            convertTexts(item,
                         [](const std::string& text, int times) { return carriedText(carriedControls(text), times); });
        }
    }
    return item;
}

}  // namespace calljournal
