#include "ContactSpool.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <system_error>
#include <unistd.h>

#include "ContactFields.h"

namespace calljournal {

namespace {

constexpr std::size_t pendingSize = 65536;
constexpr std::size_t windowSize = 8192;
constexpr std::size_t smallestTable = 1024;

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

/// What stands in front of a contact's texts.
struct Head {
    std::uint64_t record;
    std::uint64_t firstLine;
    std::uint64_t lastLine;
    std::uint32_t file;
    std::uint32_t identitySize;
    std::uint64_t isJoinedAddress;
};

Head headAt(SpoolFile& file, std::uint64_t place) {
    Head head;
    std::memcpy(&head, file.read(place, sizeof head).data(), sizeof head);
    return head;
}

void appendIdentity(std::string& identity, const Contact& contact) {
    identity += static_cast<char>(contact.defaultDial);
    for (const ContactText& text : contactTexts) {
        const std::string& value = contact.*text.member;
        identity += static_cast<char>(static_cast<unsigned char>(value.size()));
        identity += value;
    }
}

}  // namespace

SpoolFile::SpoolFile() : descriptor_(-1) {
    std::string pattern = (std::filesystem::temp_directory_path() / "calljournal-spool-XXXXXX").string();
    descriptor_ = ::mkstemp(pattern.data());
    if (descriptor_ < 0) {
        fail("temporary file");
    }
    ::unlink(pattern.c_str());
}

SpoolFile::~SpoolFile() {
    ::close(descriptor_);
}

void SpoolFile::add(std::string_view bytes) {
    pending_ += bytes;
    if (pending_.size() >= pendingSize) {
        flush();
    }
}

void SpoolFile::flush() {
    std::string_view rest = pending_;
    while (!rest.empty()) {
        const ssize_t count = ::write(descriptor_, rest.data(), rest.size());
        if (count < 0) {
            fail("temporary file");
        }
        rest.remove_prefix(static_cast<std::size_t>(count));
        written_ += static_cast<std::uint64_t>(count);
    }
    pending_.clear();
}

std::string_view SpoolFile::read(std::uint64_t place, std::size_t size) {
    if (place >= written_) {
        return std::string_view(pending_).substr(static_cast<std::size_t>(place - written_), size);
    }
    if (place < windowStart_ || place + size > windowStart_ + window_.size()) {
        if (place + size > written_) {
            flush();
        }
        window_.resize(std::max(size, windowSize));
        const ssize_t count = ::pread(descriptor_, window_.data(), window_.size(), static_cast<off_t>(place));
        if (count < static_cast<ssize_t>(size)) {
            fail("temporary file");
        }
        window_.resize(static_cast<std::size_t>(count));
        windowStart_ = place;
    }
    return std::string_view(window_).substr(static_cast<std::size_t>(place - windowStart_), size);
}

std::uint64_t ContactSpool::add(const SpooledContact& contact) {
    const std::uint64_t place = file_.size();
    Head head = {
        contact.record, contact.firstLine, contact.lastLine, contact.file, 0, contact.isJoinedAddress ? 1u : 0u};
    buffer_.assign(sizeof head, '\0');
    appendIdentity(buffer_, contact.contact);
    head.identitySize = static_cast<std::uint32_t>(buffer_.size() - sizeof head);
    std::memcpy(buffer_.data(), &head, sizeof head);
    file_.add(buffer_);
    return place;
}

std::uint64_t ContactSpool::read(std::uint64_t place, SpooledContact& contact) {
    const Head head = headAt(file_, place);
    contact.record = head.record;
    contact.firstLine = head.firstLine;
    contact.lastLine = head.lastLine;
    contact.file = head.file;
    contact.isJoinedAddress = head.isJoinedAddress != 0;
    contact.contact = Contact();
    contact.contact.source = static_cast<Contact::eOrderedContactSource>(3);
    std::string_view identity = file_.read(place + sizeof head, head.identitySize);
    contact.contact.defaultDial = identity[0];
    identity.remove_prefix(1);
    for (const ContactText& text : contactTexts) {
        const std::size_t size = static_cast<unsigned char>(identity[0]);
        contact.contact.*text.member = identity.substr(1, size);
        identity.remove_prefix(1 + size);
    }
    return place + sizeof head + head.identitySize;
}

bool ContactSpool::isSame(std::uint64_t place, std::string_view identity) {
    const Head head = headAt(file_, place);
    return head.identitySize == identity.size() && file_.read(place + sizeof head, head.identitySize) == identity;
}

std::string ContactSpool::identityOf(const Contact& contact) {
    std::string identity;
    appendIdentity(identity, contact);
    return identity;
}

bool IdentityTable::find(std::string_view identity, std::uint64_t& place) {
    if (slots_.empty()) {
        return false;
    }
    const std::uint64_t hash = std::hash<std::string_view>()(identity);
    for (std::size_t i = hash % slots_.size(); slots_[i].placeBehind != 0; i = (i + 1) % slots_.size()) {
        if (slots_[i].hash == hash && spool_.isSame(slots_[i].placeBehind - 1, identity)) {
            place = slots_[i].placeBehind - 1;
            return true;
        }
    }
    return false;
}

void IdentityTable::add(std::string_view identity, std::uint64_t place) {
    if (4 * used_ >= 3 * slots_.size()) {
        grow();
    }
    const std::uint64_t hash = std::hash<std::string_view>()(identity);
    slotFor(hash) = {hash, place + 1};
    ++used_;
}

IdentityTable::Slot& IdentityTable::slotFor(std::uint64_t hash) {
    std::size_t i = hash % slots_.size();
    while (slots_[i].placeBehind != 0) {
        i = (i + 1) % slots_.size();
    }
    return slots_[i];
}

void IdentityTable::grow() {
    std::vector<Slot> before(std::max(smallestTable, 2 * slots_.size()));
    before.swap(slots_);
    for (const Slot& slot : before) {
        if (slot.placeBehind != 0) {
            slotFor(slot.hash) = slot;
        }
    }
}

}  // namespace calljournal
