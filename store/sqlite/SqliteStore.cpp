#include "SqliteStore.h"

#include <algorithm>
#include <exception>
#include <soci/soci.h>
#include <string_view>

#include "ClientUtils.h"
#include "EntryBody.h"
#include "EntryTable.h"
#include "SqliteConnection.h"
#include "SqliteUrl.h"
#include "StoreRequest.h"
#include "StoreSchema.h"
#include "StoreWords.h"

namespace calljournal {

namespace {

namespace text = format::text;

/// More than the tags that a reply adds to an entry, a picture clip's longer name included.
constexpr std::size_t tagsPerEntry = 64;
constexpr std::size_t envelopeSize = 128;

/// A longer reply grows as it comes. What a damaged file says of its size is not to be believed.
constexpr std::size_t largestReserve = std::size_t{1} << 30U;

/// Appends an entry as readers get it.
void appendServed(std::string_view schema, std::string_view id, std::string_view body, std::string& reply) {
    reply.append(openTag(text::ENTRY)).append(xmlElement(text::UNIQUEID, id));
    if (servesPictureClips(schema)) {
        appendWithPictureClip(body, reply);
    } else {
        reply.append(body);
    }
    reply.append(closeTag(text::ENTRY));
}

/// Returns what a reply of `schema` begins with; without a schema, that is the XML declaration alone.
std::string beginReply(std::string_view schema) {
    std::string reply(text::XMLHEADER);
    if (!schema.empty()) {
        reply.append(schemaTagBegin).append(schema).append(schemaTagEnd);
    }
    return reply;
}

std::string failedReply(std::string_view schema, const std::string& reason) {
    return beginReply(schema) + xmlElement(resultElement, failedResult) +
           xmlElement(reasonElement, ClientUtils::escapeXMLString(reason)) +
           (schema.empty() ? std::string() : closeTag(text::SCHEMA));
}

class SqliteStore : public Store {
public:
    SqliteStore(const std::string& file, std::chrono::milliseconds timeout) : connection_(file, timeout) {
        guarded([this] { prepareStore(connection_); });
    }

    std::string processRequest(const std::string& request) override {
        StoreRequest scanned;
        try {
            scanned = scanStoreRequest(request);
            if (!scanned.problem.empty()) {
                return failedReply(scanned.schema, scanned.problem);
            }
            return guarded(
                [&] { return scanned.action == StoreAction::read ? read(scanned.schema) : change(scanned); });
        } catch (const StoreError& failure) {
            return failedReply(scanned.schema, failure.what());
        } catch (const std::exception&) {
            // Memory, or no text can be as long as the reply would be, which is less than memory where addresses are
            // short.
            return failedReply(scanned.schema, "there is not enough memory for this request");
        }
    }

    void exclusively(const std::function<void()>& work) override {
        if (isExclusive_) {
            work();
            return;
        }
        const auto transaction =
            guarded([&] { return std::make_unique<Transaction>(connection_, Transaction::Scope::writing); });
        isExclusive_ = true;
        try {
            work();
            guarded([&] { transaction->commit(); });
        } catch (...) {
            isExclusive_ = false;
            throw;
        }
        isExclusive_ = false;
    }

    std::uint64_t changeCount() override {
        return guarded([this] { return ownChanges_ + static_cast<std::uint64_t>(connection_.dataVersion()); });
    }

private:
    std::string read(std::string_view schema) {
        const Transaction transaction(connection_, scope(Transaction::Scope::reading));
        const EntryTable::Extent extent = entries().extent(schema);
        std::string reply = beginReply(schema);
        reply.reserve(std::min(extent.bytes + extent.entries * tagsPerEntry + envelopeSize, largestReserve));
        entries().forEach(schema,
                          [&](std::string_view id, std::string_view body) { appendServed(schema, id, body, reply); });
        return reply.append(closeTag(text::SCHEMA));
    }

    /// Writes or deletes entries.
    std::string change(const StoreRequest& request) {
        Transaction transaction(connection_, scope(Transaction::Scope::writing));
        // The reply comes first: where memory runs out, nothing is committed.
        std::string reply = beginReply(request.schema) + xmlElement(resultElement, okResult);
        if (request.action == StoreAction::write) {
            reply += write(request);
        } else {
            for (const StoreEntry& entry : request.entries) {
                entries().remove(request.schema, entry.id);
            }
        }
        reply += closeTag(text::SCHEMA);
        transaction.commit();
        ++ownChanges_;
        return reply;
    }

    /// Returns the elements with the ids of the entries written.
    std::string write(const StoreRequest& request) {
        // All ids of the request first, so that none given to one entry is that of a later one.
        for (const StoreEntry& entry : request.entries) {
            entries().skipId(entry.id);
        }
        std::string ids;
        for (const StoreEntry& entry : request.entries) {
            const std::string id = entry.id.empty() ? entries().takeNextId() : std::string(entry.id);
            if (id.empty()) {
                throw connection_.error("it has no free id left; give the entry an id");
            }
            entries().put(request.schema, id, entry.body);
            ids += xmlElement(text::UNIQUEID, id);
        }
        return ids;
    }

    /// Returns the prepared statements; fresh ones after a failure.
    EntryTable& entries() {
        if (!table_) {
            table_ = std::make_unique<EntryTable>(connection_.sql());
        }
        return *table_;
    }

    /// Returns the scope for a request: `alone`, or a savepoint in the exclusive work that it belongs to.
    Transaction::Scope scope(Transaction::Scope alone) const {
        return isExclusive_ ? Transaction::Scope::savepoint : alone;
    }

    /// Runs `work` on the database and returns its result. A failure of the database leaves as a StoreError.
    template <class Work>
    auto guarded(const Work& work) -> decltype(work()) {
        try {
            connection_.refuseIfMoved();
            if (isExclusive_ && !connection_.isInTransaction()) {
                throw connection_.error(
                    "an earlier failure has ended the work that this request is part of; start it again");
            }
            return work();
        } catch (const soci::soci_error& failure) {
            table_.reset();
            throw connection_.error(failure);
        } catch (const StoreDamage& damage) {
            table_.reset();
            throw connection_.damage(damage.what());
        } catch (...) {
            table_.reset();
            throw;
        }
    }

    SqliteConnection connection_;
    std::unique_ptr<EntryTable> table_;
    std::uint64_t ownChanges_ = 0;
    bool isExclusive_ = false;
};

}  // namespace

std::unique_ptr<Store> openSqliteStore(const std::string& url, std::chrono::milliseconds timeout) {
    return std::make_unique<SqliteStore>(sqliteFile(url), timeout);
}

}  // namespace calljournal
