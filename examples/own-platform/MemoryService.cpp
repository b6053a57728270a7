#include "MemoryService.h"

#include <algorithm>
#include <vector>

namespace {

/// Returns what is between the first `begin` and the next `end`; empty without them.
std::string between(const std::string& text, const std::string& begin, const std::string& end) {
    const std::string::size_type found = text.find(begin);
    if (found == std::string::npos) {
        return std::string();
    }
    const std::string::size_type inside = found + begin.size();
    const std::string::size_type last = text.find(end, inside);
    return last == std::string::npos ? std::string() : text.substr(inside, last - inside);
}

std::string element(const std::string& name, const std::string& text) {
    return "<" + name + ">" + text + "</" + name + ">";
}

std::vector<std::string> entriesOf(const std::string& request) {
    std::vector<std::string> bodies;
    std::string::size_type at = 0;
    while ((at = request.find("<Entry>", at)) != std::string::npos) {
        bodies.push_back(between(request.substr(at), "<Entry>", "</Entry>"));
        at += bodies.back().size() + 1;
    }
    return bodies;
}

/// An entry's id is the first element of its body; a new one has none yet.
std::string idOf(const std::string& body) {
    return body.compare(0, 10, "<UniqueId>") == 0 ? between(body, "<UniqueId>", "</UniqueId>") : std::string();
}

void rename(std::string& text, const std::string& from, const std::string& to) {
    for (std::string::size_type at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
}

}  // namespace

std::string MemoryService::processRequest(const std::string& request) {
    const std::string schema = between(request, "<Schema name=\"", "\">");
    const std::string reason = between(request, "<ReasonForMessage>", "</ReasonForMessage>");
    Table& table = tables_[schema];
    std::string answer;
    if (reason == "read_request") {
        answer = read(table);
    } else {
        answer = element("Result", "ok");
        for (const std::string& body : entriesOf(request)) {
            if (reason == "write_request") {
                answer += element("UniqueId", write(table, body));
            } else {
                table.remove_if([&body](const StoredEntry& entry) { return entry.first == idOf(body); });
            }
        }
    }
    return "<Schema name=\"" + schema + "\">" + answer + "</Schema>";
}

std::string MemoryService::write(Table& table, const std::string& body) {
    const std::string id = idOf(body);
    if (id.empty()) {
        const std::string newId = std::to_string(++lastId_);
        table.push_back(StoredEntry(newId, element("UniqueId", newId) + body));
        return newId;
    }
    const Table::iterator known =
        std::find_if(table.begin(), table.end(), [&id](const StoredEntry& entry) { return entry.first == id; });
    if (known == table.end()) {
        table.push_back(StoredEntry(id, body));
    } else {
        known->second = body;
    }
    return id;
}

// A picture is written as "Picture", but the list's reader looks for it under another name.
std::string MemoryService::read(const Table& table) {
    std::string entries;
    for (const StoredEntry& entry : table) {
        entries += element("Entry", entry.second);
    }
    rename(entries, "<Picture>", "<PictureClip>");
    rename(entries, "</Picture>", "</PictureClip>");
    return entries;
}
