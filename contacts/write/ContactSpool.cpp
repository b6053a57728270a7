#include "ContactSpool.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <system_error>
#include <unistd.h>

#include "ContactFields.h"
#include "Files.h"
#include "TemporaryPaths.h"

namespace calljournal {

namespace {

constexpr std::size_t windowSize = 65536;

/// How much is read at once where places jump to and fro.
constexpr std::size_t stepSize = 512;
constexpr std::size_t smallestTable = 1024;

/// Throws what errno says if a call has failed.
void demand(bool isDone) {
    if (!isDone) {
        throw std::system_error(errno, std::generic_category(), "temporary file");
    }
}

/// What is in front of a contact's texts.
struct Head {
    ContactOrigin origin;
    std::uint64_t identitySize;
};

Head headAt(SpoolFile& file, std::uint64_t place) {
    Head head;
    std::memcpy(&head, file.read(place, sizeof head).data(), sizeof head);
    return head;
}

}  // namespace

SpoolFile::SpoolFile(std::size_t memory) : descriptor_(-1), memory_(memory) {
    const std::unique_lock<std::mutex> hold = holdTemporaries();
    std::string pattern = temporaryPattern("spool");
    descriptor_ = ::mkstemp(pattern.data());
    if (descriptor_ < 0) {
        throwNoTemporary(pattern);
    }
    ::unlink(pattern.c_str());
}

SpoolFile::~SpoolFile() {
    ::close(descriptor_);
}

void SpoolFile::add(std::string_view bytes) {
    if (pending_.size() + bytes.size() > memory_) {
        flush();
    }
    // What is never used costs nothing; a text that grows bit by bit is copied again and again.
    pending_.reserve(memory_);
    pending_ += bytes;
}

void SpoolFile::flush() {
    demand(writeAll(descriptor_, pending_));
    written_ += pending_.size();
    pending_.clear();
}

std::string_view SpoolFile::read(std::uint64_t place, std::size_t size) {
    if (place >= written_) {
        return std::string_view(pending_).substr(static_cast<std::size_t>(place - written_), size);
    }
    const std::uint64_t windowEnd = windowStart_ + window_.size();
    if (place < windowStart_ || place + size > windowEnd) {
        const bool goesOn = place >= windowStart_ && place <= windowEnd;
        window_.resize(std::max(size, goesOn ? windowSize : stepSize));
        const ssize_t count = ::pread(descriptor_, window_.data(), window_.size(), static_cast<off_t>(place));
        demand(count >= static_cast<ssize_t>(size));
        window_.resize(static_cast<std::size_t>(count));
        windowStart_ = place;
    }
    return std::string_view(window_).substr(static_cast<std::size_t>(place - windowStart_), size);
}

std::uint64_t ContactSpool::add(const ContactOrigin& origin, std::string_view identity) {
    const std::uint64_t place = file_.size();
    const Head head = {origin, identity.size()};
    file_.add({reinterpret_cast<const char*>(&head), sizeof head});
    file_.add(identity);
    return place;
}

std::uint64_t ContactSpool::read(std::uint64_t place, SpooledContact& contact) {
    const Head head = headAt(file_, place);
    static_cast<ContactOrigin&>(contact) = head.origin;
    contact.contact.source = Contact::CSV;
    std::string_view identity = file_.read(place + sizeof head, head.identitySize);
    contact.contact.defaultDial = static_cast<unsigned char>(identity[0]);
    identity.remove_prefix(1);
    for (const ContactText& text : contactTexts) {
        const std::size_t size = static_cast<unsigned char>(identity[0]);
        (contact.contact.*text.member).assign(identity, 1, size);
        identity.remove_prefix(1 + size);
    }
    return place + sizeof head + head.identitySize;
}

bool ContactSpool::isSame(std::uint64_t place, std::string_view identity) {
    const Head head = headAt(file_, place);
    return head.identitySize == identity.size() && file_.read(place + sizeof head, head.identitySize) == identity;
}

std::string_view ContactSpool::identityOf(const Contact& contact) {
    identity_.assign(1, static_cast<char>(contact.defaultDial));
    for (const ContactText& text : contactTexts) {
        const std::string& value = contact.*text.member;
        identity_ += static_cast<char>(static_cast<unsigned char>(value.size()));
        identity_ += value;
    }
    return identity_;
}

bool IdentityTable::find(std::string_view identity, std::uint64_t& place) {
    if (4 * used_ >= 3 * slots_.size()) {
        grow();
    }
    const std::uint64_t hash = std::hash<std::string_view>()(identity);
    std::size_t i = hash % slots_.size();
    for (; slots_[i].placeBehind != 0; i = (i + 1) % slots_.size()) {
        if (slots_[i].hash == hash && spool_.isSame(slots_[i].placeBehind - 1, identity)) {
            place = slots_[i].placeBehind - 1;
            return true;
        }
    }
    slots_[i] = {hash, spool_.end() + 1};
    ++used_;
    return false;
}

void IdentityTable::grow() {
    std::vector<Slot> before(std::max(smallestTable, 2 * slots_.size()));
    before.swap(slots_);
    for (const Slot& slot : before) {
        if (slot.placeBehind != 0) {
            std::size_t i = slot.hash % slots_.size();
            while (slots_[i].placeBehind != 0) {
                i = (i + 1) % slots_.size();
            }
            slots_[i] = slot;
        }
    }
}

}  // namespace calljournal
