#include "JoinedParties.h"

#include <algorithm>
#include <map>
#include <utility>

namespace calljournal {

void SharedNumbers::add(std::string id, const std::vector<std::string>& numberKeys) {
    const std::size_t entry = ids_.size();
    ids_.push_back(std::move(id));
    earlier_.push_back(entry);
    for (const std::string& key : numberKeys) {
        const std::size_t other = firstOf(byNumber_.emplace(key, entry).first->second);
        const std::size_t own = firstOf(entry);
        earlier_[std::max(own, other)] = std::min(own, other);
    }
}

std::vector<std::vector<std::string>> SharedNumbers::parties() {
    std::map<std::size_t, std::vector<std::string>> all;
    for (std::size_t entry = 0; entry < ids_.size(); ++entry) {
        if (firstOf(entry) != entry) {
            std::vector<std::string>& ids = all[firstOf(entry)];
            if (ids.empty()) {
                ids.push_back(ids_[firstOf(entry)]);
            }
            ids.push_back(ids_[entry]);
        }
    }
    std::vector<std::vector<std::string>> shared;
    for (auto& [first, ids] : all) {
        shared.push_back(std::move(ids));
    }
    return shared;
}

std::size_t SharedNumbers::firstOf(std::size_t entry) {
    while (earlier_[entry] != entry) {
        entry = earlier_[entry] = earlier_[earlier_[entry]];
    }
    return entry;
}

}  // namespace calljournal
