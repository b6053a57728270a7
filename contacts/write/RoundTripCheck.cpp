#include "RoundTripCheck.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "ContactFields.h"
#include "HostPlatform.h"
#include "ImportContactsCSVParser.h"
#include "StorageSpace.h"

namespace calljournal {

namespace {

/// Files that may wait for their check; each has its contacts in memory.
constexpr std::size_t mostFiles = 4;

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

RoundTripCheck::RoundTripCheck(unsigned limit, unsigned existing, Place place)
    : limit_(limit),
      existing_(existing),
      place_(std::move(place)),
      files_(mostFiles),
      file_(files_.toFill()),
      thread_([this] { work(); }) {}

RoundTripCheck::~RoundTripCheck() {
    join();
}

void RoundTripCheck::join() {
    files_.close();
    if (thread_.joinable()) {
        thread_.join();
    }
}

std::string RoundTripCheck::check(const std::string& file) {
    file_->name = file;
    files_.filled();
    file_ = files_.toFill();
    if (file_ == nullptr) {
        return finish();
    }
    file_->contacts.clear();
    return {};
}

std::string RoundTripCheck::finish() {
    join();
    if (failure_) {
        std::rethrow_exception(failure_);
    }
    return difference_;
}

/// What the thread does.
void RoundTripCheck::work() {
    try {
        while (const WrittenFile* const file = difference_.empty() ? files_.toEmpty() : nullptr) {
            difference_ = differenceIn(*file);
            files_.emptied();
        }
    } catch (...) {
        failure_ = std::current_exception();
    }
    files_.close();
}

std::string RoundTripCheck::differenceIn(const WrittenFile& file) const {
    const std::filesystem::path copy = folder_.path() / "contacts.csv";
    // The importer deletes what it has read. Another name is quicker than another file, where there can be one.
    if (::link(file.name.c_str(), copy.c_str()) != 0) {
        std::filesystem::copy_file(file.name, copy);
    }
    const PlayedPhone phone(limit_, folder_.path());
    const ImportContactsCSVParser import(copy, existing_);
    if (import.getCSVType() == CSV_NO_CAPACITY && !hasPhoneAvailableMemorySpace(file.name)) {
        throw std::system_error(ENOSPC, std::generic_category(), "temporary file");
    }
    if (import.getCSVType() != CSV_TAMBER) {
        return "the importer refuses the file with outcome " + std::to_string(import.getCSVType());
    }
    return firstDifference(file.contacts, import.getContacts());
}

std::string RoundTripCheck::firstDifference(const std::vector<SpooledContact>& written,
                                            const std::vector<Contact>& read) const {
    const std::size_t both = std::min(written.size(), read.size());
    for (std::size_t i = 0; i < both; ++i) {
        for (const ContactText& text : contactTexts) {
            const std::string& before = written[i].contact.*text.member;
            const std::string& after = read[i].*text.member;
            if (before != after) {
                return place_(written[i]) + ": field " + std::string(text.name) + " was written as " + quoted(before) +
                       " and is read as " + quoted(after);
            }
        }
        if (written[i].contact.defaultDial != read[i].defaultDial) {
            return place_(written[i]) + ": field defaultDial was written as " +
                   std::to_string(written[i].contact.defaultDial) + " and is read as " +
                   std::to_string(read[i].defaultDial);
        }
    }
    if (written.size() > both) {
        return place_(written[both]) + ": is not read back at all";
    }
    return read.size() > both ? "one more contact is read back than was written" : std::string();
}

}  // namespace calljournal
