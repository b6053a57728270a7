#pragma once

#include <stdexcept>

namespace calljournal {

/// A store that cannot be opened or used. `what()` is one line for people that names the store, what is wrong with it
/// and what to do: "store /users/ann/journal.db: it is a directory; name a file in it".
class StoreError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace calljournal
