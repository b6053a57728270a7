#ifndef CALLJOURNAL_XMLPARSER_H
#define CALLJOURNAL_XMLPARSER_H

/// Event-driven XML parser of the platform. It calls back synchronously on the caller's thread, in document order, and
/// hands over text as it is in the message (entities are not resolved).
class XmlParser {
public:
    /// Start of element `name` (zero-terminated). `attributes` alternates name and value, zero-terminated each, and
    /// ends with a null pointer. All pointers are valid during the call only.
    typedef void (*TagBegin)(void* userData, const char* name, const char** attributes);

    /// End of element `name` (zero-terminated, valid during the call only).
    typedef void (*TagEnd)(void* userData, const char* name);

    /// Character data between two tags: `length` bytes at `text`, not zero-terminated, valid during the call only.
    typedef void (*Data)(void* userData, const char* text, int length);

    /// Keeps the three callbacks and passes `userData` to each of them untouched.
    XmlParser(void* userData, TagBegin tagBegin, TagEnd tagEnd, Data data);
    ~XmlParser();

    XmlParser(const XmlParser&) = delete;
    XmlParser& operator=(const XmlParser&) = delete;

    /// Parses the `length` bytes at `text` and calls back on the way. Returns false where the nesting is wrong or the
    /// end is missing; everything before that place has been reported then. A negative length is an empty message.
    bool parseMessage(const char* text, int length);

private:
    void* userData;
    TagBegin tagBegin;
    TagEnd tagEnd;
    Data data;
};

#endif
