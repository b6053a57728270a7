#pragma once

#include <string>
#include <vector>

#include "AddressReader.h"

namespace calljournal {

/// All records of an address book.
std::vector<AddressRecord> recordsOf(const std::string& bytes, const ReadingOptions& options = {});

/// The same as a text: for each record a line with its number and lines, one for each value and each problem.
///
///     1 (2-3)
///       given Anna [Vorname]
///       ! 3 [Handy] it has characters that could not be read
///     2 (4-4) a quote is out of place or never closed
std::string read(const std::string& bytes, const ReadingOptions& options = {});

/// The first text of that kind, or an empty one.
std::string firstText(const AddressRecord& record, FieldKind kind);

/// What was found out about the file: "windows-1252 (the frequency of its bytes), ;, Outlook de".
std::string recognised(const std::string& bytes, const ReadingOptions& options = {});

/// Why the file cannot be read, or an empty text.
std::string refusal(const std::string& bytes, const ReadingOptions& options = {});

}  // namespace calljournal
