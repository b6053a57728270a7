#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace calljournal {

/// One element at the top level of an entry's body. The views point into the body.
struct BodyElement {
    std::string_view name;
    std::string_view text;   ///< Between the tags, as written: no entity resolved, raw `<` and `&` included.
    std::string_view whole;  ///< With its tags.
};

/// Returns the element that `body` begins with, or nothing if it does not begin with a whole one. An element is
/// `<Name>text</Name>` and reaches to the first close tag of its name. Only the call list, `LogList`, reaches to the
/// end of the body: it is the last element, and the texts of its calls are written raw, so they may contain any tag.
std::optional<BodyElement> firstElement(std::string_view body);

/// Appends `body` to `text` with the names of its elements `Picture`, as far as they come before `Viewed`, changed to
/// `PictureClip`. Nothing inside an element is touched, so nothing of the call list.
void appendWithPictureClip(std::string_view body, std::string& text);

/// Appends what a reply to a read request of `schema` has between the tags of an entry: the id, and the body as its
/// reader expects it.
void appendServed(std::string_view schema, std::string_view id, std::string_view body, std::string& text);

}  // namespace calljournal
