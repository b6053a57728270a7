#include <algorithm>
#include <libxml/xmlwriter.h>
#include <memory>
#include <pugixml.hpp>
#include <string_view>
#include <tinyxml2.h>
#include <variant>

#include "ClientUtils.h"
#include "Peers.h"
#include "Words.h"

namespace format = calljournal::format;

namespace bench {

namespace {

/// The names of a table's elements, terminated.
template <class Fields, class NameOf>
std::vector<std::string> namesOf(const Fields& fields, NameOf nameOf) {
    std::vector<std::string> names;
    for (const auto& field : fields) {
        names.emplace_back(nameOf(field));
    }
    return names;
}

// Values as terminated texts.

const char* textOf(const std::string& value) {
    return value.c_str();
}

template <class Value>
const char* textOf(Value value) {
    return std::string_view(format::wordOf(value)).data();
}

template <class Base>
std::string textOfAccess(const format::TextAccess<Base>& access, const Base& item) {
    std::string text = (item.*access.get)();
    if (access.form == format::Form::withoutColons) {
        text.erase(std::remove(text.begin(), text.end(), ':'), text.end());
    }
    return text;
}

template <class Base>
std::string textOfAccess(const format::FlagAccess<Base>& access, const Base& item) {
    return (item.*access.get)() ? "True" : "False";
}

template <class Writer, class Base, class Fields>
void writeFields(Writer& writer, const Fields& fields, const Base& item) {
    static const auto names = namesOf(fields, [](const auto& field) { return std::string_view(field.writtenAs); });
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string text =
            std::visit([&](const auto& access) { return textOfAccess(access, item); }, fields[i].access);
        if (!text.empty()) {
            writer.element(names[i].c_str(), text.c_str());
        }
    }
}

/// Writes a body through begin(name), end(name) and element(name, text).
template <class Writer, class Item>
void writeBody(Writer& writer, const Item& item) {
    const auto& fields = Kind<Item>::callFields;
    static const auto names = namesOf(fields, [](const auto& field) { return std::string_view(field.tag); });
    writeFields(writer, format::partyFields, static_cast<const CallItemWithPicture&>(item));
    writeFields(writer, Kind<Item>::itemFields, item);
    writer.begin("LogList");
    for (const auto& call : (item.*Kind<Item>::calls)()) {
        writer.begin("Item");
        for (std::size_t i = 0; i < names.size(); ++i) {
            const char* text = std::visit([&](auto member) { return textOf(call.*member); }, fields[i].member);
            if (*text != '\0') {
                writer.element(names[i].c_str(), text);
            }
        }
        writer.end("Item");
    }
    writer.end("LogList");
}

struct AppendWriter {
    void begin(const char* name) {
        out += '<';
        out += name;
        out += '>';
    }
    void end(const char* name) {
        out += "</";
        out += name;
        out += '>';
    }
    void element(const char* name, const char* text) {
        begin(name);
        out += text;
        end(name);
    }
    std::string out;
};

struct TinyWriter {
    void begin(const char* name) { printer.OpenElement(name, true); }
    void end(const char*) { printer.CloseElement(true); }
    void element(const char* name, const char* text) {
        printer.OpenElement(name, true);
        printer.PushText(text);
        printer.CloseElement(true);
    }
    tinyxml2::XMLPrinter printer{nullptr, true};
};

/// A document that is printed at the end.
struct PugiWriter {
    void begin(const char* name) { node = node.append_child(name); }
    void end(const char*) { node = node.parent(); }
    void element(const char* name, const char* text) {
        node.append_child(name).append_child(pugi::node_pcdata).set_value(text);
    }
    pugi::xml_document document;
    pugi::xml_node node = document;
};

struct StringSink : pugi::xml_writer {
    void write(const void* data, std::size_t size) override { out.append(static_cast<const char*>(data), size); }
    std::string out;
};

const xmlChar* asXml(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

struct LibxmlWriter {
    void begin(const char* name) { xmlTextWriterStartElement(writer.get(), asXml(name)); }
    void end(const char*) { xmlTextWriterEndElement(writer.get()); }
    void element(const char* name, const char* text) {
        xmlTextWriterWriteElement(writer.get(), asXml(name), asXml(text));
    }
    std::unique_ptr<xmlBuffer, void (*)(xmlBufferPtr)> buffer{xmlBufferCreate(), &xmlBufferFree};
    std::unique_ptr<xmlTextWriter, void (*)(xmlTextWriterPtr)> writer{xmlNewTextWriterMemory(buffer.get(), 0),
                                                                      &xmlFreeTextWriter};
};

}  // namespace

template <class Item>
std::string encodeByAppending(const Item& item) {
    AppendWriter writer;
    writer.out.reserve(300 + 1000 * (item.*Kind<Item>::calls)().size());
    writeBody(writer, item);
    return std::move(writer.out);
}

template <class Item>
std::string encodeWithTinyxml2(const Item& item) {
    TinyWriter writer;
    writeBody(writer, item);
    return std::string(writer.printer.CStr(), static_cast<std::size_t>(writer.printer.CStrSize() - 1));
}

template <class Item>
std::string encodeWithPugixml(const Item& item) {
    PugiWriter writer;
    writeBody(writer, item);
    StringSink sink;
    writer.document.save(sink, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    return std::move(sink.out);
}

template <class Item>
std::string encodeWithLibxml2(const Item& item) {
    LibxmlWriter writer;
    writeBody(writer, item);
    xmlTextWriterFlush(writer.writer.get());
    return std::string(reinterpret_cast<const char*>(xmlBufferContent(writer.buffer.get())),
                       static_cast<std::size_t>(xmlBufferLength(writer.buffer.get())));
}

#define BENCH_ENCODERS(Item)                                    \
    template std::string encodeByAppending<Item>(const Item&);  \
    template std::string encodeWithTinyxml2<Item>(const Item&); \
    template std::string encodeWithPugixml<Item>(const Item&);  \
    template std::string encodeWithLibxml2<Item>(const Item&);

BENCH_ENCODERS(MissedCallItem)
BENCH_ENCODERS(DialledCallItem)
BENCH_ENCODERS(ReceivedCallItem)
BENCH_ENCODERS(ForwardedCallItem)

}  // namespace bench
