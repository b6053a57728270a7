#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/types.h>
#include <vector>

#include "ContactSpool.h"
#include "RoundTripCheck.h"

namespace calljournal {

/// The files cannot be made or handed over; `what()` says which and why.
class ContactFilesError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

enum class ContactFormat { phone, vCard, json };

/// How contacts are written.
struct ContactFilesOptions {
    ContactFormat format = ContactFormat::phone;
    std::string path;  ///< The file; several become "contacts-1.csv", "contacts-2.csv", ...
    bool overwrite = false;
    unsigned limit = standardLimit;  ///< The contacts that the phone holds; 0: there is no phone, and one file for all.
    unsigned existing = 0;           ///< Those it holds already; below `limit`.
    /// Names a contact for a sentence.
    std::function<std::string(const ContactOrigin&)> place;
};

/// Writes contacts to as many files as the phone's limit asks for. Nothing is under a final name before publish();
/// what is not published goes with the object.
class ContactFiles {
public:
    /// Throws ContactFilesError if a file of that name is there and must not be overwritten, or if it is no file at all.
    explicit ContactFiles(ContactFilesOptions options);
    ContactFiles(const ContactFiles&) = delete;
    ContactFiles& operator=(const ContactFiles&) = delete;
    ~ContactFiles();

    /// Adds a contact. A file that is full is checked while the next ones are written: the phone's own importer reads a
    /// copy. If what is read back differs, which is a fault of this program and never of the input, throws
    /// ContactFilesError, at the latest from finish().
    void add(const SpooledContact& contact);

    /// Ends the last file and waits until all are checked. Without any contact it is a file that holds none.
    void finish();

    /// Gives the files their names, all or none, and returns these. If one cannot have its name, the files that were
    /// there before are there again.
    std::vector<std::string> publish();

    /// The files before they have names.
    const std::vector<std::string>& temporaryFiles() const { return temporary_; }

private:
    bool isFull() const { return options_.limit != 0 && count_ == options_.limit - options_.existing; }
    void open();
    void flush();
    void close();
    void putOnDisk() const;
    void keepReplaced(const std::string& name, const std::string& further);
    void rename(const std::vector<std::string>& names);
    void removeTemporary();
    void refuseExisting(const std::string& name) const;
    void demand(bool isDone) const;
    std::vector<std::string> names() const;

    ContactFilesOptions options_;
    const mode_t mode_;  ///< What the files may be read and written by.
    std::vector<std::string> temporary_;
    std::vector<std::string>
        replaced_;  ///< For each name a further one of the file that was there; empty if there was none.
    std::optional<RoundTripCheck> check_;  ///< Of files for a phone.
    // Of the current file.
    unsigned count_ = 0;
    int descriptor_ = -1;
    std::string text_;
};

}  // namespace calljournal
