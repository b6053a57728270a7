#pragma once

#include <deque>
#include <string>
#include <vector>

#include "Contact.h"
#include "Data.h"

/// The rules of the format and of the import as one would first write them down: a fresh string for each tag and value,
/// an ordered map from names to elements, a copy at each hand-over. What the library's own way is compared with.
namespace bench::wordForWord {

/// Takes the element `tag` at or behind `cursor`; returns the next cursor.
const char* takeValue(const char* cursor, const char* tag, std::string& out);

template <class Item>
std::string encode(const Item& item);

template <class Item>
void decode(const std::string& body, Item& item);

/// The callbacks of a parse of a missed call list.
class ListReader {
public:
    explicit ListReader(std::deque<MissedCallItem>& list) : output_(list) {}

    static void parseRemoteXMLTagBegin(void* userData, const char* name, const char** attributes);
    static void parseRemoteXMLTagEnd(void* userData, const char* name);
    static void parseRemoteXMLData(void* userData, const char* text, int length);

private:
    bool isForeign() const;
    void takeText(const std::string& text);

    MissedCallItem::MissedCallInfo call_;
    MissedCallItem entry_;
    std::deque<MissedCallItem>& output_;
    int tag_ = 56;
    std::string tagName_;
    std::string schemaName_;
    std::string callLogType_;
};

void readList(const std::string& reply, std::deque<MissedCallItem>& list);

/// An entry that knows no moves.
struct CopiedItem {
    CopiedItem(const MissedCallItem& from) : item(from) {}
    CopiedItem(const CopiedItem& other) : item(other.item) {}
    CopiedItem& operator=(const CopiedItem& other) {
        item = other.item;
        return *this;
    }

    MissedCallItem item;
};

/// Puts the newest entry in front. The list has no entries without calls.
void normalise(std::deque<CopiedItem>& list);

/// Imports a file of the layout with 92 columns in which no record spans lines.
std::vector<Contact> import(const std::string& path);

}  // namespace bench::wordForWord
