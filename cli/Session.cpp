#include "Session.h"

#include <ostream>

namespace calljournal {

Session::Session(const GlobalOptions& options, std::ostream& xmlTrace)
    : store_(options.store.empty() ? defaultStoreUrl() : options.store),
      journal_(store_),
      numberKey_(options.region.empty() ? localeRegion() : options.region) {
    journal_.setNumberKey(numberKey_);
    journal_.setExclusively([this](const std::function<void()>& work) { store_.exclusively(work); });
    if (options.showXml) {
        journal_.setTrace([&xmlTrace](const std::string& request, const std::string& reply) {
            xmlTrace << "> " << request << "\n< " << reply << '\n';
        });
    }
}

void PrintingObserver::notify(const std::string& message) {
    out_ << message << '\n';
}

}  // namespace calljournal
