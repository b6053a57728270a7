#ifndef CALLJOURNAL_CLIENTUTILS_H
#define CALLJOURNAL_CLIENTUTILS_H

#include <string>

/// Text helpers of the platform. Blanks are space, tab, line feed, carriage return, vertical tab and form feed.
namespace ClientUtils {

/// Returns `text` with `&`, `<`, `>`, `"` and `'` written as the five predefined entities of XML 1.0 (section 4.6).
std::string escapeXMLString(const std::string& text);

/// Undoes escapeXMLString in one pass (`&amp;lt;` becomes `&lt;`) and leaves anything else as it is. On every platform
/// a text without `&` comes back unchanged: for such a text the library's decoders of whole bodies skip the call. Its
/// getXMLValue2 for a text makes it for every text, and its list reader for every surname and first name.
std::string unescapeXMLString(const std::string& text);

/// Returns `text`, of the same length, with every byte that XML 1.0 forbids (control characters other than tab, line
/// feed and carriage return) replaced by an apostrophe.
std::string fixSpecialXMLCharactersToQuote(const std::string& text);

/// Returns `text` without the blanks at both ends.
std::string trim(const std::string& text);

/// Returns whether `text` holds nothing but the digits 0 to 9; true for an empty text.
bool isAllDigits(const std::string& text);

/// Returns the decimal number at the start of `text`: blanks are skipped, one sign is taken, digits follow up to the
/// first other byte. 0 without digits; saturates at the limits of int; never throws.
int stoi(const std::string& text);

/// Drops one carriage return at the end of `line`, if there is one.
void handleCRatEnd(std::string& line);

}  // namespace ClientUtils

#endif
