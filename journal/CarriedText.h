#ifndef CALLJOURNAL_CARRIEDTEXT_H
#define CALLJOURNAL_CARRIEDTEXT_H

#include <functional>
#include <list>
#include <string>
#include <type_traits>
#include <variant>

#include "CallKinds.h"

namespace calljournal {

/// Returns the form in which the stored format carries `text`, if its reader unescapes `times` times: the text itself
/// where that works, or else the text escaped as often.
std::string carriedText(const std::string& text, int times);

/// Undoes carriedText.
std::string restoredText(const std::string& carried, int times);

/// Returns `text` with a reference, such as `&#x1b;`, in the place of each control character but tab, line feed and
/// carriage return: no XML carries them, the missed list's reader takes each for an apostrophe, and a zero byte ends a
/// text for every decoder. A reference that stands in `text` itself is kept apart by one for its `&`.
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

/// Replaces each text of the item but its id by `convert(text)`.
template <class Item>
void convertAllTexts(Item& item, std::string (*convert)(const std::string&)) {
    using Kind = format::CallKind<Item>;
    const auto convertFields = [&](auto& party, const auto& fields) {
        using Party = std::remove_reference_t<decltype(party)>;
        for (const auto& field : fields) {
            const auto* access = std::get_if<format::TextAccess<Party>>(&field.access);
            if (access != nullptr && field.readAs != format::text::UNIQUEID) {
                std::invoke(access->set, party, convert(std::invoke(access->get, party)));
            }
        }
    };
    CallItemWithPicture& party = item;
    convertFields(party, format::partyFields);
    convertFields(item, Kind::itemFields);
    auto calls = std::invoke(Kind::calls, item);
    for (auto& call : calls) {
        visitCallTexts<Item>(call, [&](std::string& text, int) { text = convert(text); });
    }
    std::invoke(Kind::setCalls, item, calls);
}

/// Replaces each text that the format writes as it is by `convert(text, times)`. Names are the encoder's own business,
/// and ids are the store's.
template <class Item>
void convertTexts(Item& item, std::string (*convert)(const std::string&, int)) {
    using Kind = format::CallKind<Item>;
    const auto convertFields = [&](auto& party, const auto& fields) {
        using Party = std::remove_reference_t<decltype(party)>;
        for (const auto& field : fields) {
            const auto* access = std::get_if<format::TextAccess<Party>>(&field.access);
            if (access != nullptr && access->form == format::Form::asItIs) {
                std::invoke(access->set, party, convert(std::invoke(access->get, party), itemTextUnescapes));
            }
        }
    };
    CallItemWithPicture& party = item;
    convertFields(party, format::partyFields);
    convertFields(item, Kind::itemFields);

    auto calls = std::invoke(Kind::calls, item);
    for (auto& call : calls) {
        visitCallTexts<Item>(call, [&](std::string& text, int times) { text = convert(text, times); });
    }
    std::invoke(Kind::setCalls, item, calls);
}

}  // namespace calljournal

#endif
