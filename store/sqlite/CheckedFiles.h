#pragma once

namespace calljournal {

/// Returns the name of an SQLite VFS, which it registers at the first call: the system's files with a checksum at the
/// end of each page of a database, made of the page and its number and checked when the page is read. A page that is
/// not as it was written is SQLITE_IOERR_DATA.
///
/// The pages of a database have one where its header reserves pageChecksumSize bytes of each page. They get it where
/// they are written first, in the log mostly, and whoever copies them to the database copies it, too. A database without
/// is read and written as it is; that its pages should have had them, its tables have to say.
///
/// Pages in the write-ahead log are checked by the log's own checksums, and so is the whole log where SQLite would go
/// by it: SQLite takes it to end before the first frame that is not right, as after a power cut, though a later one may
/// show that it went on. Their formats: https://sqlite.org/fileformat2.html
const char* checkedFiles();

/// For sqlite3_file_control: sets the int that it gets to 1 if the pages have checksums, else to 0.
constexpr int areChecksumsThere = 0x43616c6c;

/// The same around a VACUUM that is to give checksums to pages without: the int is the size of a page, or 1 if it
/// succeeded and 0 if not.
constexpr int beginChecksums = areChecksumsThere + 1;
constexpr int endChecksums = areChecksumsThere + 2;

}  // namespace calljournal
