#include "Session.h"

#include <filesystem>
#include <ostream>
#include <string>
#include <system_error>

#include "EntryIndex.h"
#include "StoreUrl.h"

namespace calljournal {

namespace {

/// An empty file becomes a store when it is opened.
void refuseMissing(const std::string& file) {
    std::error_code ignored;  // what cannot be looked at cannot be opened either, which says why
    const std::filesystem::file_status status = std::filesystem::status(file, ignored);
    const bool isEmpty = std::filesystem::is_regular_file(status) && std::filesystem::file_size(file, ignored) == 0;
    if (status.type() == std::filesystem::file_type::not_found || isEmpty) {
        throw StoreError("there is no store at " + file + "; record a call or name another with --store");
    }
}

std::unique_ptr<Store> openedStore(const GlobalOptions& options, MissingStore missing) {
    const std::string url = options.store.empty() ? defaultStoreUrl() : options.store;
    try {
        if (missing == MissingStore::isRefused) {
            refuseMissing(storeFile(url));
        }
        return openStore(url, indexEntry);
    } catch (const StoreError& error) {
        throw options.storeVariable.empty() ? error : StoreError(options.storeVariable + ": " + error.what());
    }
}

}  // namespace

Session::Session(const GlobalOptions& options, MissingStore missing, std::ostream& xmlTrace)
    : store_(openedStore(options, missing)), journal_(*store_) {
    if (options.showXml) {
        journal_.setTrace([&xmlTrace](const std::string& request, const std::string& reply) {
            xmlTrace << "> " << request << "\n< " << reply << '\n';
        });
    }
}

}  // namespace calljournal
