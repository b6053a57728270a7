#include "HostileTexts.h"

#include <utility>

namespace {

bool isNumber(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

HostileTexts::HostileTexts(unsigned seed, const rules::Format& format)
    : format_(format), random_(seed), tags_{"Item", "Item", "Item", "Item", "LogList", "LogList"} {
    for (const std::vector<rules::Element>* elements : {&format.itemRead, &format.itemWritten, &format.callRead}) {
        for (const rules::Element& element : *elements) {
            tags_.push_back(element.tag);
        }
    }
}

std::string HostileTexts::tag() {
    const std::string name = tags_[below(tags_.size())];
    switch (below(8)) {
        case 0:
            return "<" + name + "></" + name + ">";
        case 1:
        case 2:
        case 3:
            return "</" + name + ">";
        default:
            return "<" + name + ">";
    }
}

std::string HostileTexts::brokenTag() {
    const std::string whole = tag();
    const std::size_t place = below(whole.size() + 1);
    switch (below(4)) {
        case 0:
            return whole.substr(0, place);
        case 1:
            return whole.substr(place);
        case 2:
            // What a cut joins again.
            return whole.substr(0, place) + "<Item>" + word() + "</Item>" + whole.substr(place);
        default:
            return whole.substr(0, place) + tag() + whole.substr(place);
    }
}

std::string HostileTexts::entityTag() {
    const std::string once = rules::escape(tag());
    return below(2) == 0 ? once : rules::escape(once);
}

std::string HostileTexts::word() {
    static const std::vector<std::string> words = {
        "True",      "False",   "true",    "",        "a",       "0301234",  "IN_BUSY", "IN_GROUP_BUSY",
        "OUT_BUSY",  "ALLOWED", "PRIVATE", "MOBILE",  "FORM_AM", "FORM_PM",  "&amp;",   "&lt;",
        "&amp;lt;",  "&gt;",    "&",       "&am",     "p;",      ";",        "<",       ">",
        "</",        "/",       "It",      "em>",     "Item>",   "\xC3\xBC", "<It",     "TRANSFER_GROUP_NUMBER",
        "BUSINESS1", "2024-05", "xxxxxx",  "&quot;x", "<Log",    "List>"};
    return words[below(words.size())];
}

std::string HostileTexts::token() {
    switch (below(8)) {
        case 0:
        case 1:
        case 2:
            return tag();
        case 3:
            return brokenTag();
        case 4:
            return entityTag();
        case 5: {
            const std::string name = tags_[below(tags_.size())];
            return "<" + name + ">" + word() + "</" + name + ">";
        }
        default:
            return word();
    }
}

std::string HostileTexts::value() {
    std::string text;
    for (std::size_t count = below(3) == 0 ? below(4) : 1; count > 0; --count) {
        text += below(3) == 0 ? token() : word();
    }
    return text;
}

rules::Members HostileTexts::members(const rules::Members& fresh) {
    rules::Members result = fresh;
    for (auto& [name, stored] : result) {
        if (below(2) == 0) {
            continue;
        }
        // Numbers stand for enumerations and flags, of which only 0 and 1 mean something everywhere.
        stored = isNumber(stored) ? std::to_string(below(2)) : value();
    }
    return result;
}

std::string HostileTexts::body(const rules::Members& freshItem, const rules::Members& freshCall) {
    rules::Entry entry = {members(freshItem), {}};
    for (std::size_t count = below(4); count > 0; --count) {
        entry.calls.push_back(members(freshCall));
    }
    std::string text = rules::encodeItem(format_, entry, false);
    for (std::size_t count = below(4); count > 0; --count) {
        text = spoil(std::move(text));
    }
    return text;
}

std::string HostileTexts::soup() {
    std::string text;
    for (std::size_t count = below(25); count > 0; --count) {
        text += token();
    }
    return below(2) == 0 ? "<LogList>" + text + "</LogList>" : text;
}

std::string HostileTexts::spoil(std::string text) {
    const std::size_t place = below(text.size() + 1);
    const std::size_t length = below(below(2) == 0 ? 8 : 60);
    const std::string piece = text.substr(place, length);
    const std::size_t other = below(text.size() + 1);
    switch (below(7)) {
        case 0:
            return text.erase(place, length);
        case 1:
            return text.insert(place, piece);
        case 2:
            return text.insert(other, piece);
        case 3:
            text.erase(place, length);
            return text.insert(below(text.size() + 1), piece);
        case 4:
            return text.substr(0, place);
        default:
            return text.insert(place, token());
    }
}
