#ifndef CALLJOURNAL_MANTEXT_H
#define CALLJOURNAL_MANTEXT_H

#include <string>

namespace calljournal {

/// Returns generated Markdown as mdoc(7), for a manual page: paragraphs, titles in double stars, code, code blocks, and
/// tables, which become tbl(1) tables that fit into a line of 78 characters. The page itself begins the first
/// paragraph.
std::string manText(const std::string& markdown);

}  // namespace calljournal

#endif
