#ifndef CALLJOURNAL_STOREURL_H
#define CALLJOURNAL_STOREURL_H

#include <string>

namespace calljournal {

/// Returns the URL of the user's own store: `$XDG_DATA_HOME/calljournal/journal.db`, or the same below
/// `$HOME/.local/share` if that variable is unset or not absolute. Throws StoreError if there is no `$HOME` either.
std::string defaultStoreUrl();

/// Returns the absolute path of the file that `url` names: `sqlite3://PATH` or a plain path, every byte taken as it is.
/// Throws StoreError for another scheme, an empty path or one with a zero byte.
std::string storeFile(const std::string& url);

}  // namespace calljournal

#endif
