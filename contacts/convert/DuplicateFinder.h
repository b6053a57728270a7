#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Contact.h"
#include "ContactSpool.h"
#include "NumberWriter.h"

namespace calljournal {

/// Two contacts that may be one person: they share a number or a mail address, and their names do not speak against it.
struct NearPair {
    std::uint64_t earlier;  ///< Places in the spool.
    std::uint64_t later;
    std::string shared;  ///< The number, ready to dial, or the mail address.
};

/// Finds such contacts among those of a spool, in memory that does not grow with them: what they might share is kept on
/// disk and looked through part by part.
class DuplicateFinder {
public:
    explicit DuplicateFinder(const std::string& region) : dialable_(NumberStyle::dialable, region) {}

    /// Remembers what a contact of the spool might share.
    void add(const Contact& contact, std::uint64_t place);

    /// Finds the pairs; reports each once. `partSize` is how many bytes of memory a part may take.
    void find(ContactSpool& spool, const std::function<void(const NearPair&)>& report,
              std::size_t partSize = std::size_t{64} << 20);

    /// The contact that holds all that both hold, or nothing if a text of one would be lost; `conflict` then names the
    /// field. Of what both say, the words of `one` stay.
    std::optional<Contact> merged(const Contact& one, const Contact& other, std::string_view& conflict) const;

private:
    struct Key {
        std::uint64_t hash;
        std::uint64_t place;
    };
    /// Knows of hashes whether they came more than once, in a fixed amount of memory: of some that came once it says
    /// so, too.
    class Repeated {
    public:
        void note(std::uint64_t hash) {
            const std::size_t place = 2 * (hash % size);
            (isThere_[place] ? isThere_[place + 1] : isThere_[place]) = true;
        }
        bool has(std::uint64_t hash) const { return isThere_[2 * (hash % size) + 1]; }

    private:
        /// What processors keep at hand, and enough for a million contacts.
        static constexpr std::size_t size = std::size_t{1} << 22;

        std::vector<bool> isThere_ = std::vector<bool>(2 * size);  ///< For each hash: once, twice.
    };
    typedef std::function<void(const NearPair&)> Report;

    void note(std::uint64_t hash, std::uint64_t place);
    std::vector<Key> keysOfPart(std::size_t part, std::size_t parts);
    void lookAt(ContactSpool& spool, const Key* begin, const Key* end, const Report& report) const;

    NumberWriter dialable_;
    SpoolFile keys_;
    Repeated repeated_;  ///< Hashes of keys_: nearly all come once and lead nowhere.
};

/// Returns whether two names may be those of one person: one of the parts is there in both and the same but for case, and
/// the other is the same, missing or an initial. Without any names the companies have to be the same.
bool areNamesCompatible(const Contact& one, const Contact& other);

}  // namespace calljournal
