#include "SqlDataAccessService.h"

#include <algorithm>
#include <exception>
#include <soci/soci.h>
#include <string_view>

#include "ClientUtils.h"
#include "EntryBody.h"
#include "EntryTable.h"
#include "SqliteConnection.h"
#include "StoreRequest.h"
#include "StoreSchema.h"

namespace calljournal {

namespace {

/// More than the tags that a reply adds to an entry, a picture clip's longer name included.
constexpr std::size_t tagsPerEntry = 64;
constexpr std::size_t envelopeSize = 128;

/// A longer reply grows as it comes. What a damaged file says of its size is not to be believed.
constexpr std::size_t largestReserve = std::size_t{1} << 30U;

void appendId(std::string_view id, std::string& text) {
    text.append("<UniqueId>").append(id).append("</UniqueId>");
}

/// Appends an entry's body as readers get it.
void appendServed(std::string_view schema, std::string_view id, std::string_view body, std::string& text) {
    appendId(id, text);
    if (servesPictureClips(schema)) {
        appendWithPictureClip(body, text);
    } else {
        text.append(body);
    }
}

/// Returns what a reply of `schema` begins with; without a schema, that is the XML declaration alone.
std::string beginReply(std::string_view schema) {
    std::string reply = R"(<?xml version="1.0" encoding="utf-8"?>)";
    if (!schema.empty()) {
        reply.append(R"(<Schema name=")").append(schema).append(R"(">)");
    }
    return reply;
}

std::string makeReply(std::string_view schema, std::string_view content) {
    return beginReply(schema).append(content).append(schema.empty() ? "" : "</Schema>");
}

std::string failedReply(std::string_view schema, const std::string& reason) {
    return makeReply(schema, "<Result>failed</Result><Reason>" + ClientUtils::escapeXMLString(reason) + "</Reason>");
}

}  // namespace

struct SqlDataAccessService::Implementation {
    Implementation(const std::string& url, std::chrono::milliseconds patience) : connection(storeFile(url), patience) {}

    std::string carryOut(const StoreRequest& request);
    std::string read(std::string_view schema);
    std::string write(const StoreRequest& request);
    std::string remove(const StoreRequest& request);

    /// Returns the prepared statements; fresh ones after a failure.
    EntryTable& entries();

    /// Returns the scope for a request: `alone`, or a part of the exclusive work that it belongs to.
    Transaction::Scope scope(Transaction::Scope alone) const { return isExclusive ? Transaction::Scope::part : alone; }

    /// Runs `work` on the database and returns its result. A failure of the database leaves as a StoreError.
    template <class Work>
    auto guarded(const Work& work);

    SqliteConnection connection;
    std::unique_ptr<EntryTable> table;
    std::uint64_t ownChanges = 0;
    bool isExclusive = false;
};

template <class Work>
auto SqlDataAccessService::Implementation::guarded(const Work& work) {
    try {
        connection.refuseIfMoved();
        if (isExclusive && !connection.isInTransaction()) {
            throw connection.error(
                "an earlier failure has ended the work that this request is part of; start it again");
        }
        return work();
    } catch (const soci::soci_error& failure) {
        table.reset();
        throw connection.error(failure);
    } catch (const StoreDamage& damage) {
        table.reset();
        throw connection.damage(damage.what());
    } catch (...) {
        table.reset();
        throw;
    }
}

EntryTable& SqlDataAccessService::Implementation::entries() {
    if (!table) {
        table = std::make_unique<EntryTable>(connection.sql());
    }
    return *table;
}

std::string SqlDataAccessService::Implementation::carryOut(const StoreRequest& request) {
    switch (request.action) {
        case StoreAction::write:
            return write(request);
        case StoreAction::remove:
            return remove(request);
        case StoreAction::read:
            break;
    }
    return read(request.schema);
}

std::string SqlDataAccessService::Implementation::read(std::string_view schema) {
    const Transaction transaction(connection, scope(Transaction::Scope::reading));
    const EntryTable::Extent extent = entries().extent(schema);
    std::string reply = beginReply(schema);
    reply.reserve(std::min(extent.bytes + extent.entries * tagsPerEntry + envelopeSize, largestReserve));
    entries().forEach(schema, [&](std::string_view id, std::string_view body) {
        reply.append("<Entry>");
        appendServed(schema, id, body, reply);
        reply.append("</Entry>");
    });
    return reply.append("</Schema>");
}

std::string SqlDataAccessService::Implementation::write(const StoreRequest& request) {
    Transaction transaction(connection, scope(Transaction::Scope::writing));
    // All ids of the request first, so that none given to one entry is that of a later one.
    for (const StoreEntry& entry : request.entries) {
        entries().skipId(entry.id);
    }
    std::string content = "<Result>ok</Result>";
    for (const StoreEntry& entry : request.entries) {
        const std::string id = entry.id.empty() ? entries().takeNextId() : std::string(entry.id);
        if (id.empty()) {
            throw connection.error("it has no free id left; give the entry an id");
        }
        entries().put(request.schema, id, entry.body);
        appendId(id, content);
    }
    // The reply comes first: where memory runs out, nothing is committed.
    std::string reply = makeReply(request.schema, content);
    transaction.commit();
    ++ownChanges;
    return reply;
}

std::string SqlDataAccessService::Implementation::remove(const StoreRequest& request) {
    Transaction transaction(connection, scope(Transaction::Scope::writing));
    for (const StoreEntry& entry : request.entries) {
        entries().remove(request.schema, entry.id);
    }
    std::string reply = makeReply(request.schema, "<Result>ok</Result>");
    transaction.commit();
    ++ownChanges;
    return reply;
}

SqlDataAccessService::SqlDataAccessService(const std::string& url, std::chrono::milliseconds patience)
    : implementation_(std::make_unique<Implementation>(url, patience)) {
    implementation_->guarded([this] { prepareStore(implementation_->connection); });
}

SqlDataAccessService::~SqlDataAccessService() = default;

std::string SqlDataAccessService::processRequest(const std::string& request) {
    StoreRequest scanned;
    try {
        scanned = scanStoreRequest(request);
        if (!scanned.problem.empty()) {
            return failedReply(scanned.schema, scanned.problem);
        }
        return implementation_->guarded([&] { return implementation_->carryOut(scanned); });
    } catch (const StoreError& failure) {
        return failedReply(scanned.schema, failure.what());
    } catch (const std::exception&) {
        // Memory, or no text can be as long as the reply would be, which is less than memory where addresses are short.
        return failedReply(scanned.schema, "there is not enough memory for this request");
    }
}

void SqlDataAccessService::exclusively(const std::function<void()>& work) {
    Implementation& store = *implementation_;
    if (store.isExclusive) {
        work();
        return;
    }
    const auto transaction =
        store.guarded([&] { return std::make_unique<Transaction>(store.connection, Transaction::Scope::writing); });
    store.isExclusive = true;
    try {
        work();
        store.guarded([&] { transaction->commit(); });
    } catch (...) {
        store.isExclusive = false;
        throw;
    }
    store.isExclusive = false;
}

std::optional<std::string> SqlDataAccessService::findEntry(const std::string& schema, const std::string& uniqueId) {
    return implementation_->guarded([&]() -> std::optional<std::string> {
        const std::optional<std::string> body = implementation_->entries().find(schema, uniqueId);
        if (!body) {
            return std::nullopt;
        }
        std::string served;
        appendServed(schema, uniqueId, *body, served);
        return served;
    });
}

std::uint64_t SqlDataAccessService::changeCount() {
    return implementation_->guarded([this] {
        return implementation_->ownChanges + static_cast<std::uint64_t>(implementation_->connection.dataVersion());
    });
}

}  // namespace calljournal
