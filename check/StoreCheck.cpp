#include "StoreCheck.h"

namespace calljournal {

std::vector<Finding> checkIndex(Store& store) {
    std::vector<Finding> findings;
    for (const IndexFault& fault : store.checkIndex()) {
        findings.push_back(fault.schema.empty() ? Finding{FindingKind::damagedFile, {}, {fault.what}}
                           : fault.id.empty()
                               ? Finding{FindingKind::wrongIndex, {}, {fault.schema, fault.what}}
                               : Finding{FindingKind::wrongKeys, {}, {fault.schema, fault.id, fault.what}});
    }
    return findings;
}

}  // namespace calljournal
