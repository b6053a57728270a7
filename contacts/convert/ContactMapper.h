#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "AddressRecord.h"
#include "Contact.h"
#include "NumberWriter.h"

namespace calljournal {

/// A field of the contact and what it was taken from.
struct TakenField {
    std::string_view field;   ///< The member's name: "business1".
    std::string_view source;  ///< What the file calls it.
};

/// Something that the contact does not have as the file had it.
struct Remark {
    enum Kind {
        changed,  ///< The contact has it in another form.
        leftOut,  ///< The contact does not have it.
        doubtful  ///< The contact has it as it came, but it cannot be right.
    };
    Kind kind;
    std::string_view source;  ///< What the file calls it.
    std::string reason;       ///< "was cut to 249 bytes", "the contact has no place for it"
};

/// A contact and how it came to be. The views are those of the record.
struct MappedContact {
    Contact contact;
    bool isJoinedAddress = false;  ///< address2 was joined from city, postal code and country.
    std::vector<TakenField> taken;
    std::vector<Remark> remarks;
    std::vector<bool> isUsed;  ///< For each value of the record: whether the contact was made with it.
};

/// Chooses from a record of an address book what a contact has room for, with the importer's own priorities: the
/// business phone before the primary one, the mobile phone before the one in the car; city, postal code and country
/// joined by colons. Where a number's place stays empty that way, numbers that would be lost fill it.
class ContactMapper {
public:
    ContactMapper(NumberStyle style, const std::string& region) : numbers_(style, region) {}

    /// Fills `mapped` from `record`, whatever was in it. The contact may come out empty.
    void map(const AddressRecord& record, MappedContact& mapped) const;

private:
    NumberWriter numbers_;
};

}  // namespace calljournal
