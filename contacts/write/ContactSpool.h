#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Contact.h"

namespace calljournal {

/// Where a contact came from.
struct ContactOrigin {
    bool isJoinedAddress = false;  ///< address2 was joined from city, postal code and country.
    std::uint32_t file = 0;        ///< Which of the address books, from 0.
    std::uint64_t record = 0;      ///< The record's number in it.
    std::uint64_t firstLine = 0;
    std::uint64_t lastLine = 0;
};

struct SpooledContact : ContactOrigin {
    Contact contact;
};

/// A file without a name, to which texts are added one behind the other and read again from any place. It goes with the
/// object, and with the process.
class SpoolFile {
public:
    /// So much is kept in memory before it is written: a large address book goes through once.
    static constexpr std::size_t usualMemory = std::size_t{32} << 20;

    /// Throws std::system_error if there is no room for temporary files.
    explicit SpoolFile(std::size_t memory = usualMemory);
    SpoolFile(const SpoolFile&) = delete;
    SpoolFile& operator=(const SpoolFile&) = delete;
    ~SpoolFile();

    /// Adds `bytes` at the end. Throws std::system_error if the disk is full.
    void add(std::string_view bytes);

    /// Returns `size` bytes from `place` on, which were added at once or are part of such. They last until the next
    /// call.
    std::string_view read(std::uint64_t place, std::size_t size);

    std::uint64_t size() const { return written_ + pending_.size(); }

private:
    void flush();

    int descriptor_;
    std::size_t memory_;
    std::uint64_t written_ = 0;
    std::string pending_;  ///< What comes behind that, not yet written.
    std::uint64_t windowStart_ = 0;
    std::string window_;  ///< What was read last.
};

/// The contacts of a conversion on disk, so that memory holds none of them.
class ContactSpool {
public:
    explicit ContactSpool(std::size_t memory = SpoolFile::usualMemory) : file_(memory) {}

    /// Adds a contact and returns its place. No text may be longer than 255 bytes, which is more than a phone stores.
    std::uint64_t add(const SpooledContact& contact) { return add(contact, identityOf(contact.contact)); }

    /// The same for a contact whose identityOf() is there already.
    std::uint64_t add(const ContactOrigin& origin, std::string_view identity);

    /// Reads the contact at a place that add() returned; returns the place behind it.
    std::uint64_t read(std::uint64_t place, SpooledContact& contact);

    /// The place behind the last contact; the first is at 0.
    std::uint64_t end() const { return file_.size(); }

    /// Returns whether the contact at `place` has that identityOf().
    bool isSame(std::uint64_t place, std::string_view identity);

    /// What distinguishes contacts: texts and default number as one text. It lasts until the next call.
    std::string_view identityOf(const Contact& contact);

private:
    SpoolFile file_;
    std::string identity_;
};

/// Finds a contact that was there already. Memory: at most 64 bytes for each contact, in the moment when the table
/// grows; 22 to 43 otherwise.
class IdentityTable {
public:
    explicit IdentityTable(ContactSpool& spool) : spool_(spool) {}

    /// Looks for the contact in the spool and returns whether it is there, and where. If it is not, remembers that it
    /// comes to its end. Where hashes are the same by chance, the texts decide.
    bool find(std::string_view identity, std::uint64_t& place);

private:
    struct Slot {
        std::uint64_t hash;
        std::uint64_t placeBehind;  ///< The place and 1; 0 in a free slot.
    };

    void grow();

    ContactSpool& spool_;
    std::vector<Slot> slots_;
    std::size_t used_ = 0;
};

}  // namespace calljournal
