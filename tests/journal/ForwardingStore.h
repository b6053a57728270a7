#pragma once

#include "Store.h"

namespace calljournal {

/// Passes everything on to another store, for tests that change or note a part of it.
class ForwardingStore : public Store {
public:
    explicit ForwardingStore(Store& store) : store_(store) {}

    std::string processRequest(const std::string& request) override { return store_.processRequest(request); }
    void exclusively(const std::function<void()>& work) override { store_.exclusively(work); }
    std::uint64_t changeCount() override { return store_.changeCount(); }
    std::vector<FoundEntry> find(const EntryQuery& query) override { return store_.find(query); }
    EntryCount count(std::string_view schema) override { return store_.count(schema); }
    StoreChanges changes(std::uint64_t since) override { return store_.changes(since); }
    std::optional<std::string> setting(std::string_view name) override { return store_.setting(name); }
    void setSetting(std::string_view name, std::string_view value) override { store_.setSetting(name, value); }
    std::vector<IndexFault> checkIndex() override { return store_.checkIndex(); }

private:
    Store& store_;
};

}  // namespace calljournal
