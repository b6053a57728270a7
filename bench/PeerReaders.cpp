#include <cstdlib>
#include <expat.h>
#include <libxml/parser.h>
#include <memory>
#include <pugixml.hpp>
#include <rapidxml/rapidxml.hpp>
#include <tinyxml2.h>

#include "Peers.h"
#include "RecordBuilder.h"

namespace bench {

namespace {

/// The nodes of a document that was parsed in place, with texts as they are there.
struct RapidTree {
    using Node = const rapidxml::xml_node<>*;
    static Node first(Node node) { return node->first_node(); }
    static Node next(Node node) { return node->next_sibling(); }
    static std::string_view name(Node node) { return {node->name(), node->name_size()}; }
    static std::string_view text(Node node) { return {node->value(), node->value_size()}; }
};

/// Where parsing leaves entities alone, they are the user's.
std::string_view resolved(std::string_view text, std::string& room) {
    if (text.find('&') == std::string_view::npos) {
        return text;
    }
    room = ClientUtils::unescapeXMLString(std::string(text));
    return room;
}

struct FastestRapidTree : RapidTree {
    static std::string_view text(Node node) {
        thread_local std::string room;
        return resolved(RapidTree::text(node), room);
    }
};

constexpr int rapidDefault = rapidxml::parse_no_data_nodes;
constexpr int rapidFastest = rapidxml::parse_fastest;

template <int flags>
void parseRapid(rapidxml::xml_document<>& document, char* text) {
    document.parse<flags>(text);
}

struct PugiTree {
    using Node = pugi::xml_node;
    static Node first(Node node) { return node.first_child(); }
    static Node next(Node node) { return node.next_sibling(); }
    static std::string_view name(Node node) { return node.name(); }
    static std::string_view text(Node node) { return node.child_value(); }
};

constexpr unsigned pugiFlags = pugi::parse_minimal | pugi::parse_escapes | pugi::parse_fragment;

struct TinyTree {
    using Node = const tinyxml2::XMLElement*;
    static Node first(Node node) { return node->FirstChildElement(); }
    static Node next(Node node) { return node->NextSiblingElement(); }
    static std::string_view name(Node node) { return node->Name(); }
    static std::string_view text(Node node) { return node->GetText() == nullptr ? "" : node->GetText(); }
};

struct LibxmlTree {
    using Node = const xmlNode*;
    static Node elementFrom(Node node) {
        while (node != nullptr && node->type != XML_ELEMENT_NODE) {
            node = node->next;
        }
        return node;
    }
    static Node first(Node node) { return elementFrom(node->children); }
    static Node next(Node node) { return elementFrom(node->next); }
    static std::string_view name(Node node) { return reinterpret_cast<const char*>(node->name); }
    static std::string_view text(Node node) {
        return node->children == nullptr ? "" : reinterpret_cast<const char*>(node->children->content);
    }
};

/// Events to records; texts may come in pieces.
class ExpatReader {
public:
    explicit ExpatReader(std::deque<MissedCallItem>& list) : list_(list) {}

    static void begin(void* userData, const char* name, const char**) {
        ExpatReader& self = *static_cast<ExpatReader*>(userData);
        self.text_.clear();
        const std::string_view tag = name;
        if (tag == "Entry") {
            self.list_.emplace_back();
        } else if (tag == "Item") {
            self.calls().emplace_back();
        }
    }
    static void data(void* userData, const char* text, int length) {
        static_cast<ExpatReader*>(userData)->text_.append(text, static_cast<std::size_t>(length));
    }
    static void end(void* userData, const char* name) { static_cast<ExpatReader*>(userData)->take(name); }

private:
    static std::string_view tagOf(const calljournal::format::CallField<MissedCallItem::MissedCallInfo>& field) {
        return field.tag;
    }
    template <class Base>
    static std::string_view readTagOf(const calljournal::format::ItemField<Base>& field) {
        return field.readAs;
    }

    std::list<MissedCallItem::MissedCallInfo>& calls() {
        return list_.back().*calljournal::detail::OwnMembers<MissedCallItem>::calls;
    }

    void take(std::string_view name) {
        if (list_.empty()) {
            return;
        }
        MissedCallItem& item = list_.back();
        CallItemWithPicture& base = item;
        if (!calls().empty()) {
            if (const auto* field = callFields_.find(name)) {
                std::visit([&](auto member) { calljournal::detail::assignPlain(calls().back().*member, text_); },
                           field->member);
            }
        } else if (const auto* field = party_.find(name)) {
            std::visit([&](const auto& access) { setAccess(access, text_, base); }, field->access);
        } else if (const auto* ownField = own_.find(name)) {
            std::visit([&](const auto& access) { setAccess(access, text_, item); }, ownField->access);
        }
    }

    using CallFields = std::remove_reference_t<decltype(Kind<MissedCallItem>::callFields)>;
    using ItemFields = std::remove_reference_t<decltype(Kind<MissedCallItem>::itemFields)>;
    using PartyFields = std::remove_reference_t<decltype(calljournal::format::partyFields)>;

    std::deque<MissedCallItem>& list_;
    std::string text_;
    FieldFinder<CallFields, decltype(&ExpatReader::tagOf)> callFields_{Kind<MissedCallItem>::callFields, &tagOf};
    FieldFinder<PartyFields, decltype(&ExpatReader::readTagOf<CallItemWithPicture>)> party_{
        calljournal::format::partyFields, &readTagOf<CallItemWithPicture>};
    FieldFinder<ItemFields, decltype(&ExpatReader::readTagOf<MissedCallItem>)> own_{Kind<MissedCallItem>::itemFields,
                                                                                    &readTagOf<MissedCallItem>};
};

}  // namespace

void readWithRapidxml(const std::string& reply, std::deque<MissedCallItem>& list) {
    std::string copy = reply;
    rapidxml::xml_document<> document;
    parseRapid<rapidDefault>(document, copy.data());
    buildList<RapidTree>(document.first_node("Schema"), list);
}

void readWithFastestRapidxml(const std::string& reply, std::deque<MissedCallItem>& list) {
    rapidxml::xml_document<> document;
    parseRapid<rapidFastest>(document, const_cast<char*>(reply.c_str()));  // not written to with these flags
    buildList<FastestRapidTree>(document.first_node("Schema"), list);
}

void readWithPugixml(const std::string& reply, std::deque<MissedCallItem>& list) {
    pugi::xml_document document;
    document.load_buffer(reply.data(), reply.size(), pugiFlags, pugi::encoding_utf8);
    buildList<PugiTree>(document.child("Schema"), list);
}

void readWithTinyxml2(const std::string& reply, std::deque<MissedCallItem>& list) {
    tinyxml2::XMLDocument document;
    document.Parse(reply.data(), reply.size());
    buildList<TinyTree>(document.RootElement(), list);
}

void readWithExpat(const std::string& reply, std::deque<MissedCallItem>& list) {
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate(nullptr), &XML_ParserFree);
    ExpatReader reader(list);
    XML_SetUserData(parser.get(), &reader);
    XML_SetElementHandler(parser.get(), &ExpatReader::begin, &ExpatReader::end);
    XML_SetCharacterDataHandler(parser.get(), &ExpatReader::data);
    XML_Parse(parser.get(), reply.data(), static_cast<int>(reply.size()), 1);
}

void readWithLibxml2(const std::string& reply, std::deque<MissedCallItem>& list) {
    const std::unique_ptr<xmlDoc, void (*)(xmlDocPtr)> document(
        xmlReadMemory(reply.data(), static_cast<int>(reply.size()), nullptr, nullptr,
                      XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_COMPACT),
        &xmlFreeDoc);
    if (document != nullptr) {
        buildList<LibxmlTree>(xmlDocGetRootElement(document.get()), list);
    }
}

template <class Item>
void decodeWithRapidxml(const std::string& body, Item& item) {
    std::string copy = body;
    rapidxml::xml_document<> document;
    parseRapid<rapidDefault>(document, copy.data());
    buildItem<RapidTree>(&document, item);
}

template <class Item>
void decodeWithFastestRapidxml(const std::string& body, Item& item) {
    rapidxml::xml_document<> document;
    parseRapid<rapidFastest>(document, const_cast<char*>(body.c_str()));
    buildItem<FastestRapidTree>(&document, item);
}

template <class Item>
void decodeWithPugixml(const std::string& body, Item& item) {
    pugi::xml_document document;
    document.load_buffer(body.data(), body.size(), pugiFlags, pugi::encoding_utf8);
    buildItem<PugiTree>(document, item);
}

#define BENCH_DECODERS(Item)                                                  \
    template void decodeWithRapidxml<Item>(const std::string&, Item&);        \
    template void decodeWithFastestRapidxml<Item>(const std::string&, Item&); \
    template void decodeWithPugixml<Item>(const std::string&, Item&);

BENCH_DECODERS(MissedCallItem)
BENCH_DECODERS(DialledCallItem)
BENCH_DECODERS(ReceivedCallItem)
BENCH_DECODERS(ForwardedCallItem)

}  // namespace bench
