#include "CheckedFiles.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <sqlite3.h>
#include <string_view>

#include "Checksum.h"
#include "WriteAheadLog.h"

namespace calljournal {

namespace {

constexpr int smallestPage = 512;

/// The header of a database says here how many bytes at the end of each page are not SQLite's.
constexpr std::size_t reservedAt = 20;
constexpr std::int64_t databaseHeaderSize = 100;

/// A database or its write-ahead log. The system's own file is behind it in the memory that SQLite provides.
struct CheckedFile : sqlite3_file {
    sqlite3_file* system = nullptr;
    CheckedFile* database = nullptr;  ///< Of a log: the file that its pages are for; else the file itself.
    CheckedFile* log = nullptr;       ///< Of a database: the log, if one is open.

    int checkedSize = 0;           ///< Of a database whose pages have checksums: their size; else 0.
    int writtenSize = 0;           ///< The same of one whose pages get checksums from now on.
    std::unique_ptr<char[]> room;  ///< For a frame of the log.

    /// Of a log: the header that was written last, and where the last write ended.
    std::array<char, log::frameHeaderSize> frameHeader = {};
    sqlite3_int64 writtenEnd = 0;

    /// Of a log: frames whose pages begin here or behind it have no valid checksum until the next commit.
    sqlite3_int64 firstRewritten = INT64_MAX;

    int read(void* buffer, int size, sqlite3_int64 offset) const {
        return system->pMethods->xRead(system, buffer, size, offset);
    }
    int write(const void* buffer, int size, sqlite3_int64 offset) const {
        return system->pMethods->xWrite(system, buffer, size, offset);
    }
};

CheckedFile& checked(sqlite3_file* file) {
    return *static_cast<CheckedFile*>(file);
}

sqlite3_file* systemFile(sqlite3_file* file) {
    return checked(file).system;
}

sqlite3_vfs* systemFiles() {
    return sqlite3_vfs_find(nullptr);
}

bool isPageSize(int size) {
    return size >= smallestPage && (size & (size - 1)) == 0;
}

std::string_view bytesOf(const void* page, int size) {
    return {static_cast<const char*>(page), static_cast<std::size_t>(size)};
}

/// Copies a page to `target` and gives it its checksum there.
void copyWithChecksum(std::string_view page, std::uint64_t number, char* target) {
    const auto sum = pageChecksum(number, page);
    std::copy(sum.begin(), sum.end(), std::copy(page.begin(), page.end() - sum.size(), target));
}

std::uint64_t numberOfPage(sqlite3_int64 offset, int size) {
    return static_cast<std::uint64_t>(offset / size) + 1;
}

/// Makes room for what pages of this size need to get checksums.
void giveChecksums(CheckedFile& database, int size) {
    if (database.writtenSize != size) {
        database.room.reset(new (std::nothrow) char[static_cast<std::size_t>(log::frameHeaderSize + size)]);
        database.writtenSize = size;
    }
}

bool reservesChecksum(const char* firstPage) {
    return static_cast<unsigned char>(firstPage[reservedAt]) == pageChecksumSize;
}

/// Learns from the first page of a database whether the pages have checksums.
void learn(CheckedFile& database, const char* firstPage, int size) {
    if (reservesChecksum(firstPage)) {
        giveChecksums(database, size);
        database.checkedSize = size;
    }
}

/// Reads a page and checks it.
int readPage(CheckedFile& database, char* page, int size, sqlite3_int64 offset) {
    const int code = database.read(page, size, offset);
    if (code == SQLITE_OK && offset == 0) {
        learn(database, page, size);
    }
    if (database.checkedSize == 0 || (code != SQLITE_OK && code != SQLITE_IOERR_SHORT_READ)) {
        return code;
    }
    // SQLite would take what is missing at the end for zeros.
    const bool isRight = code == SQLITE_OK && hasItsChecksum(numberOfPage(offset, size), bytesOf(page, size));
    return isRight ? SQLITE_OK : SQLITE_IOERR_DATA;
}

int readDatabase(sqlite3_file* file, void* buffer, int size, sqlite3_int64 offset) {
    CheckedFile& database = checked(file);
    // The header alone is read to find out whether the page that begins with it has changed.
    if (offset + size <= databaseHeaderSize || (database.checkedSize == 0 && !isPageSize(size))) {
        return database.read(buffer, size, offset);
    }
    if (database.checkedSize == 0 || database.checkedSize == size) {
        return readPage(database, static_cast<char*>(buffer), size, offset);
    }
    // Some versions read a part of a page where that is enough for them, never of two.
    if (!database.room) {
        return SQLITE_IOERR_NOMEM;
    }
    const sqlite3_int64 begin = offset % database.checkedSize;
    const int code = readPage(database, database.room.get(), database.checkedSize, offset - begin);
    if (code == SQLITE_OK) {
        std::memcpy(buffer, database.room.get() + begin, static_cast<std::size_t>(size));
    }
    return code;
}

int writeDatabase(sqlite3_file* file, const void* buffer, int size, sqlite3_int64 offset) {
    CheckedFile& database = checked(file);
    const auto* page = static_cast<const char*>(buffer);
    if (offset == 0 && isPageSize(size)) {
        learn(database, page, size);
    }
    // With a log, pages come from there, with their checksums; it may still have some from before the others had any.
    if (database.log != nullptr || database.checkedSize != size) {
        return database.write(buffer, size, offset);
    }
    if (!database.room) {
        return SQLITE_IOERR_NOMEM;
    }
    copyWithChecksum(bytesOf(page, size), numberOfPage(offset, size), database.room.get());
    return database.write(database.room.get(), size, offset);
}

log::Reader readerOf(const CheckedFile& file) {
    return [&file](void* buffer, std::int64_t size, std::int64_t offset) {
        return file.read(buffer, static_cast<int>(size), offset) == SQLITE_OK;
    };
}

int checkLog(const CheckedFile& log) {
    sqlite3_int64 size = 0;
    const int code = log.system->pMethods->xFileSize(log.system, &size);
    try {
        return code == SQLITE_OK && log::hasLostTransactions(readerOf(log), size) ? SQLITE_IOERR_DATA : code;
    } catch (const std::bad_alloc&) {
        return SQLITE_IOERR_NOMEM;
    }
}

int readLog(sqlite3_file* file, void* buffer, int size, sqlite3_int64 offset) {
    const CheckedFile& log = checked(file);
    const int code = log.read(buffer, size, offset);
    if (code != SQLITE_OK) {
        return code;
    }
    // The header alone is read by the first process that opens the log, to find out where it ends.
    if (offset == 0 && size == log::headerSize) {
        return checkLog(log);
    }
    if (!log::isPage(size, offset) || offset >= log.firstRewritten) {
        return SQLITE_OK;
    }
    const auto* page = static_cast<const char*>(buffer);
    const std::uint32_t number = log::checkedPageNumber(readerOf(log), bytesOf(page, size), offset);
    if (number == 1) {
        learn(*log.database, page, size);
    }
    return number == 0 ? SQLITE_IOERR_DATA : SQLITE_OK;
}

/// Writes a page of a log with its checksum, so that whoever copies it from there to the database, copies that, too.
/// What SQLite computed for the frame's header is of the page without, so the header is written again.
int writeLogPage(CheckedFile& log, const char* page, int size, sqlite3_int64 offset) {
    char* room = log.database->room.get();
    if (room == nullptr) {
        return SQLITE_IOERR_NOMEM;
    }
    const int headerSize = static_cast<int>(log.frameHeader.size());
    const bool isBehindHeader = offset == log.writtenEnd;
    if (!isBehindHeader && log.read(log.frameHeader.data(), headerSize, offset - headerSize) != SQLITE_OK) {
        return SQLITE_IOERR_WRITE;
    }
    const std::uint32_t number = log::pageNumber(log.frameHeader.data());
    if (number == 1 && !reservesChecksum(page)) {
        return SQLITE_IOERR_WRITE;  // there is no room for checksums after all
    }
    copyWithChecksum(bytesOf(page, size), number, std::copy(log.frameHeader.begin(), log.frameHeader.end(), room));
    if (!isBehindHeader) {
        // A page that a transaction changes again after it was written out is written over; the headers from the first
        // such page on follow at the commit.
        log.firstRewritten = std::min(log.firstRewritten, offset);
        return log.write(room + headerSize, size, offset);
    }
    return log::seal(readerOf(log), room, headerSize + size, offset - headerSize)
               ? log.write(room, headerSize + size, offset - headerSize)
               : SQLITE_IOERR_WRITE;
}

int writeLog(sqlite3_file* file, const void* buffer, int size, sqlite3_int64 offset) {
    CheckedFile& log = checked(file);
    const auto* bytes = static_cast<const char*>(buffer);
    const bool isPage = log.database->writtenSize == size && log::isPage(size, offset);
    const int code = isPage ? writeLogPage(log, bytes, size, offset) : log.write(buffer, size, offset);
    if (size == log::frameHeaderSize) {
        std::copy(bytes, bytes + size, log.frameHeader.begin());
        if (offset < log.firstRewritten) {
            log.firstRewritten = INT64_MAX;
        }
    }
    log.writtenEnd = offset + size;
    return code;
}

int closeFile(sqlite3_file* file) {
    sqlite3_file* system = systemFile(file);
    if (checked(file).database->log == file) {
        checked(file).database->log = nullptr;
    }
    const int code = system->pMethods->xClose(system);
    checked(file).~CheckedFile();
    return code;
}

int truncateFile(sqlite3_file* file, sqlite3_int64 size) {
    return systemFile(file)->pMethods->xTruncate(systemFile(file), size);
}

int synchroniseFile(sqlite3_file* file, int flags) {
    return systemFile(file)->pMethods->xSync(systemFile(file), flags);
}

int fileSize(sqlite3_file* file, sqlite3_int64* size) {
    return systemFile(file)->pMethods->xFileSize(systemFile(file), size);
}

int lockFile(sqlite3_file* file, int lock) {
    return systemFile(file)->pMethods->xLock(systemFile(file), lock);
}

int unlockFile(sqlite3_file* file, int lock) {
    return systemFile(file)->pMethods->xUnlock(systemFile(file), lock);
}

int checkReservedLock(sqlite3_file* file, int* isLocked) {
    return systemFile(file)->pMethods->xCheckReservedLock(systemFile(file), isLocked);
}

int controlFile(sqlite3_file* file, int operation, void* argument) {
    CheckedFile& database = checked(file);
    if (operation == areChecksumsThere) {
        *static_cast<int*>(argument) = database.checkedSize != 0 ? 1 : 0;
        return SQLITE_OK;
    }
    if (operation == beginChecksums) {
        giveChecksums(database, *static_cast<int*>(argument));
        return SQLITE_OK;
    }
    if (operation == endChecksums) {
        database.checkedSize = *static_cast<int*>(argument) != 0 ? database.writtenSize : database.checkedSize;
        database.writtenSize = database.checkedSize;
        return SQLITE_OK;
    }
    return systemFile(file)->pMethods->xFileControl(systemFile(file), operation, argument);
}

int sectorSize(sqlite3_file* file) {
    return systemFile(file)->pMethods->xSectorSize(systemFile(file));
}

int deviceCharacteristics(sqlite3_file* file) {
    int characteristics = systemFile(file)->pMethods->xDeviceCharacteristics(systemFile(file));
#ifdef SQLITE_IOCAP_SUBPAGE_READ
    characteristics &= ~SQLITE_IOCAP_SUBPAGE_READ;  // a part of a page cannot be checked
#endif
    // Else a page of the log may be written in two pieces.
    return characteristics | SQLITE_IOCAP_POWERSAFE_OVERWRITE;
}

int mapSharedMemory(sqlite3_file* file, int region, int size, int extend, void volatile** memory) {
    return systemFile(file)->pMethods->xShmMap(systemFile(file), region, size, extend, memory);
}

int lockSharedMemory(sqlite3_file* file, int offset, int count, int flags) {
    constexpr int writeLock = 0;
    CheckedFile* log = checked(file).log;
    if (log != nullptr && offset == writeLock && (flags & SQLITE_SHM_UNLOCK) != 0) {
        log->firstRewritten = INT64_MAX;  // others write from now on
    }
    return systemFile(file)->pMethods->xShmLock(systemFile(file), offset, count, flags);
}

void sharedMemoryBarrier(sqlite3_file* file) {
    systemFile(file)->pMethods->xShmBarrier(systemFile(file));
}

int unmapSharedMemory(sqlite3_file* file, int mustDelete) {
    return systemFile(file)->pMethods->xShmUnmap(systemFile(file), mustDelete);
}

/// What SQLite calls for a file, all but the mapping of its pages into memory, which would not be read before it is used.
/// Version 1 has no shared memory.
template <int (*read)(sqlite3_file*, void*, int, sqlite3_int64),
          int (*write)(sqlite3_file*, const void*, int, sqlite3_int64)>
const sqlite3_io_methods* methods(int version) {
    constexpr auto make = [](int number) {
        return sqlite3_io_methods{number,
                                  closeFile,
                                  read,
                                  write,
                                  truncateFile,
                                  synchroniseFile,
                                  fileSize,
                                  lockFile,
                                  unlockFile,
                                  checkReservedLock,
                                  controlFile,
                                  sectorSize,
                                  deviceCharacteristics,
                                  mapSharedMemory,
                                  lockSharedMemory,
                                  sharedMemoryBarrier,
                                  unmapSharedMemory,
                                  nullptr,
                                  nullptr};
    };
    static constexpr sqlite3_io_methods withoutSharedMemory = make(1);
    static constexpr sqlite3_io_methods withSharedMemory = make(2);
    return version == 1 ? &withoutSharedMemory : &withSharedMemory;
}

int openFile(sqlite3_vfs* /*vfs*/, const char* name, sqlite3_file* file, int flags, int* openFlags) {
    sqlite3_vfs* system = systemFiles();
    const bool isLog = (flags & SQLITE_OPEN_WAL) != 0;
    if (!isLog && (flags & SQLITE_OPEN_MAIN_DB) == 0) {
        return system->xOpen(system, name, file, flags, openFlags);
    }
    auto* opened = new (file) CheckedFile;
    opened->system = reinterpret_cast<sqlite3_file*>(opened + 1);
    opened->database = isLog ? &checked(sqlite3_database_file_object(name)) : opened;
    if (isLog) {
        opened->database->log = opened;
    }
    const int code = system->xOpen(system, name, opened->system, flags, openFlags);
    // SQLite closes a file that has methods, also after a failure.
    const sqlite3_io_methods* found = opened->system->pMethods;
    if (found == nullptr && isLog) {
        opened->database->log = nullptr;
    }
    opened->pMethods = found == nullptr ? nullptr
                       : isLog          ? methods<readLog, writeLog>(found->iVersion)
                                        : methods<readDatabase, writeDatabase>(found->iVersion);
    return code;
}

sqlite3_vfs makeCheckedFiles() {
    sqlite3_vfs files = *systemFiles();
    files.szOsFile += static_cast<int>(sizeof(CheckedFile));
    files.pNext = nullptr;
    files.zName = "calljournal";
    files.xOpen = openFile;
    return files;
}

}  // namespace

const char* checkedFiles() {
    static sqlite3_vfs files = makeCheckedFiles();
    static const int code = sqlite3_vfs_register(&files, 0);
    return code == SQLITE_OK ? files.zName : nullptr;
}

}  // namespace calljournal
