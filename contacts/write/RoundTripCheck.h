#pragma once

#include <exception>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "Contact.h"
#include "ContactSpool.h"
#include "RingBuffer.h"
#include "TemporaryFolder.h"

namespace calljournal {

/// How many contacts a phone holds, unless it is an NQ.
constexpr unsigned standardLimit = 100;

/// Checks files for a phone, one after another, in a thread of its own while the next ones are written: imports a copy
/// of each as the phone would and compares contact by contact. The machine plays a phone of that limit during an import
/// and a standard one afterwards; nobody else may play one.
class RoundTripCheck {
public:
    /// Names a contact for a sentence: "record 7 (lines 9 to 11)". It is called from the thread.
    typedef std::function<std::string(const ContactOrigin&)> Place;

    /// `limit` is how many contacts the phone holds, 100 or 1000; `existing` is how many it holds already. Throws
    /// std::system_error if there is no room for temporary files, or for a thread.
    RoundTripCheck(unsigned limit, unsigned existing, Place place);
    RoundTripCheck(const RoundTripCheck&) = delete;
    RoundTripCheck& operator=(const RoundTripCheck&) = delete;
    /// Waits for the checks that were asked for.
    ~RoundTripCheck();

    /// Notes what the file holds that is being written.
    void note(const SpooledContact& contact) { file_->contacts.push_back(contact); }

    /// Asks for the check of the file, which now is whole and holds what was noted; it stays. Returns what finish() does
    /// if a file before it is known to be wrong, else an empty text.
    std::string check(const std::string& file);

    /// Waits for all checks. Returns an empty text if all contacts are read as they were written, else a sentence with
    /// the first record and field that differ. Throws whatever kept a check from being made: std::system_error if the
    /// folder for temporary files has less room than a phone wants for an import. May be called again.
    std::string finish();

private:
    struct WrittenFile {
        std::string name;
        std::vector<SpooledContact> contacts;
    };

    void work();
    void join();
    std::string differenceIn(const WrittenFile& file) const;
    std::string firstDifference(const std::vector<SpooledContact>& written, const std::vector<Contact>& read) const;

    const unsigned limit_;
    const unsigned existing_;
    const Place place_;
    const TemporaryFolder folder_;
    RingBuffer<WrittenFile> files_;
    WrittenFile* file_;  ///< The one that is being written.
    // What the thread found out, to be looked at when it is over.
    std::string difference_;
    std::exception_ptr failure_;
    std::thread thread_;
};

}  // namespace calljournal
