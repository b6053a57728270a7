#include "CallItem.h"

CallItem::CallItem() = default;

CallItem::CallItem(const std::string& entryId, const std::string& surname, const std::string& firstname)
    : entryId_(entryId), surname_(surname), firstname_(firstname) {}

CallItem::~CallItem() = default;

bool CallItem::operator==(const CallItem& other) const {
    return entryId_ == other.entryId_ && surname_ == other.surname_ && firstname_ == other.firstname_;
}

void CallItem::reset() {
    entryId_.clear();
    surname_.clear();
    firstname_.clear();
}

const std::string& CallItem::getEntryId() const {
    return entryId_;
}

void CallItem::setEntryId(const std::string& id) {
    entryId_ = id;
}

const std::string& CallItem::getSurname() const {
    return surname_;
}

void CallItem::setSurname(const std::string& name) {
    surname_ = name;
}

const std::string& CallItem::getFirstname() const {
    return firstname_;
}

void CallItem::setFirstname(const std::string& name) {
    firstname_ = name;
}
