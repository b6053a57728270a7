#include "Session.h"

#include <ostream>

#include "EntryIndex.h"
#include "Region.h"
#include "StoreUrl.h"

namespace calljournal {

Session::Session(const GlobalOptions& options, std::ostream& xmlTrace)
    : store_(openStore(options.store.empty() ? defaultStoreUrl() : options.store, indexEntry)), journal_(*store_) {
    const std::string region = usersRegion(options);
    if (region != journal_.region()) {
        store_->setSetting(regionSetting, region);
    }
    if (options.showXml) {
        journal_.setTrace([&xmlTrace](const std::string& request, const std::string& reply) {
            xmlTrace << "> " << request << "\n< " << reply << '\n';
        });
    }
}

}  // namespace calljournal
