#include "Events.h"

#include "XmlParser.h"

namespace bench {

struct Events::Recorder {
    static void begin(void* userData, const char* name, const char** attributes) {
        Events& self = *static_cast<Events*>(userData);
        if (attributes[0] != nullptr) {
            self.attributes_.push_back({self.keepName(attributes[0]), self.keepName(attributes[1]), nullptr});
        }
        Attributes& kept = attributes[0] == nullptr ? self.attributes_.front() : self.attributes_.back();
        self.events_.push_back({Kind::begin, 0, self.keepName(name), kept.data()});
    }
    static void end(void* userData, const char* name) {
        Events& self = *static_cast<Events*>(userData);
        self.events_.push_back({Kind::end, 0, self.keepName(name), nullptr});
    }
    static void data(void* userData, const char* text, int length) {
        Events& self = *static_cast<Events*>(userData);
        const std::size_t at = self.texts_.size();
        self.texts_.append(text, static_cast<std::size_t>(length));
        self.events_.push_back({Kind::data, length, &self.texts_[at], nullptr});
    }
};

Events::Events(const std::string& message) : attributes_(1, Attributes{nullptr, nullptr, nullptr}) {
    texts_.reserve(message.size());  // room for all texts: they stay where they are
    XmlParser parser(this, &Recorder::begin, &Recorder::end, &Recorder::data);
    parser.parseMessage(message.c_str(), static_cast<int>(message.size()));
}

}  // namespace bench
