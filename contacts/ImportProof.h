#ifndef CALLJOURNAL_IMPORTPROOF_H
#define CALLJOURNAL_IMPORTPROOF_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "Contact.h"

namespace calljournal {

/// What a file has to show before anybody gets it.
struct ProofTask {
    std::string file;                                ///< The file; it stays.
    unsigned limit = 100;                            ///< The contacts that the phone holds: 100 or 1000.
    unsigned existing = 0;                           ///< Those it holds already.
    const std::vector<Contact>* contacts = nullptr;  ///< What was written, in order.
    /// Names a contact for a sentence: "record 7 (lines 9 to 11)".
    std::function<std::string(std::size_t)> place;
};

/// Imports a copy of the file as the phone would, from a folder of its own, and compares contact by contact. Returns an
/// empty text if all are the same, else a sentence with the first record and field that differ. The machine plays a phone
/// of that limit meanwhile and a standard one afterwards.
std::string provePhoneFile(const ProofTask& task);

/// Compares what was to be written with what came back, without any file. Returns as provePhoneFile does.
std::string firstDifference(const std::vector<Contact>& written, const std::vector<Contact>& read,
                            const std::function<std::string(std::size_t)>& place);

}  // namespace calljournal

#endif
