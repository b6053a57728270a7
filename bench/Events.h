#ifndef BENCH_EVENTS_H
#define BENCH_EVENTS_H

#include <array>
#include <deque>
#include <string>
#include <vector>

/// The events of one parse, kept so that callbacks can be called again without a parser.
namespace bench {

class Events {
public:
    explicit Events(const std::string& message);

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
        const char* text;
        int length;
        const char** attributes;  ///< Of a begin tag; the first one and no more.
    };
    struct Recorder;

    const char* keep(std::string text);

    std::deque<std::string> texts_;
    std::deque<std::array<const char*, 3>> attributes_;
    std::vector<Event> events_;
};

}  // namespace bench

#endif
