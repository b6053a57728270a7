#include "FindingView.h"

#include "PrintableText.h"

namespace calljournal {

namespace {

constexpr std::size_t textColumns = 60;
constexpr std::size_t idColumns = 40;

}  // namespace

std::string showValue(std::string_view value, ValueUse use) {
    switch (use) {
        case ValueUse::text:
            // What follows a text's first bytes is not seen, however long it is.
            return fitted(printable(value.substr(0, 20 * textColumns)), textColumns);
        case ValueUse::id:
            return fitted(printable(value), idColumns);
        case ValueUse::name:
            break;
    }
    return printable(value);
}

}  // namespace calljournal
