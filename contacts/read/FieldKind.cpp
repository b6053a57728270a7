#include "FieldKind.h"

#include <algorithm>

#include "Text.h"

namespace calljournal {

namespace {

struct Word {
    std::string_view word;
    FieldKind kind;
};

constexpr Word words[] = {
    {"title", FieldKind::title},
    {"given", FieldKind::given},
    {"middle", FieldKind::middle},
    {"family", FieldKind::family},
    {"suffix", FieldKind::suffix},
    {"nickname", FieldKind::nickname},
    {"displayName", FieldKind::displayName},
    {"company", FieldKind::company},
    {"department", FieldKind::department},
    {"jobTitle", FieldKind::jobTitle},
    {"workPhone", FieldKind::workPhone},
    {"workPhone2", FieldKind::workPhone2},
    {"companyPhone", FieldKind::companyPhone},
    {"homePhone", FieldKind::homePhone},
    {"homePhone2", FieldKind::homePhone2},
    {"mobile", FieldKind::mobile},
    {"carPhone", FieldKind::carPhone},
    {"primaryPhone", FieldKind::primaryPhone},
    {"otherPhone", FieldKind::otherPhone},
    {"assistantPhone", FieldKind::assistantPhone},
    {"callbackPhone", FieldKind::callbackPhone},
    {"radioPhone", FieldKind::radioPhone},
    {"isdn", FieldKind::isdn},
    {"telex", FieldKind::telex},
    {"ttyTdd", FieldKind::ttyTdd},
    {"pager", FieldKind::pager},
    {"workFax", FieldKind::workFax},
    {"homeFax", FieldKind::homeFax},
    {"otherFax", FieldKind::otherFax},
    {"email1", FieldKind::email1},
    {"email2", FieldKind::email2},
    {"email3", FieldKind::email3},
    {"email4", FieldKind::email4},
    {"workStreet", FieldKind::workStreet},
    {"workStreet2", FieldKind::workStreet2},
    {"workStreet3", FieldKind::workStreet3},
    {"workCity", FieldKind::workCity},
    {"workState", FieldKind::workState},
    {"workPostcode", FieldKind::workPostcode},
    {"workCountry", FieldKind::workCountry},
    {"workPoBox", FieldKind::workPoBox},
    {"workAddress", FieldKind::workAddress},
    {"homeStreet", FieldKind::homeStreet},
    {"homeStreet2", FieldKind::homeStreet2},
    {"homeStreet3", FieldKind::homeStreet3},
    {"homeCity", FieldKind::homeCity},
    {"homeState", FieldKind::homeState},
    {"homePostcode", FieldKind::homePostcode},
    {"homeCountry", FieldKind::homeCountry},
    {"homePoBox", FieldKind::homePoBox},
    {"homeAddress", FieldKind::homeAddress},
    {"otherStreet", FieldKind::otherStreet},
    {"otherStreet2", FieldKind::otherStreet2},
    {"otherStreet3", FieldKind::otherStreet3},
    {"otherCity", FieldKind::otherCity},
    {"otherState", FieldKind::otherState},
    {"otherPostcode", FieldKind::otherPostcode},
    {"otherCountry", FieldKind::otherCountry},
    {"otherPoBox", FieldKind::otherPoBox},
    {"otherAddress", FieldKind::otherAddress},
    {"addressLine1", FieldKind::addressLine1},
    {"addressLine2", FieldKind::addressLine2},
    {"defaultDial", FieldKind::defaultDial},
    {"birthDate", FieldKind::birthDate},
    {"birthYear", FieldKind::birthYear},
    {"birthMonth", FieldKind::birthMonth},
    {"birthDay", FieldKind::birthDay},
    {"anniversary", FieldKind::anniversary},
    {"web", FieldKind::web},
    {"webHome", FieldKind::webHome},
    {"notes", FieldKind::notes},
    {"categories", FieldKind::categories},
    {"other", FieldKind::other},
    {"phone1", FieldKind::phone1},
    {"phone2", FieldKind::phone2},
    {"phone3", FieldKind::phone3},
    {"phone4", FieldKind::phone4},
    {"phone5", FieldKind::phone5},
    {"phone6", FieldKind::phone6},
    {"phone7", FieldKind::phone7},
    {"phoneType1", FieldKind::phoneType1},
    {"phoneType2", FieldKind::phoneType2},
    {"phoneType3", FieldKind::phoneType3},
    {"phoneType4", FieldKind::phoneType4},
    {"phoneType5", FieldKind::phoneType5},
    {"phoneType6", FieldKind::phoneType6},
    {"phoneType7", FieldKind::phoneType7},
    {"emailType1", FieldKind::emailType1},
    {"emailType2", FieldKind::emailType2},
    {"emailType3", FieldKind::emailType3},
    {"emailType4", FieldKind::emailType4},
    {"emailDisplay1", FieldKind::emailDisplay1},
    {"emailDisplay2", FieldKind::emailDisplay2},
    {"emailDisplay3", FieldKind::emailDisplay3},
    {"formattedAddress1", FieldKind::formattedAddress1},
    {"address1Type", FieldKind::address1Type},
    {"address1Street", FieldKind::address1Street},
    {"address1Street2", FieldKind::address1Street2},
    {"address1City", FieldKind::address1City},
    {"address1State", FieldKind::address1State},
    {"address1Postcode", FieldKind::address1Postcode},
    {"address1Country", FieldKind::address1Country},
    {"address1PoBox", FieldKind::address1PoBox},
    {"formattedAddress2", FieldKind::formattedAddress2},
    {"address2Type", FieldKind::address2Type},
    {"address2Street", FieldKind::address2Street},
    {"address2Street2", FieldKind::address2Street2},
    {"address2City", FieldKind::address2City},
    {"address2State", FieldKind::address2State},
    {"address2Postcode", FieldKind::address2Postcode},
    {"address2Country", FieldKind::address2Country},
    {"address2PoBox", FieldKind::address2PoBox},

};
static_assert(sizeof words / sizeof *words == fieldKindCount);

/// What the phone's own file calls them.
constexpr Word phoneWords[] = {
    {"LastName", FieldKind::family},      {"FirstName", FieldKind::given},       {"Business1", FieldKind::workPhone},
    {"Business2", FieldKind::workPhone2}, {"Mobile1", FieldKind::mobile},        {"Private1", FieldKind::homePhone},
    {"Company1", FieldKind::company},     {"Address1", FieldKind::addressLine1}, {"Address2", FieldKind::addressLine2},
    {"Position", FieldKind::jobTitle},
};

bool isSameWord(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char a, char b) { return lowerCase(a) == lowerCase(b); });
}

template <std::size_t N>
std::optional<FieldKind> find(const Word (&table)[N], std::string_view word) {
    const auto* const found =
        std::find_if(std::begin(table), std::end(table), [&](const Word& w) { return isSameWord(w.word, word); });
    return found == std::end(table) ? std::nullopt : std::optional<FieldKind>(found->kind);
}

}  // namespace

std::string_view fieldKindName(FieldKind kind) {
    return words[static_cast<std::size_t>(kind)].word;
}

std::optional<FieldKind> fieldKindOf(std::string_view word) {
    const std::optional<FieldKind> own = find(words, word);
    return own ? own : find(phoneWords, word);
}

}  // namespace calljournal
