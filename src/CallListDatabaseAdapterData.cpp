#include "CallListDatabaseAdapterData.h"

#include "detail/ParseTags.h"

bool calljournal::detail::parseTagsAreOpen = false;

CallListDatabaseAdapterData::eParseTag CallListDatabaseAdapterData::getTag(const char* name) {
    return calljournal::detail::getParseTag(name);
}
