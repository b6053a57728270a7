#pragma once

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <variant>

#include "ClientUtils.h"
#include "Data.h"
#include "detail/Decoding.h"
#include "detail/OwnMembers.h"

/// What all peers that read XML have in common: from names and texts to records.
namespace bench {

/// Finds fields of a table by the names of elements, which mostly come in the table's order.
template <class Fields, class Name>
class FieldFinder {
public:
    FieldFinder(const Fields& fields, Name name) : fields_(fields), name_(name) {}

    /// Returns the field of that name, or null.
    auto find(std::string_view name) -> decltype(std::data(std::declval<const Fields&>())) {
        const std::size_t count = std::size(fields_);
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t at = next_ + i < count ? next_ + i : next_ + i - count;
            if (std::string_view(name_(fields_[at])) == name) {
                next_ = at + 1;
                return &fields_[at];
            }
        }
        return nullptr;
    }

private:
    const Fields& fields_;
    Name name_;
    std::size_t next_ = 0;
};

template <class Base>
void setAccess(const calljournal::format::TextAccess<Base>& access, std::string_view text, Base& item) {
    (item.*access.set)(std::string(text));
}

template <class Base>
void setAccess(const calljournal::format::FlagAccess<Base>& access, std::string_view text, Base& item) {
    (item.*access.set)(text == "True");
}

/// Builds the call below `node`. `Tree` knows how a document's nodes are walked:
/// first(node), next(node), name(node), text(node).
template <class Tree, class Item>
void buildCall(typename Tree::Node node, typename Kind<Item>::Call& call) {
    const auto& fields = Kind<Item>::callFields;
    FieldFinder finder(fields, [](const auto& field) { return std::string_view(field.tag); });
    for (auto child = Tree::first(node); child; child = Tree::next(child)) {
        if (const auto* field = finder.find(Tree::name(child))) {
            std::visit([&](auto member) { calljournal::detail::assignPlain(call.*member, Tree::text(child)); },
                       field->member);
        }
    }
}

template <class Tree, class Item>
void buildItem(typename Tree::Node node, Item& item) {
    const auto nameOf = [](const auto& field) { return std::string_view(field.readAs); };
    FieldFinder party(calljournal::format::partyFields, nameOf);
    FieldFinder own(Kind<Item>::itemFields, nameOf);
    for (auto child = Tree::first(node); child; child = Tree::next(child)) {
        const std::string_view name = Tree::name(child);
        if (const auto* field = party.find(name)) {
            CallItemWithPicture& base = item;
            std::visit([&](const auto& access) { setAccess(access, Tree::text(child), base); }, field->access);
        } else if (const auto* ownField = own.find(name)) {
            std::visit([&](const auto& access) { setAccess(access, Tree::text(child), item); }, ownField->access);
        } else if (name == "LogList") {
            auto& calls = item.*calljournal::detail::OwnMembers<Item>::calls;
            for (auto call = Tree::first(child); call; call = Tree::next(call)) {
                calls.emplace_back();
                buildCall<Tree, Item>(call, calls.back());
            }
        }
    }
}

/// Builds the entries below the root element `node`.
template <class Tree>
void buildList(typename Tree::Node node, std::deque<MissedCallItem>& list) {
    for (auto child = Tree::first(node); child; child = Tree::next(child)) {
        if (Tree::name(child) == "Entry") {
            list.emplace_back();
            buildItem<Tree>(child, list.back());
        }
    }
}

}  // namespace bench
