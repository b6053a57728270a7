#include "ContactJson.h"

#include "ContactFields.h"
#include "JsonText.h"
#include "detail/Words.h"

namespace calljournal {

std::string contactJson(const Contact& contact) {
    Json json = Json::object();
    for (const ContactText& text : contactTexts) {
        if (!(contact.*text.member).empty()) {
            json[std::string(text.name)] = contact.*text.member;
        }
    }
    json["defaultDial"] = contact.defaultDial;
    json["source"] = detail::toWord(contact.source);
    return jsonText(json, false);
}

}  // namespace calljournal
