#include "ContactJson.h"

#include "ContactFields.h"
#include "JsonText.h"
#include "Words.h"

namespace calljournal {

std::string contactJson(const Contact& contact) {
    std::string json;
    appendContactJson(json, contact);
    return json;
}

void appendContactJson(std::string& json, const Contact& contact) {
    json += '{';
    for (const ContactText& text : contactTexts) {
        if (!(contact.*text.member).empty()) {
            json.append(1, '"').append(text.name).append("\":");
            appendJsonText(json, contact.*text.member);
            json += ',';
        }
    }
    json.append("\"defaultDial\":").append(std::to_string(contact.defaultDial)).append(",\"source\":");
    appendJsonText(json, format::toWord(contact.source));
    json += '}';
}

}  // namespace calljournal
