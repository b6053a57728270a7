#pragma once

#include <array>
#include <deque>
#include <set>
#include <string>
#include <vector>

/// The events of one parse, kept so that callbacks can be called again without a parser. They take little memory: what
/// is measured are the callbacks, not the way to texts that a parser would just have touched.
namespace bench {

class Events {
public:
    explicit Events(const std::string& message);
    Events(const Events&) = delete;
    Events& operator=(const Events&) = delete;

    /// Calls the callbacks of `Reader` for the events in their order.
    template <class Reader>
    void replay(Reader& reader) const {
        for (const Event& event : events_) {
            switch (event.kind) {
                case Kind::begin:
                    Reader::parseRemoteXMLTagBegin(&reader, event.text, event.attributes);
                    break;
                case Kind::end:
                    Reader::parseRemoteXMLTagEnd(&reader, event.text);
                    break;
                case Kind::data:
                    Reader::parseRemoteXMLData(&reader, event.text, event.length);
                    break;
            }
        }
    }

private:
    enum class Kind { begin, end, data };
    struct Event {
        Kind kind;
        int length;
        const char* text;
        const char** attributes;  ///< Of a begin tag; the first one and no more.
    };
    struct Recorder;
    using Attributes = std::array<const char*, 3>;

    const char* keepName(const std::string& name) { return names_.insert(name).first->c_str(); }

    std::set<std::string> names_;  ///< Those of elements and attributes, and attributes' values.
    std::string texts_;
    std::deque<Attributes> attributes_;
    std::vector<Event> events_;
};

}  // namespace bench
