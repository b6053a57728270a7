#include "CallListDatabaseAdapterData.h"

#include "detail/ParseTags.h"

namespace {

// The table itself is constant; being filled or empty is all that changes.
bool isOpen = false;

}  // namespace

void calljournal::detail::openParseTags(bool open) {
    isOpen = open;
}

CallListDatabaseAdapterData::eParseTag CallListDatabaseAdapterData::getTag(const char* name) {
    return isOpen ? calljournal::detail::findParseTag(name) : TAG_UNKNOWN;
}
