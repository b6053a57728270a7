#include "ImportContactsCSVParser.h"

#include <exception>

#include "ClientUtils.h"
#include "HardwareVersion.h"
#include "Storage.h"
#include "StorageSpace.h"
#include "detail/Log.h"

namespace {

constexpr char module[] = "ImportContactscSVParser";
constexpr char source[] = "ImportContactsCSVParser";

/// Lines that one file may take the phonebook to: the header and 100 contacts, 1000 on the NQ platform.
unsigned lineLimit() {
    return HardwareVersion::is_NQ() ? 1001 : 101;
}

}  // namespace

ImportContactsCSVParser::ImportContactsCSVParser(const std::string& fileName, unsigned existingContacts)
    : separator('\\', ';', '"'),
      tokenizer(emptyText, separator),
      csvType(CSV_FILE_ERROR),
      headerPending(true),
      headerCount(0),
      lineCount(existingContacts) {
    parseCSVTypeAndEraseFile(fileName);
}

ImportContactsCSVParser::~ImportContactsCSVParser() = default;

std::vector<Contact> ImportContactsCSVParser::getContacts() const {
    return contacts;
}

int ImportContactsCSVParser::getCSVType() const {
    return csvType;
}

void ImportContactsCSVParser::parseCSVTypeAndEraseFile(const std::string& fileName) {
    try {
        parseCSVType(fileName);
    } catch (const std::exception&) {
        // What failed was the log, while another failure was written to it.
        csvType = CSV_FILE_ERROR;
    }
    Storage::deleteFile_noEx(fileName);
}

void ImportContactsCSVParser::parseCSVType(const std::string& fileName) try {
    if (!hasPhoneAvailableMemorySpace(fileName)) {
        csvType = CSV_NO_CAPACITY;
        return;
    }
    file.open(fileName);
    if (!file.is_open()) {
        csvType = CSV_FILE_ERROR;
        return;
    }
    headerPending = true;
    const unsigned limit = lineLimit();
    // A last line without a line feed leaves the stream at its end but not failed: it is a line like any other.
    while (std::getline(file, line, '\n')) {
        ++lineCount;
        if (lineCount > limit) {
            CALLJOURNAL_LOG(module, source, 2, "the csv file has more contacts than contact limit or corrupt");
            csvType = CSV_NO_CAPACITY;
            return;
        }
        ClientUtils::handleCRatEnd(line);
        if (headerPending) {
            headerLineParser();
        } else {
            lineContentParser();
        }
    }
    file.close();
} catch (const std::exception& failure) {
    csvType = CSV_FILE_ERROR;
    CALLJOURNAL_LOG(module, source, 2, "can't getCSVType: %s\n", failure.what());
}
