#pragma once

#include <cstddef>
#include <string>
#include <vector>

// Texts of contact files for the tests of the import.

inline const std::string tamberHeader =
    "LastName;FirstName;Business1;Business2;Mobile1;Private1;Company1;Address1;Address2;Position;Email1;DefaultDial\n";

/// A row of the Tamber layout.
inline std::string tamberRow(const std::string& lastName, const std::string& business1, const std::string& dial = "2") {
    return lastName + ";;" + business1 + ";;;;;;;;;" + dial + '\n';
}

/// A header of `count` names: Column1, Column2, ...
inline std::string headerOf(std::size_t count, char separator = ',') {
    std::string header;
    for (std::size_t i = 1; i <= count; ++i) {
        header += (i == 1 ? "" : std::string(1, separator)) + "Column" + std::to_string(i);
    }
    return header + '\n';
}

/// A row of 92 columns with the given texts, by index, and nothing else.
inline std::string outlookRow(const std::vector<std::pair<std::size_t, std::string>>& texts, char separator = ',') {
    std::vector<std::string> columns(92);
    for (const auto& text : texts) {
        columns[text.first] = text.second;
    }
    std::string row = columns[0];
    for (std::size_t i = 1; i < columns.size(); ++i) {
        row += separator + columns[i];
    }
    return row + '\n';
}

inline std::string repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}
