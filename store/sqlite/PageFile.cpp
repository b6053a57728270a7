#include "PageFile.h"

#include <algorithm>
#include <string_view>

#include "Checksum.h"
#include "WriteAheadLog.h"

namespace calljournal {

namespace {

/// All stores have pages of this size, which is SQLite's own choice.
constexpr std::size_t pageSize = 4096;
constexpr std::size_t usableSize = pageSize - pageChecksumSize;

constexpr std::size_t databaseHeaderSize = 100;
constexpr std::size_t freeListAt = 32;

/// What a page can be.
constexpr unsigned char interiorIndexPage = 2;
constexpr unsigned char leafIndexPage = 10;
constexpr unsigned char leafTablePage = 13;

/// Of the payload of a cell so much is on its page at most; where there is more, at least leastOnPage.
constexpr std::size_t mostOnTablePage = usableSize - 35;
constexpr std::size_t mostOnIndexPage = (usableSize - 12) * 64 / 255 - 23;
constexpr std::size_t leastOnPage = (usableSize - 12) * 32 / 255 - 23;

/// Reads numbers and texts one behind the other; behind the end there are zeros.
class Scanner {
public:
    explicit Scanner(std::string_view bytes) : bytes_(bytes) {}

    std::uint64_t bigEndian(std::size_t size) {
        std::uint64_t number = 0;
        for (const char byte : take(size)) {
            number = number << 8U | static_cast<unsigned char>(byte);
        }
        return number;
    }

    /// SQLite's numbers of one to nine bytes.
    std::uint64_t varint() {
        std::uint64_t number = 0;
        for (int i = 0; i < 8; ++i) {
            const std::uint64_t byte = bigEndian(1);
            number = number << 7U | (byte & 0x7fU);
            if (byte < 0x80) {
                return number;
            }
        }
        return number << 8U | bigEndian(1);
    }

    std::string_view take(std::uint64_t size) {
        const std::string_view taken =
            bytes_.substr(0, static_cast<std::size_t>(std::min<std::uint64_t>(size, bytes_.size())));
        bytes_.remove_prefix(taken.size());
        return taken;
    }

    std::string_view rest() const { return bytes_; }

private:
    std::string_view bytes_;
};

std::uint64_t numberAt(const std::string& bytes, std::size_t at, std::size_t size) {
    return at < bytes.size() ? Scanner(std::string_view(bytes).substr(at)).bigEndian(size) : 0;
}

/// Returns the value that has this type, and takes it out of `body`.
RecordValue takeValue(std::uint64_t type, Scanner& body) {
    constexpr std::size_t sizes[] = {0, 1, 2, 3, 4, 6, 8};
    RecordValue value;
    if (type >= 12) {
        value.isText = true;
        value.text = body.take((type - 12) / 2);
    } else if (type == 9) {
        value.number = 1;
    } else if (type > 0 && type < std::size(sizes)) {
        const std::size_t bits = 8 * sizes[type];
        const std::uint64_t sign = std::uint64_t{1} << (bits - 1);
        const std::uint64_t number = body.bigEndian(sizes[type]);
        value.number = static_cast<std::int64_t>((number ^ sign) - sign);
    }
    return value;
}

std::vector<RecordValue> valuesOf(std::string_view payload) {
    Scanner whole(payload);
    const auto headerSize = static_cast<std::size_t>(std::min<std::uint64_t>(whole.varint(), payload.size()));
    Scanner types(payload.substr(0, headerSize));
    types.varint();
    Scanner body(payload.substr(headerSize));
    std::vector<RecordValue> values;
    while (!types.rest().empty()) {
        values.push_back(takeValue(types.varint(), body));
    }
    return values;
}

std::int64_t sizeOf(std::ifstream& file) {
    file.seekg(0, std::ios::end);
    return file ? static_cast<std::int64_t>(file.tellg()) : 0;
}

bool readAt(std::ifstream& file, void* buffer, std::int64_t size, std::int64_t offset) {
    file.clear();
    file.seekg(offset);
    file.read(static_cast<char*>(buffer), static_cast<std::streamsize>(size));
    return static_cast<bool>(file);
}

}  // namespace

PageFile::PageFile(const std::string& path) : database_(path, std::ios::binary), log_(path + "-wal", std::ios::binary) {
    if (log_.is_open()) {
        const auto read = [this](void* buffer, std::int64_t size, std::int64_t offset) {
            return readAt(log_, buffer, size, offset);
        };
        const std::int64_t size = sizeOf(log_);
        inLog_ = log::committedPages(read, size);
        hasDamagedLog_ = log::hasLostTransactions(read, size);
    }
    const std::int64_t inFile = (sizeOf(database_) + std::int64_t{pageSize} - 1) / std::int64_t{pageSize};
    for (std::int64_t number = 1; number <= inFile; ++number) {
        numbers_.push_back(static_cast<std::uint32_t>(number));
    }
    for (const auto& [number, offset] : inLog_) {
        if (number > inFile) {
            numbers_.push_back(number);
        }
    }
}

std::string PageFile::page(std::uint32_t number) {
    std::string page(pageSize, '\0');
    const auto logged = inLog_.find(number);
    const bool isRead = logged != inLog_.end() ? readAt(log_, page.data(), pageSize, logged->second)
                                               : readAt(database_, page.data(), pageSize,
                                                        (std::int64_t{number} - 1) * std::int64_t{pageSize});
    if (!isRead || !hasItsChecksum(number, page)) {
        page.clear();
    }
    return page;
}

std::set<std::uint32_t> PageFile::freePages(bool& isWhole) {
    std::set<std::uint32_t> free;
    std::string list = page(1);
    isWhole = !list.empty();
    // Each page of the list names the next one first; one that comes twice would never end it.
    auto trunk = static_cast<std::uint32_t>(numberAt(list, freeListAt, 4));
    while (trunk != 0 && free.insert(trunk).second) {
        list = page(trunk);
        isWhole = isWhole && !list.empty();
        const auto count = std::min<std::uint64_t>(numberAt(list, 4, 4), usableSize / 4);
        for (std::size_t i = 0; i < count; ++i) {
            free.insert(static_cast<std::uint32_t>(numberAt(list, 8 + 4 * i, 4)));
        }
        trunk = static_cast<std::uint32_t>(numberAt(list, 0, 4));
    }
    return free;
}

/// Returns the payload of `size` bytes that begins at `at` of a page, where at most `mostHere` of it are; empty if the
/// rest of it is on a page that is not whole.
std::string PageFile::payload(const std::string& page, std::size_t at, std::uint64_t size, std::size_t mostHere) {
    if (size > std::uint64_t{numbers_.size()} * usableSize) {
        return {};
    }
    const auto whole = static_cast<std::size_t>(size);
    const std::size_t here = leastOnPage + (whole - leastOnPage) % (usableSize - 4);
    const std::size_t sizeHere = whole <= mostHere ? whole : here <= mostHere ? here : leastOnPage;
    if (at + sizeHere > usableSize) {
        return {};
    }
    std::string payload = page.substr(at, sizeHere);
    std::uint64_t next = payload.size() < whole ? numberAt(page, at + sizeHere, 4) : 0;
    while (payload.size() < whole) {
        const std::string overflow = this->page(static_cast<std::uint32_t>(next));
        if (overflow.empty()) {
            return {};
        }
        payload.append(overflow, 4, std::min(whole - payload.size(), usableSize - 4));
        next = numberAt(overflow, 0, 4);
    }
    return payload;
}

std::vector<Record> PageFile::records(std::uint32_t number, int& broken) {
    std::vector<Record> records;
    const std::string page = this->page(number);
    const std::size_t begin = number == 1 ? databaseHeaderSize : 0;
    const auto kind = static_cast<unsigned char>(numberAt(page, begin, 1));
    const bool isTable = kind == leafTablePage;
    if (!isTable && kind != leafIndexPage && kind != interiorIndexPage) {
        return records;
    }
    const std::size_t cellsAt = begin + (kind == interiorIndexPage ? 12 : 8);
    const std::uint64_t count = std::min<std::uint64_t>(numberAt(page, begin + 3, 2), (usableSize - cellsAt) / 2);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at =
            static_cast<std::size_t>(numberAt(page, cellsAt + 2 * i, 2)) + (kind == interiorIndexPage ? 4U : 0U);
        Scanner cell(std::string_view(page).substr(std::min(at, page.size())));
        const std::uint64_t size = cell.varint();
        Record record;
        record.isOfTable = isTable;
        record.rowId = isTable ? static_cast<std::int64_t>(cell.varint()) : 0;
        const std::string payload =
            this->payload(page, page.size() - cell.rest().size(), size, isTable ? mostOnTablePage : mostOnIndexPage);
        if (payload.empty()) {
            ++broken;
            continue;
        }
        record.values = valuesOf(payload);
        records.push_back(std::move(record));
    }
    return records;
}

}  // namespace calljournal
