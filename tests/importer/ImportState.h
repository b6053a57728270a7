#pragma once

#include <string>
#include <tuple>
#include <vector>

#include "ClientUtils.h"
#include "ImportFixture.h"

/// What can be seen of an import, of either kind.
template <class Importer>
auto stateOf(const Importer& importer) {
    return std::make_tuple(importer.csvType, describe(importer.contacts), importer.columnMap, importer.tokens,
                           importer.headerPending, importer.headerCount, importer.lineCount, importer.line,
                           importer.nextLine);
}

/// Whether each text is short enough when it is escaped.
inline bool fits(const std::vector<std::string>& tokens) {
    for (const std::string& token : tokens) {
        if (ClientUtils::escapeXMLString(token).size() > 249) {
            return false;
        }
    }
    return true;
}
