#include "CallItemWithPicture.h"

#include "detail/Log.h"

CallItemWithPicture::CallItemWithPicture() = default;

CallItemWithPicture::CallItemWithPicture(const std::string& entryId, const std::string& surname,
                                         const std::string& firstname)
    : CallItem(entryId, surname, firstname) {}

void CallItemWithPicture::reset() {
    CallItem::reset();
    uniqueId_.clear();
    pictureClip_.clear();
}

bool CallItemWithPicture::operator==(const CallItemWithPicture& other) const {
    // Through the virtual operator, so that an override further down takes part.
    return operator==(static_cast<const CallItem&>(other)) && uniqueId_ == other.uniqueId_ &&
           pictureClip_ == other.pictureClip_;
}

const std::string& CallItemWithPicture::getUniqueId() const {
    return uniqueId_;
}

void CallItemWithPicture::setUniqueId(const std::string& id) {
    if (!uniqueId_.empty()) {
        CALLJOURNAL_LOG("Journal Service", "CallItemWithPicture", 4, "setUniqueId[%s]", id.c_str());
    }
    uniqueId_ = id;
}

const std::string& CallItemWithPicture::getPictureClip() const {
    return pictureClip_;
}

void CallItemWithPicture::setPictureClip(const std::string& clip) {
    pictureClip_ = clip;
}
