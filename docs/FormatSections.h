#ifndef CALLJOURNAL_FORMATSECTIONS_H
#define CALLJOURNAL_FORMATSECTIONS_H

#include <map>
#include <string>

namespace calljournal {

/// The generated parts of format.md by their names. Tables come from the tables of the code, examples from running it.
std::map<std::string, std::string> formatSections();

/// The sections that calljournal(5) shows, as mdoc(7): all but for most of the examples.
std::map<std::string, std::string> manualSections();

/// How a document marks its generated sections: `begin` NAME `beginEnd` ... `end`, with `blank` around what is
/// generated.
struct SectionMarks {
    std::string begin;
    std::string beginEnd;
    std::string end;
    std::string blank;
};

extern const SectionMarks markdownMarks;  ///< `<!-- generated: NAME -->` and `<!-- end -->`, on lines of their own.
extern const SectionMarks manualMarks;    ///< `.\" generated: NAME` and `.\" end`, on lines of their own.

/// Returns `document` with what stands between the marks replaced by the section of that name. Throws
/// std::runtime_error for a name that is unknown, for a missing end, and for a section that the document does not show.
std::string withSections(const std::string& document, const std::map<std::string, std::string>& sections,
                         const SectionMarks& marks = markdownMarks);

}  // namespace calljournal

#endif
