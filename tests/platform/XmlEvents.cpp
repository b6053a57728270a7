#include "XmlEvents.h"

#include <cstddef>
#include <ostream>

#include "XmlParser.h"

namespace {

std::vector<XmlEvent>& eventsOf(void* userData) {
    return static_cast<XmlEvents*>(userData)->events;
}

void onBegin(void* userData, const char* name, const char** attributes) {
    XmlEvent event{XmlEvent::begin, name, {}};
    for (; *attributes != nullptr; attributes += 2) {
        event.attributes.emplace_back(attributes[0], attributes[1]);
    }
    eventsOf(userData).push_back(event);
}

void onEnd(void* userData, const char* name) {
    eventsOf(userData).push_back({XmlEvent::end, name, {}});
}

void onText(void* userData, const char* text, int length) {
    eventsOf(userData).push_back({XmlEvent::text, std::string(text, static_cast<std::size_t>(length)), {}});
}

}  // namespace

std::string XmlEvents::asText() const {
    std::string all;
    for (const XmlEvent& event : events) {
        if (event.kind == XmlEvent::text) {
            all += "[" + event.value + "]\n";
            continue;
        }
        all += (event.kind == XmlEvent::begin ? "<" : "</") + event.value;
        for (const auto& [name, value] : event.attributes) {
            all += " " + name + "=[" + value + "]";
        }
        all += ">\n";
    }
    return isSound ? all : all + "unsound\n";
}

void PrintTo(const XmlEvents& events, std::ostream* out) {
    *out << events.asText();
}

XmlEvents parse(std::string_view message) {
    const std::vector<char> exact(message.begin(), message.end());
    XmlEvents result;
    XmlParser parser(&result, &onBegin, &onEnd, &onText);
    result.isSound = parser.parseMessage(exact.data(), static_cast<int>(exact.size()));
    return result;
}
