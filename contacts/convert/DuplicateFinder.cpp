#include "DuplicateFinder.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <tuple>
#include <unicode/unistr.h>

#include "ContactColumns.h"
#include "ContactFields.h"
#include "Text.h"
#include "Utf8.h"

namespace calljournal {

namespace {

/// Numbers of one line end in the same digits, however they begin.
constexpr std::size_t comparedDigits = 7;

/// A number or mail address of more contacts than this is nobody's own; those contacts meet in groups of that size.
constexpr std::size_t largestGroup = 4096;

/// With how many of those that share something, in the order of names, a contact is compared.
constexpr std::ptrdiff_t neighbours = 8;

std::string folded(const std::string& text) {
    if (isAscii(text)) {
        // What the rules of Unicode come to.
        return lowerCase(trimmed(text, " \t\n\v\f\r\x1c\x1d\x1e\x1f"));
    }
    std::string result;
    icu::UnicodeString::fromUTF8(text).foldCase().trim().toUTF8String(result);
    return result;
}

/// The end of a number as far as it is the number itself: an extension, however it is written, is behind letters or
/// commas.
std::string_view withoutExtension(std::string_view number) {
    const auto isExtension = [](char c) {
        return c == ',' || c == ';' || (lowerCase(c) >= 'a' && lowerCase(c) <= 'z');
    };
    const auto* const extension = std::find_if(number.begin(), number.end(), isExtension);
    return number.substr(0, static_cast<std::size_t>(extension - number.begin()));
}

/// What all ways of writing a number have in common: its last digits.
std::string coarseNumber(std::string_view number) {
    std::string digits;
    const std::string_view itself = withoutExtension(number);
    for (auto c = itself.rbegin(); c != itself.rend() && digits.size() < comparedDigits; ++c) {
        if (*c >= '0' && *c <= '9') {
            digits += *c;
        }
    }
    return digits;
}

/// No number reads like this.
std::string coarseMail(const std::string& mail) {
    return '@' + lowerCase(mail);
}

std::uint64_t hashOf(std::string_view key) {
    return std::hash<std::string_view>()(key);
}

bool isInitial(const std::string& shorter, const std::string& longer) {
    const std::size_t length = !shorter.empty() && shorter.back() == '.' ? shorter.size() - 1 : shorter.size();
    const bool isOneLetter = length != 0 && icu::UnicodeString::fromUTF8(shorter.substr(0, length)).countChar32() == 1;
    return isOneLetter && longer.compare(0, length, shorter, 0, length) == 0;
}

/// Whether a part of a name is there as an initial and can be given in full.
bool isLonger(std::string Contact::*member, const std::string& initial, const std::string& name) {
    return (member == &Contact::firstName || member == &Contact::lastName) && isInitial(folded(initial), folded(name));
}

enum class Likeness { different, possible, same };

Likeness compareNames(const std::string& a, const std::string& b) {
    if (a == b) {
        return a.empty() ? Likeness::possible : Likeness::same;
    }
    return a.empty() || b.empty() || isInitial(a, b) || isInitial(b, a) ? Likeness::possible : Likeness::different;
}

/// What names are compared by: their case and the blanks around them say nothing.
struct FoldedName {
    std::string first;
    std::string last;
    std::string company;
    bool isNameless;
};

FoldedName foldedName(const Contact& contact) {
    return {folded(contact.firstName), folded(contact.lastName), folded(contact.company1),
            fullName(contact.firstName, contact.lastName).empty()};
}

bool areNamesCompatible(const FoldedName& one, const FoldedName& other) {
    if (one.isNameless && other.isNameless) {
        return compareNames(one.company, other.company) == Likeness::same;
    }
    const Likeness first = compareNames(one.first, other.first);
    const Likeness last = compareNames(one.last, other.last);
    return first != Likeness::different && last != Likeness::different &&
           (first == Likeness::same || last == Likeness::same);
}

/// Something that a contact may share, as it is compared, and the hash that leads to it.
struct Sharable {
    std::string text;
    std::uint64_t hash;
};

struct Member {
    SpooledContact spooled;
    std::uint64_t place;
    FoldedName name;
    std::string order;  ///< The name again, for the order in which contacts meet.
    std::vector<Sharable> sharable;
};

std::vector<Sharable> sharableOf(const Contact& contact, const NumberWriter& dialable) {
    std::vector<Sharable> all;
    for (const ContactNumber& number : contactNumbers) {
        const std::string coarse = coarseNumber(contact.*number.member);
        if (!coarse.empty()) {
            const std::string text = dialable(contact.*number.member).text;
            const bool isThere =
                std::any_of(all.begin(), all.end(), [&](const Sharable& one) { return one.text == text; });
            if (!isThere) {
                all.push_back({text, hashOf(coarse)});
            }
        }
    }
    if (!contact.email1.empty()) {
        all.push_back({lowerCase(contact.email1), hashOf(coarseMail(contact.email1))});
    }
    return all;
}

bool addNumber(Contact& contact, std::string Contact::*member, const std::string& number,
               const NumberWriter& dialable) {
    const std::string dialled = dialable(number).text;
    const bool isThere = std::any_of(std::begin(contactNumbers), std::end(contactNumbers),
                                     [&](const auto& own) { return dialable(contact.*own.member).text == dialled; });
    if (number.empty() || isThere) {
        return true;
    }
    const bool isBusiness = member == &Contact::business1 || member == &Contact::business2;
    const auto places = isBusiness ? std::array{&Contact::business1, &Contact::business2} : std::array{member, member};
    const auto free = std::find_if(places.begin(), places.end(), [&](auto place) { return (contact.*place).empty(); });
    if (free == places.end()) {
        return false;
    }
    contact.** free = number;
    return true;
}

}  // namespace

bool areNamesCompatible(const Contact& one, const Contact& other) {
    return areNamesCompatible(foldedName(one), foldedName(other));
}

void DuplicateFinder::add(const Contact& contact, std::uint64_t place) {
    for (const ContactNumber& number : contactNumbers) {
        const std::string coarse = coarseNumber(contact.*number.member);
        if (!coarse.empty()) {
            note(hashOf(coarse), place);
        }
    }
    if (!contact.email1.empty()) {
        note(hashOf(coarseMail(contact.email1)), place);
    }
}

void DuplicateFinder::note(std::uint64_t hash, std::uint64_t place) {
    const Key entry = {hash, place};
    repeated_.note(hash);
    keys_.add({reinterpret_cast<const char*>(&entry), sizeof entry});
}

std::vector<DuplicateFinder::Key> DuplicateFinder::keysOfPart(std::size_t part, std::size_t parts) {
    std::vector<Key> keys;
    for (std::uint64_t at = 0; at != keys_.size(); at += sizeof(Key)) {
        Key key;
        std::memcpy(&key, keys_.read(at, sizeof key).data(), sizeof key);
        if (key.hash % parts == part && repeated_.has(key.hash)) {
            keys.push_back(key);
        }
    }
    const auto both = [](const Key& key) { return std::tie(key.hash, key.place); };
    std::sort(keys.begin(), keys.end(), [&](const Key& a, const Key& b) { return both(a) < both(b); });
    const auto isSame = [&](const Key& a, const Key& b) { return both(a) == both(b); };
    keys.erase(std::unique(keys.begin(), keys.end(), isSame), keys.end());
    return keys;
}

void DuplicateFinder::find(ContactSpool& spool, const std::function<void(const NearPair&)>& report,
                           std::size_t partSize) {
    const std::size_t parts = static_cast<std::size_t>(keys_.size() / partSize) + 1;
    for (std::size_t part = 0; part < parts; ++part) {
        const std::vector<Key> keys = keysOfPart(part, parts);
        const Key* const end = keys.data() + keys.size();
        for (const Key* begin = keys.data(); begin != end;) {
            const Key* next = begin;
            while (next != end && next->hash == begin->hash && next < begin + largestGroup) {
                ++next;
            }
            if (next - begin > 1) {
                lookAt(spool, begin, next, report);
            }
            begin = next;
        }
    }
}

void DuplicateFinder::lookAt(ContactSpool& spool, const Key* begin, const Key* end, const Report& report) const {
    struct Candidate {
        const std::string* shared;
        const Member* member;
    };
    std::vector<Member> members(static_cast<std::size_t>(end - begin));
    for (Member& member : members) {
        member.place = begin[&member - members.data()].place;
        spool.read(member.place, member.spooled);
        member.name = foldedName(member.spooled.contact);
        member.order = member.name.last + ' ' + member.name.first;
    }
    const auto isNearByName = [&](const Member& one) {
        return std::any_of<const Member*>(
            members.data(), &one, [&](const Member& other) { return areNamesCompatible(one.name, other.name); });
    };
    // Names are quick to compare and numbers are not. Where all meet, the names may show that there is nothing to find.
    if (end - begin <= neighbours && std::none_of(members.begin(), members.end(), isNearByName)) {
        return;
    }
    std::vector<Candidate> candidates;
    for (Member& member : members) {
        member.sharable = sharableOf(member.spooled.contact, dialable_);
        for (const Sharable& sharable : member.sharable) {
            if (sharable.hash == begin->hash) {
                candidates.push_back({&sharable.text, &member});
            }
        }
    }
    std::sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
        return std::tie(*a.shared, a.member->order, a.member->place) <
               std::tie(*b.shared, b.member->order, b.member->place);
    });
    // Two contacts meet wherever they share something; what they share first is where they are reported.
    const auto isFirstShared = [](const Candidate& one, const Candidate& other) {
        const auto& others = other.member->sharable;
        const auto first =
            std::find_if(one.member->sharable.begin(), one.member->sharable.end(), [&](const Sharable& own) {
                return std::any_of(others.begin(), others.end(),
                                   [&](const Sharable& its) { return its.text == own.text; });
            });
        return first->text == *one.shared;
    };
    for (auto one = candidates.begin(); one != candidates.end(); ++one) {
        const auto last = candidates.end() - one > neighbours ? one + neighbours + 1 : candidates.end();
        for (auto other = one + 1; other < last && *other->shared == *one->shared; ++other) {
            if (one->member != other->member && isFirstShared(*one, *other) &&
                areNamesCompatible(one->member->name, other->member->name)) {
                const auto places = std::minmax(one->member->place, other->member->place);
                report({places.first, places.second, *one->shared});
            }
        }
    }
}

std::optional<Contact> DuplicateFinder::merged(const Contact& one, const Contact& other,
                                               std::string_view& conflict) const {
    Contact both = one;
    for (const ContactText& text : contactTexts) {
        std::string& own = both.*text.member;
        const std::string& its = other.*text.member;
        bool fits = true;
        if (isNumber(text.member)) {
            fits = addNumber(both, text.member, its, dialable_);
        } else if (own.empty() || isLonger(text.member, own, its)) {
            own = its;
        } else {
            fits = its.empty() || folded(own) == folded(its) || isLonger(text.member, its, own);
        }
        if (!fits) {
            conflict = text.name;
            return std::nullopt;
        }
    }
    both.defaultDial = format::derivedDefaultDial(both);
    return both;
}

}  // namespace calljournal
