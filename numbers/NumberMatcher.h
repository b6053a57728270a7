#pragma once

#include <string>

namespace calljournal {

/// The region of numbers that are dialled nowhere known.
inline constexpr char noRegion[] = "ZZ";

/// Returns the region of the user's locale, such as "DE" for de_DE.UTF-8; "ZZ", which is none, where it names none.
std::string localeRegion();

/// Returns whether phone numbers are known for the region: an ISO 3166-1 code such as "GB", or "ZZ".
bool isKnownRegion(const std::string& region);

/// Gives numbers of one party the same text, its key, however they were signalled. A number that can be dialled from
/// abroad becomes its E.164 form (ITU-T E.164): in the region GB "+44 20 7946 0123", "0044 20 79460123" and
/// "020 7946 0123" all become "+442079460123". Any other, such as an internal extension, stays itself without its
/// punctuation, so it matches nothing longer. A text with letters or "@", such as a SIP address, is no number and stays
/// itself, scheme and host in lower case: "SIP:Bob@Example.COM" becomes "sip:Bob@example.com". An empty text stays empty.
class NumberMatcher {
public:
    /// Reads national numbers as those of `region`.
    explicit NumberMatcher(std::string region) : region_(std::move(region)) {}

    /// Returns the key of `number`. Each thread remembers keys of one region, up to 262,144: making one takes long.
    std::string operator()(const std::string& number) const;

private:
    std::string region_;
};

}  // namespace calljournal
