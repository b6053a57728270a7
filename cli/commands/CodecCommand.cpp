#include "CodecCommand.h"

#include <istream>
#include <iterator>
#include <ostream>

#include "ItemJson.h"
#include "Kinds.h"
#include "WellFormed.h"

namespace calljournal {

namespace {

std::string readAll(std::istream& in) {
    return std::string{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

void encodeEntry(const std::string& kind, std::istream& in, std::ostream& out) {
    const Json json = parseJson(readAll(in));
    withKind(kind, [&](auto type) {
        using Item = typename decltype(type)::Item;
        out << KindInterface<Item>::encode(itemFromJson<Item>(json)) << '\n';
    });
}

ExitCode decodeEntry(const std::string& kind, std::istream& in, std::ostream& out, std::ostream& err) {
    std::string body = readAll(in);
    if (!body.empty() && body.back() == '\n') {
        body.pop_back();
    }
    withKind(kind, [&](auto type) {
        using Item = typename decltype(type)::Item;
        Item item;
        KindInterface<Item>::decode(body.c_str(), item);
        out << jsonText(toJson(item), true) << '\n';
    });
    const std::optional<Defect> defect = findDefect(body);
    if (defect) {
        err << "calljournal: standard input: " << describe(*defect) << '\n';
        return exitRefused;
    }
    return exitDone;
}

}  // namespace calljournal
