#include "RoundTripCheck.h"

#include <utility>

namespace calljournal {

namespace {

/// Files that may wait for their proof; each has its contacts in memory.
constexpr std::size_t mostFiles = 4;

}  // namespace

RoundTripCheck::RoundTripCheck(unsigned limit, unsigned existing, Place place)
    : limit_(limit),
      existing_(existing),
      place_(std::move(place)),
      files_(mostFiles),
      file_(files_.toFill()),
      thread_([this] { work(); }) {}

RoundTripCheck::~RoundTripCheck() {
    files_.close();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void RoundTripCheck::note(const SpooledContact& contact) {
    file_->contacts.push_back(contact.contact);
    file_->origins.push_back(contact);
}

std::string RoundTripCheck::prove(const std::string& file) {
    file_->name = file;
    files_.filled();
    file_ = files_.toFill();
    if (file_ == nullptr) {
        return finish();
    }
    file_->contacts.clear();
    file_->origins.clear();
    return {};
}

std::string RoundTripCheck::finish() {
    files_.close();
    thread_.join();
    if (failure_) {
        std::rethrow_exception(failure_);
    }
    return difference_;
}

/// What the thread does.
void RoundTripCheck::work() {
    const WrittenFile* file = files_.toEmpty();
    while (file != nullptr && isAsWritten(*file)) {
        files_.emptied();
        file = files_.toEmpty();
    }
    files_.close();
}

bool RoundTripCheck::isAsWritten(const WrittenFile& file) {
    ProofTask task;
    task.file = file.name;
    task.limit = limit_;
    task.existing = existing_;
    task.contacts = &file.contacts;
    task.place = [&](std::size_t index) { return place_(file.origins[index]); };
    try {
        difference_ = proof_.prove(task);
    } catch (...) {
        failure_ = std::current_exception();
        return false;
    }
    return difference_.empty();
}

}  // namespace calljournal
