#include <cstddef>
#include <cstdint>
#include <string_view>

#include "ImportContactsCSVParser.h"
#include "format/ContactColumns.h"

namespace {

/// The first byte that is no character of its own.
constexpr unsigned char firstLead = 0x80;

/// How UTF-8 writes the longer characters of one length.
struct Form {
    unsigned char leadMask;  ///< The bits of the lead byte that give the length ...
    unsigned char leadBits;  ///< ... and their value.
    int followers;
    std::uint32_t lowest;  ///< The code points that need this length; a lower one would be overlong.
    std::uint32_t highest;
};

constexpr Form forms[] = {
    {0xE0, 0xC0, 1, 0x80, 0x7FF},
    {0xF0, 0xE0, 2, 0x800, 0xFFFF},
    {0xF8, 0xF0, 3, 0x10000, 0x10FFFF},
};

const Form* formOf(unsigned char lead) {
    for (const Form& form : forms) {
        if ((lead & form.leadMask) == form.leadBits) {
            return &form;
        }
    }
    return nullptr;
}

bool isSurrogate(std::uint32_t codePoint) {
    return codePoint >= 0xD800 && codePoint <= 0xDFFF;
}

/// Returns the start of the character after the longer one at `text`, a null pointer if that one is malformed. Never
/// reads past the terminating zero, which is no following byte.
const unsigned char* nextCharacter(const unsigned char* text) {
    const Form* form = formOf(*text);
    if (form == nullptr) {
        return nullptr;
    }
    std::uint32_t codePoint = *text & static_cast<unsigned char>(~form->leadMask);
    for (int follower = 0; follower < form->followers; ++follower) {
        ++text;
        if ((*text & 0xC0) != 0x80) {
            return nullptr;
        }
        codePoint = codePoint << 6 | (*text & 0x3F);
    }
    const bool valid = codePoint >= form->lowest && codePoint <= form->highest && !isSurrogate(codePoint);
    return valid ? text + 1 : nullptr;
}

}  // namespace

std::string ImportContactsCSVParser::trimFieldLength(const std::string& field) {
    return field.substr(0, calljournal::format::storedLength(field));
}

bool ImportContactsCSVParser::is_valid_utf8(const char* text) const {
    auto character = reinterpret_cast<const unsigned char*>(text);
    while (character != nullptr && *character != 0) {
        if (*character < firstLead) {
            ++character;
            continue;
        }
        character = nextCharacter(character);
        if (character == nullptr) {
            return false;
        }
    }
    return true;
}

std::string ImportContactsCSVParser::convertUnicodeANSIToUTF8(unsigned char* data, int length) const {
    std::string converted;
    if (length < 1) {
        return converted;
    }
    converted.reserve(4 * static_cast<std::size_t>(length));
    for (int index = 0; index < length; ++index) {
        const unsigned byte = data[index];
        if (byte < firstLead) {
            converted += static_cast<char>(byte);
        } else {
            converted += static_cast<char>(0xC0 | byte >> 6);
            converted += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return converted;
}
