#include "Meaning.h"

#include <algorithm>
#include <cctype>

namespace calljournal {

namespace {

struct Word {
    std::string_view word;
    Meaning meaning;
};

constexpr Word words[] = {
    {"title", Meaning::title},
    {"given", Meaning::given},
    {"middle", Meaning::middle},
    {"family", Meaning::family},
    {"suffix", Meaning::suffix},
    {"nickname", Meaning::nickname},
    {"displayName", Meaning::displayName},
    {"company", Meaning::company},
    {"department", Meaning::department},
    {"jobTitle", Meaning::jobTitle},
    {"workPhone", Meaning::workPhone},
    {"workPhone2", Meaning::workPhone2},
    {"companyPhone", Meaning::companyPhone},
    {"homePhone", Meaning::homePhone},
    {"homePhone2", Meaning::homePhone2},
    {"mobile", Meaning::mobile},
    {"carPhone", Meaning::carPhone},
    {"primaryPhone", Meaning::primaryPhone},
    {"otherPhone", Meaning::otherPhone},
    {"assistantPhone", Meaning::assistantPhone},
    {"callbackPhone", Meaning::callbackPhone},
    {"radioPhone", Meaning::radioPhone},
    {"isdn", Meaning::isdn},
    {"telex", Meaning::telex},
    {"ttyTdd", Meaning::ttyTdd},
    {"pager", Meaning::pager},
    {"workFax", Meaning::workFax},
    {"homeFax", Meaning::homeFax},
    {"otherFax", Meaning::otherFax},
    {"email1", Meaning::email1},
    {"email2", Meaning::email2},
    {"email3", Meaning::email3},
    {"email4", Meaning::email4},
    {"workStreet", Meaning::workStreet},
    {"workStreet2", Meaning::workStreet2},
    {"workStreet3", Meaning::workStreet3},
    {"workCity", Meaning::workCity},
    {"workState", Meaning::workState},
    {"workPostcode", Meaning::workPostcode},
    {"workCountry", Meaning::workCountry},
    {"workPoBox", Meaning::workPoBox},
    {"workAddress", Meaning::workAddress},
    {"homeStreet", Meaning::homeStreet},
    {"homeStreet2", Meaning::homeStreet2},
    {"homeStreet3", Meaning::homeStreet3},
    {"homeCity", Meaning::homeCity},
    {"homeState", Meaning::homeState},
    {"homePostcode", Meaning::homePostcode},
    {"homeCountry", Meaning::homeCountry},
    {"homePoBox", Meaning::homePoBox},
    {"homeAddress", Meaning::homeAddress},
    {"otherStreet", Meaning::otherStreet},
    {"otherStreet2", Meaning::otherStreet2},
    {"otherStreet3", Meaning::otherStreet3},
    {"otherCity", Meaning::otherCity},
    {"otherState", Meaning::otherState},
    {"otherPostcode", Meaning::otherPostcode},
    {"otherCountry", Meaning::otherCountry},
    {"otherPoBox", Meaning::otherPoBox},
    {"otherAddress", Meaning::otherAddress},
    {"addressLine1", Meaning::addressLine1},
    {"addressLine2", Meaning::addressLine2},
    {"defaultDial", Meaning::defaultDial},
    {"birthDate", Meaning::birthDate},
    {"birthYear", Meaning::birthYear},
    {"birthMonth", Meaning::birthMonth},
    {"birthDay", Meaning::birthDay},
    {"anniversary", Meaning::anniversary},
    {"web", Meaning::web},
    {"webHome", Meaning::webHome},
    {"notes", Meaning::notes},
    {"categories", Meaning::categories},
    {"other", Meaning::other},
    {"phone1", Meaning::phone1},
    {"phone2", Meaning::phone2},
    {"phone3", Meaning::phone3},
    {"phone4", Meaning::phone4},
    {"phone5", Meaning::phone5},
    {"phone6", Meaning::phone6},
    {"phone7", Meaning::phone7},
    {"phoneType1", Meaning::phoneType1},
    {"phoneType2", Meaning::phoneType2},
    {"phoneType3", Meaning::phoneType3},
    {"phoneType4", Meaning::phoneType4},
    {"phoneType5", Meaning::phoneType5},
    {"phoneType6", Meaning::phoneType6},
    {"phoneType7", Meaning::phoneType7},
    {"emailType1", Meaning::emailType1},
    {"emailType2", Meaning::emailType2},
    {"emailType3", Meaning::emailType3},
    {"emailType4", Meaning::emailType4},
    {"emailDisplay1", Meaning::emailDisplay1},
    {"emailDisplay2", Meaning::emailDisplay2},
    {"emailDisplay3", Meaning::emailDisplay3},
    {"formattedAddress1", Meaning::formattedAddress1},
    {"address1Type", Meaning::address1Type},
    {"address1Street", Meaning::address1Street},
    {"address1Street2", Meaning::address1Street2},
    {"address1City", Meaning::address1City},
    {"address1State", Meaning::address1State},
    {"address1Postcode", Meaning::address1Postcode},
    {"address1Country", Meaning::address1Country},
    {"address1PoBox", Meaning::address1PoBox},
    {"formattedAddress2", Meaning::formattedAddress2},
    {"address2Type", Meaning::address2Type},
    {"address2Street", Meaning::address2Street},
    {"address2Street2", Meaning::address2Street2},
    {"address2City", Meaning::address2City},
    {"address2State", Meaning::address2State},
    {"address2Postcode", Meaning::address2Postcode},
    {"address2Country", Meaning::address2Country},
    {"address2PoBox", Meaning::address2PoBox},

};
static_assert(sizeof words / sizeof *words == meaningCount);

/// What the phone's own file calls them.
constexpr Word phoneWords[] = {
    {"LastName", Meaning::family},      {"FirstName", Meaning::given},       {"Business1", Meaning::workPhone},
    {"Business2", Meaning::workPhone2}, {"Mobile1", Meaning::mobile},        {"Private1", Meaning::homePhone},
    {"Company1", Meaning::company},     {"Address1", Meaning::addressLine1}, {"Address2", Meaning::addressLine2},
    {"Position", Meaning::jobTitle},
};

char lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool isSameWord(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char a, char b) { return lower(a) == lower(b); });
}

template <std::size_t N>
std::optional<Meaning> find(const Word (&table)[N], std::string_view word) {
    const auto* const found =
        std::find_if(std::begin(table), std::end(table), [&](const Word& w) { return isSameWord(w.word, word); });
    return found == std::end(table) ? std::nullopt : std::optional<Meaning>(found->meaning);
}

}  // namespace

std::string_view meaningName(Meaning meaning) {
    return words[static_cast<std::size_t>(meaning)].word;
}

std::optional<Meaning> meaningOf(std::string_view word) {
    const std::optional<Meaning> own = find(words, word);
    return own ? own : find(phoneWords, word);
}

}  // namespace calljournal
