#ifndef CALLJOURNAL_ROUNDTRIPCHECK_H
#define CALLJOURNAL_ROUNDTRIPCHECK_H

#include <cstddef>
#include <exception>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "Contact.h"
#include "ContactSpool.h"
#include "ImportProof.h"
#include "RingBuffer.h"

namespace calljournal {

/// Proves files for a phone, one after another, in a thread of its own while the next ones are written. The machine
/// plays that phone meanwhile (see ImportProof); nobody else may play one.
class RoundTripCheck {
public:
    /// Names a contact for a sentence. It is called from the thread.
    typedef std::function<std::string(const ContactOrigin&)> Place;

    /// `limit` is how many contacts the phone holds, `existing` how many it holds already. Throws std::system_error if
    /// there is no room for temporary files, or for a thread.
    RoundTripCheck(unsigned limit, unsigned existing, Place place);
    RoundTripCheck(const RoundTripCheck&) = delete;
    RoundTripCheck& operator=(const RoundTripCheck&) = delete;
    /// Waits for the proofs that were asked for.
    ~RoundTripCheck();

    /// Notes what the file holds that is being written.
    void note(const SpooledContact& contact);

    /// Asks for the proof of the file, which now is whole and holds what was noted. Returns what finish() does if a
    /// file before it is known to be wrong, else an empty text.
    std::string prove(const std::string& file);

    /// Waits for all proofs. Returns an empty text, or the first difference as ImportProof does; throws whatever kept a
    /// proof from being made.
    std::string finish();

private:
    struct WrittenFile {
        std::string name;
        std::vector<Contact> contacts;
        std::vector<ContactOrigin> origins;
    };

    void work();
    bool isAsWritten(const WrittenFile& file);

    const unsigned limit_;
    const unsigned existing_;
    const Place place_;
    const ImportProof proof_;
    RingBuffer<WrittenFile> files_;
    WrittenFile* file_;  ///< The one that is being written.
    // What the thread found out, to be looked at when it is over.
    std::string difference_;
    std::exception_ptr failure_;
    std::thread thread_;
};

}  // namespace calljournal

#endif
