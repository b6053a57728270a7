#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "AddressRecord.h"
#include "FieldKind.h"

namespace calljournal {

/// The parts of an address, in the order in which FieldKind has them for each kind of address.
enum class AddressPart : unsigned char { street, street2, street3, city, state, postcode, country, poBox, whole };

/// Returns the part of an address of the kind that workAddress, homeAddress or otherAddress names.
FieldKind addressPart(FieldKind kind, AddressPart part);

/// Gives the telephones of one record their kinds: the second one at work is workPhone2.
class PhonePlaces {
public:
    FieldKind place(FieldKind phone);

private:
    bool hasWork_ = false;
    bool hasHome_ = false;
};

/// Returns `text` as a value has it: without blanks around it, line ends as "\n", other control characters as blanks.
std::string valueText(std::string_view text);

/// Adds a value, unless nothing is left of its text.
void addValue(AddressRecord& record, FieldKind kind, std::string_view text, std::string_view source);

/// Turns a text with characters that could not be read into a problem of the record.
void noteLostCharacters(AddressRecord& record, std::size_t line, std::string_view text, const std::string& source);

}  // namespace calljournal
