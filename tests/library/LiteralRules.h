#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

/// The rules of the call log format, written down step by step without any thought of speed: the judge that the
/// library's codecs and reader are compared with. Nothing here uses the library.
namespace rules {

/// The values of one call or of one entry without its calls, by the name of the element that carries them (an element's
/// own name also where the format leaves it out; "reference" has no element). Enumerations are decimal numbers, flags
/// "0" or "1".
using Members = std::map<std::string, std::string>;

/// How an element's text stands for its value.
enum class Form {
    text,
    flag,  ///< "True" or "False".
    targetLog,
    presentation,
    timeFormat,
    numberType,
    transferType
};

/// One element of a format and how a decoder takes it.
struct Element {
    std::string tag;
    Form form;
    /// A flag that is read as any other text, unescaped, and then compared with "True".
    bool readAsText = false;
};

/// The layout of one kind of entry.
struct Format {
    std::string schema;
    std::string method;  ///< Of the notification.
    std::vector<Element> itemWritten;
    std::vector<Element> itemRead;
    std::vector<Element> callWritten;
    std::vector<Element> callRead;
};

const Format& missedFormat();
const Format& dialledFormat();
const Format& receivedFormat();
const Format& forwardedFormat();

/// One entry: its own members and those of its calls.
struct Entry {
    Members item;
    std::vector<Members> calls;
};
bool operator==(const Entry& first, const Entry& second);

Members emptyMissedItem();
Members emptyMissedCall();

/// The five predefined entities, in one pass.
std::string escape(const std::string& text);
std::string unescape(const std::string& text);

/// An enumeration's word, and the number of a word.
std::string word(Form form, int value);
int valueOfWord(Form form, const std::string& word);

/// Takes the first element `tag` at or behind `cursor`; returns the next cursor. Both see `text` up to its first zero.
std::size_t value(const std::string& text, std::size_t cursor, const std::string& tag, std::string& out);
std::size_t flag(const std::string& text, std::size_t cursor, const std::string& tag, bool& out);

/// Cuts from the first begin tag to the first close tag, in signed 32-bit positions.
bool cutOut(std::string& xml, const std::string& tag, std::string& out);

std::string method(const std::string& message);

std::string encodeCalls(const Format& format, const std::vector<Members>& calls);
std::string encodeItem(const Format& format, const Entry& entry, bool onlyUniqueId);

/// `fresh` is a default call.
void decodeCall(const Format& format, const std::string& xml, Members& call);
bool decodeCalls(const Format& format, const std::string& xml, const Members& fresh, std::vector<Members>& calls);
void decodeItem(const Format& format, const std::string& xml, const Members& fresh, Entry& entry);

/// The request that writes or deletes one entry with this body.
std::string request(const std::string& schema, const std::string& reason, const std::string& body);

/// The parse tag of an element name.
int parseTag(const std::string& name);

/// The missed call list reader: takes the events of one reply.
class ListReader {
public:
    void begin(const std::string& name, const std::vector<std::string>& attributes);
    void data(const std::string& text);
    void end(const std::string& name);

    Members call = emptyMissedCall();
    Entry entry = {emptyMissedItem(), {}};
    std::vector<Entry> output;
    int tag = 56;
    std::string tagName;
    std::string schemaName;
    std::string callLogType;
    std::vector<std::string> log;  ///< What is written at level 6.

private:
    bool isClosed() const;
};

/// The text by which entries are ordered.
std::string sortKey(const Entry& entry);
/// Whether `first` stands before `second`.
bool isOrdered(const Entry& first, const Entry& second);

/// What normalising a list leaves behind.
struct Normalised {
    std::vector<Entry> list;
    std::vector<std::string> requests;
    std::vector<std::string> log;  ///< All lines of both levels, for a service that answers "ok".
};
Normalised normalise(std::vector<Entry> list);

}  // namespace rules
