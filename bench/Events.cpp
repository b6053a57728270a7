#include "Events.h"

#include <utility>

#include "XmlParser.h"

namespace bench {

struct Events::Recorder {
    static void begin(void* userData, const char* name, const char** attributes) {
        Events& self = *static_cast<Events*>(userData);
        self.attributes_.push_back({nullptr, nullptr, nullptr});
        for (std::size_t i = 0; i < 2 && attributes[i] != nullptr; ++i) {
            self.attributes_.back()[i] = self.keep(attributes[i]);
        }
        self.events_.push_back({Kind::begin, self.keep(name), 0, self.attributes_.back().data()});
    }
    static void end(void* userData, const char* name) {
        Events& self = *static_cast<Events*>(userData);
        self.events_.push_back({Kind::end, self.keep(name), 0, nullptr});
    }
    static void data(void* userData, const char* text, int length) {
        Events& self = *static_cast<Events*>(userData);
        const std::string copy(text, static_cast<std::size_t>(length));
        self.events_.push_back({Kind::data, self.keep(copy), length, nullptr});
    }
};

Events::Events(const std::string& message) {
    XmlParser parser(this, &Recorder::begin, &Recorder::end, &Recorder::data);
    parser.parseMessage(message.c_str(), static_cast<int>(message.size()));
}

const char* Events::keep(std::string text) {
    texts_.push_back(std::move(text));
    return texts_.back().c_str();
}

}  // namespace bench
