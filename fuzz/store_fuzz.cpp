// The store answers any request with a reply: it holds what it said it wrote, in order of first insertion, and nothing
// else. An input is a number of requests, one a line.

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "EntryBody.h"
#include "Store.h"
#include "StoreRequest.h"
#include "TemporaryFolder.h"
#include "TokenText.h"

namespace {

using calljournal::StoreAction;
using calljournal::StoreEntry;
using calljournal::StoreRequest;

const std::vector<std::string> schemas = {"CallLogMissedCalls", "CallLogDialledCalls",  "CallBacks",
                                          "Conversations",      "CallLogReceivedCalls", "CallLogForwardedCalls",
                                          "CallLogEnabledState"};

std::string envelope(const std::string& schema, const std::string& content) {
    return R"(<?xml version="1.0" encoding="utf-8"?><Schema name=")" + schema + "\">" + content + "</Schema>";
}

std::string request(const std::string& schema, const std::string& reason, const std::string& entries) {
    return envelope(schema, "<ReasonForMessage>" + reason + "</ReasonForMessage>" + entries);
}

/// What the store should hold.
class Model {
public:
    void write(const std::string& schema, const std::string& id, const std::string& body) {
        used_.insert(id);
        const auto place = find(schema, id);
        if (place == schemas_[schema].end()) {
            schemas_[schema].emplace_back(id, body);
        } else {
            place->second = body;
        }
    }

    void remove(const std::string& schema, const std::string& id) {
        const auto place = find(schema, id);
        if (place != schemas_[schema].end()) {
            schemas_[schema].erase(place);
        }
    }

    bool wasUsed(const std::string& id) const { return used_.count(id) != 0; }

    std::string replyOf(const std::string& schema) {
        std::string content;
        for (const auto& [id, body] : schemas_[schema]) {
            content += "<Entry><UniqueId>" + id + "</UniqueId>";
            if (calljournal::servesPictureClips(schema)) {
                calljournal::appendWithPictureClip(body, content);
            } else {
                content += body;
            }
            content += "</Entry>";
        }
        return envelope(schema, content);
    }

private:
    using Entries = std::vector<std::pair<std::string, std::string>>;

    Entries::iterator find(const std::string& schema, const std::string& id) {
        Entries& entries = schemas_[schema];
        return std::find_if(entries.begin(), entries.end(), [&](const auto& entry) { return entry.first == id; });
    }

    std::map<std::string, Entries> schemas_;
    std::set<std::string> used_;
};

/// Removes the element of an id from the front of `ids`, and returns the id.
std::string takeId(std::string& ids) {
    static const std::string begin = "<UniqueId>";
    static const std::string end = "</UniqueId>";
    const std::size_t place = ids.find(end);
    FUZZ_CHECK(ids.compare(0, begin.size(), begin) == 0 && place != std::string::npos);
    const std::string id = ids.substr(begin.size(), place - begin.size());
    ids.erase(0, place + end.size());
    return id;
}

void checkWritten(const StoreRequest& written, const std::string& reply, Model& model) {
    const std::string schema(written.schema);
    const std::string ok = envelope(schema, "<Result>ok</Result>");
    const std::size_t idsAt = ok.rfind("</Schema>");
    FUZZ_CHECK(reply.compare(0, idsAt, ok, 0, idsAt) == 0);
    std::string ids = reply.substr(idsAt);
    for (const StoreEntry& entry : written.entries) {
        const std::string id = takeId(ids);
        if (entry.id.empty()) {
            FUZZ_CHECK(!id.empty() && id.find_first_not_of("0123456789") == std::string::npos && !model.wasUsed(id));
        } else {
            FUZZ_CHECK(id == entry.id);
        }
        model.write(schema, id, std::string(entry.body));
    }
    FUZZ_CHECK(ids == "</Schema>");
}

void checkRequest(calljournal::Store& store, const std::string& text, Model& model) {
    const StoreRequest asked = calljournal::scanStoreRequest(text);
    const std::string reply = store.processRequest(text);
    const std::string schema(asked.schema);
    if (!asked.problem.empty()) {
        FUZZ_CHECK(reply.find("<Result>failed</Result><Reason>") != std::string::npos);
    } else if (asked.action == StoreAction::read) {
        FUZZ_CHECK(reply == model.replyOf(schema));
    } else if (asked.action == StoreAction::write) {
        checkWritten(asked, reply, model);
    } else {
        FUZZ_CHECK(reply == envelope(schema, "<Result>ok</Result>"));
        for (const StoreEntry& entry : asked.entries) {
            model.remove(schema, std::string(entry.id));
        }
    }
}

void checkEverything(calljournal::Store& store, Model& model) {
    for (std::size_t index = 0; index + 1 < schemas.size(); ++index) {
        FUZZ_CHECK(store.processRequest(request(schemas[index], "read_request", "")) == model.replyOf(schemas[index]));
    }
}

/// A line's first byte says what is put around the others.
std::string requestOf(Input line) {
    static const TokenText toText(rules::missedFormat());
    static const std::vector<std::string> reasons = {"write_request", "delete_request", "read_request", "x"};
    const unsigned choice = line.byte();
    const std::string text = choice & 128 ? toText(line) : line.rest();
    if (choice & 64) {
        return text;
    }
    const std::string& reason = reasons[choice % reasons.size()];
    return request(schemas[choice / 4 % schemas.size()], reason,
                   reason == "read_request" && text.empty() ? text : "<Entry>" + text + "</Entry>");
}

struct Rollback {};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const calljournal::TemporaryFolder folder;
    static const std::unique_ptr<calljournal::Store> opened =
        calljournal::openStore((folder.path() / "journal.db").string());
    calljournal::Store& store = *opened;
    // Each input meets an empty store, without the cost of a new one.
    try {
        store.exclusively([&] {
            Model model;
            const std::uint8_t* const end = data + size;
            for (const std::uint8_t* begin = data; begin < end;) {
                const std::uint8_t* const lineEnd = std::find(begin, end, static_cast<std::uint8_t>('\n'));
                checkRequest(store, requestOf(Input(begin, static_cast<std::size_t>(lineEnd - begin))), model);
                begin = lineEnd == end ? end : lineEnd + 1;
            }
            checkEverything(store, model);
            throw Rollback();
        });
    } catch (const Rollback&) {
    }
    return 0;
}
