#include "ImportProof.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <unistd.h>

#include "ContactFields.h"
#include "HostPlatform.h"
#include "ImportContactsCSVParser.h"
#include "StorageSpace.h"

namespace calljournal {

namespace {

constexpr unsigned standardLimit = 100;

/// Makes the machine play a phone while the object lives.
class PlayedPhone {
public:
    PlayedPhone(unsigned limit, const std::string& data) {
        setHardware(limit > standardLimit, 0);
        setDataDirectory(data);
    }
    PlayedPhone(const PlayedPhone&) = delete;
    PlayedPhone& operator=(const PlayedPhone&) = delete;
    ~PlayedPhone() {
        setHardware(false, 0);
        setDataDirectory(std::string());
    }
};

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

}  // namespace

std::string firstDifference(const std::vector<Contact>& written, const std::vector<Contact>& read,
                            const std::function<std::string(std::size_t)>& place) {
    const std::size_t both = std::min(written.size(), read.size());
    for (std::size_t i = 0; i < both; ++i) {
        for (const ContactText& text : contactTexts) {
            const std::string& before = written[i].*text.member;
            const std::string& after = read[i].*text.member;
            if (before != after) {
                return place(i) + ": field " + std::string(text.name) + " was written as " + quoted(before) +
                       " and is read as " + quoted(after);
            }
        }
        if (written[i].defaultDial != read[i].defaultDial) {
            return place(i) + ": field defaultDial was written as " + std::to_string(written[i].defaultDial) +
                   " and is read as " + std::to_string(read[i].defaultDial);
        }
    }
    if (written.size() > both) {
        return place(both) + ": is not read back at all";
    }
    return read.size() > both ? "one more contact is read back than was written" : std::string();
}

std::string ImportProof::prove(const ProofTask& task) const {
    const std::filesystem::path copy = folder_.path() / "contacts.csv";
    // The importer deletes what it has read. Another name is quicker than another file, where there can be one.
    if (::link(task.file.c_str(), copy.c_str()) != 0) {
        std::filesystem::copy_file(task.file, copy);
    }
    const PlayedPhone phone(task.limit, folder_.path());
    const ImportContactsCSVParser import(copy, task.existing);
    if (import.getCSVType() == CSV_NO_CAPACITY && !hasPhoneAvailableMemorySpace(task.file)) {
        throw std::system_error(ENOSPC, std::generic_category(), "temporary file");
    }
    if (import.getCSVType() != CSV_TAMBER) {
        return "the importer refuses the file with outcome " + std::to_string(import.getCSVType());
    }
    return firstDifference(*task.contacts, import.getContacts(), task.place);
}

}  // namespace calljournal
