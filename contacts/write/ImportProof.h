#ifndef CALLJOURNAL_IMPORTPROOF_H
#define CALLJOURNAL_IMPORTPROOF_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "Contact.h"
#include "TemporaryFolder.h"

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

/// Imports copies of files as the phone would, in a folder of its own, and compares contact by contact.
class ImportProof {
public:
    /// Throws std::system_error if there is no room for temporary files.
    ImportProof() : folder_("proof") {}

    /// Returns an empty text if all contacts are the same, else a sentence with the first record and field that differ.
    /// The machine plays a phone of that limit meanwhile and a standard one afterwards. Throws std::system_error if the
    /// folder for temporary files has less room than a phone wants for an import.
    std::string prove(const ProofTask& task) const;

private:
    TemporaryFolder folder_;
};

/// Compares what was to be written with what came back, without any file. Returns as ImportProof does.
std::string firstDifference(const std::vector<Contact>& written, const std::vector<Contact>& read,
                            const std::function<std::string(std::size_t)>& place);

}  // namespace calljournal

#endif
