#include "Session.h"

#include <ostream>

#include "EntryIndex.h"
#include "StoreUrl.h"

namespace calljournal {

Session::Session(const GlobalOptions& options, std::ostream& xmlTrace)
    : store_(openStore(options.store.empty() ? defaultStoreUrl() : options.store, indexEntry)), journal_(*store_) {
    if (options.showXml) {
        journal_.setTrace([&xmlTrace](const std::string& request, const std::string& reply) {
            xmlTrace << "> " << request << "\n< " << reply << '\n';
        });
    }
}

}  // namespace calljournal
