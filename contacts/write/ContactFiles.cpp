#include "ContactFiles.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "CSVType.h"
#include "ContactJson.h"
#include "Files.h"
#include "PhoneFile.h"
#include "TemporaryPaths.h"
#include "VCard.h"

namespace calljournal {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t chunkSize = 65536;

std::string because(const std::string& name) {
    return name + ": " + std::generic_category().message(errno);
}

/// What a new file may be read and written by.
mode_t fileMode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

/// The end of a temporary file's name, which makes it unique.
constexpr std::string_view uniqueEnd = ".XXXXXX";

void demandSame(const std::string& difference) {
    if (!difference.empty()) {
        throw ContactFilesError("internal error, nothing was written: " + difference);
    }
}

/// Another name that is as unique and no longer.
std::string furtherName(std::string temporary) {
    temporary[temporary.size() - uniqueEnd.size()] = '~';
    return temporary;
}

}  // namespace

ContactFiles::ContactFiles(ContactFilesOptions options) : options_(std::move(options)), mode_(fileMode()) {
    refuseExisting(options_.path);
}

ContactFiles::~ContactFiles() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
    removeTemporary();
}

/// Removes what has no final name, if it is still there.
void ContactFiles::removeTemporary() {
    for (std::vector<std::string>* files : {&temporary_, &replaced_}) {
        for (const std::string& file : *files) {
            ::unlink(file.c_str());
            forgetTemporary(file);
        }
        files->clear();
    }
}

void ContactFiles::refuseExisting(const std::string& name) const {
    std::error_code ignored;
    // Whatever is there would give way to the new file: a device, too, to one who may do everything.
    const fs::file_status target = fs::status(name, ignored);
    if (fs::exists(target) && !fs::is_regular_file(target)) {
        throw ContactFilesError(name + ": is no file that could be overwritten; name another one");
    }
    if (!options_.overwrite && fs::exists(fs::symlink_status(name, ignored))) {
        throw ContactFilesError(name + ": is there already; --force overwrites it");
    }
}

/// Throws what errno says if a call has failed.
void ContactFiles::demand(bool isDone) const {
    if (!isDone) {
        throw ContactFilesError(because(options_.path));
    }
}

void ContactFiles::open() {
    temporary_.push_back(makeTemporary([this] {
        const fs::path path(options_.path);
        std::string pattern = (path.parent_path() / ('.' + path.filename().string().append(uniqueEnd))).string();
        descriptor_ = ::mkstemp(pattern.data());
        demand(descriptor_ >= 0);
        return pattern;
    }));
    ::fchmod(descriptor_, mode_);
    count_ = 0;
    if (options_.format == ContactFormat::phone && !check_) {
        check_.emplace(options_.limit, options_.existing, options_.place);
    }
    text_ = options_.format == ContactFormat::phone ? phoneFileHeader() : std::string();
}

void ContactFiles::flush() {
    demand(writeAll(descriptor_, text_));
    text_.clear();
}

void ContactFiles::add(const SpooledContact& contact) {
    if (isFull()) {
        close();
    }
    if (descriptor_ < 0) {
        open();
    }
    switch (options_.format) {
        case ContactFormat::phone:
            appendPhoneLine(text_, contact.contact);
            check_->note(contact);
            break;
        case ContactFormat::vCard:
            text_ += toVCard(contact.contact, contact.isJoinedAddress ? CSV_OUTLOOK : CSV_TAMBER);
            break;
        case ContactFormat::json:
            appendContactJson(text_, contact.contact);
            text_ += '\n';
            break;
    }
    ++count_;
    if (text_.size() >= chunkSize) {
        flush();
    }
}

void ContactFiles::close() {
    flush();
    demand(::close(std::exchange(descriptor_, -1)) == 0);
    if (check_) {
        demandSame(check_->check(temporary_.back()));
    }
}

/// Brings the texts to the disk before names promise them. It waits once for all files: for each on its own, a disk
/// takes some milliseconds.
void ContactFiles::putOnDisk() const {
    const int descriptor = ::open(temporary_.front().c_str(), O_RDONLY | O_CLOEXEC);
    const bool isOnDisk = (temporary_.size() == 1 ? ::fsync(descriptor) : ::syncfs(descriptor)) == 0;
    const int reason = errno;
    ::close(descriptor);
    errno = reason;
    demand(isOnDisk);
}

void ContactFiles::finish() {
    if (temporary_.empty()) {
        open();
    }
    if (descriptor_ >= 0) {
        close();
    }
    if (check_) {
        demandSame(check_->finish());
    }
}

std::vector<std::string> ContactFiles::names() const {
    if (temporary_.size() == 1) {
        return {options_.path};
    }
    const fs::path path(options_.path);
    std::vector<std::string> names;
    for (std::size_t i = 1; i <= temporary_.size(); ++i) {
        const std::string name = path.stem().string() + '-' + std::to_string(i) + path.extension().string();
        names.push_back((path.parent_path() / name).string());
    }
    return names;
}

std::vector<std::string> ContactFiles::publish() {
    std::vector<std::string> all = names();
    std::for_each(all.begin(), all.end(), [this](const std::string& name) { refuseExisting(name); });
    putOnDisk();
    rename(all);
    removeTemporary();
    return all;
}

/// Keeps the file that the new one takes the place of, if there is one, under a further name until all have their
/// names. Where a file can have only one name, a copy is kept.
void ContactFiles::keepReplaced(const std::string& name, const std::string& further) {
    std::error_code error;
    if (!fs::exists(fs::symlink_status(name, error))) {
        replaced_.emplace_back();
        return;
    }
    replaced_.push_back(makeTemporary([&] {
        if (::link(name.c_str(), further.c_str()) != 0 && !fs::copy_file(name, further, error)) {
            throw ContactFilesError(name + ": " + error.message());
        }
        return further;
    }));
}

/// At any moment, each name is that of the old file or of the new one.
void ContactFiles::rename(const std::vector<std::string>& names) {
    // The last file is replaced or stays, by itself.
    for (std::size_t i = 0; i + 1 < names.size(); ++i) {
        keepReplaced(names[i], furtherName(temporary_[i]));
    }
    const std::unique_lock<std::mutex> hold = holdTemporaries();
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (::rename(temporary_[i].c_str(), names[i].c_str()) != 0) {
            std::string reason = because(names[i]);
            while (i-- != 0) {
                if (replaced_[i].empty()) {
                    ::unlink(names[i].c_str());
                } else if (::rename(replaced_[i].c_str(), names[i].c_str()) != 0) {
                    reason += "; the old " + names[i] + " is now " + std::exchange(replaced_[i], std::string());
                }
            }
            throw ContactFilesError(reason);
        }
    }
}

}  // namespace calljournal
