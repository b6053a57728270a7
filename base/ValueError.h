#pragma once

#include <stdexcept>

namespace calljournal {

/// A value that a field does not take; `what()` names the value and what is accepted.
class ValueError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace calljournal
