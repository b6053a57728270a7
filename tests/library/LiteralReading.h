#pragma once

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

#include "ClientUtils.h"
#include "Kinds.h"
#include "LiteralRules.h"
#include "XmlParser.h"

/// The missed call list as the literal rules read it, through the platform's own XML parser.
inline std::vector<rules::Entry> readLiterally(const std::string& reply) {
    struct Events {
        static void tagBegin(void* reader, const char* name, const char** attributes) {
            std::vector<std::string> texts;
            for (; *attributes != nullptr; ++attributes) {
                texts.emplace_back(*attributes);
            }
            static_cast<rules::ListReader*>(reader)->begin(name, texts);
        }
        static void tagEnd(void* reader, const char* name) { static_cast<rules::ListReader*>(reader)->end(name); }
        static void characterData(void* reader, const char* text, int length) {
            static_cast<rules::ListReader*>(reader)->data(std::string(text, static_cast<std::size_t>(length)));
        }
    };
    rules::ListReader reader;
    XmlParser parser(&reader, Events::tagBegin, Events::tagEnd, Events::characterData);
    const std::string fixed = ClientUtils::fixSpecialXMLCharactersToQuote(reply);
    parser.parseMessage(fixed.c_str(), static_cast<int>(reply.size()));
    return reader.output;
}

inline std::vector<rules::Entry> describeList(const std::deque<MissedCallItem>& list) {
    std::vector<rules::Entry> entries;
    for (const MissedCallItem& item : list) {
        entries.push_back(describeEntry<Missed>(item));
    }
    return entries;
}

/// Whether no two entries have equal keys, so that their order is certain.
inline bool hasOneOrder(const std::vector<rules::Entry>& list) {
    std::vector<std::string> keys;
    for (const rules::Entry& entry : list) {
        keys.push_back(rules::sortKey(entry));
    }
    std::sort(keys.begin(), keys.end());
    return std::adjacent_find(keys.begin(), keys.end()) == keys.end();
}
