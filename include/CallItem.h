#ifndef CALLJOURNAL_CALLITEM_H
#define CALLJOURNAL_CALLITEM_H

#include <string>

#include "CallJournalExport.h"

namespace calljournal {
namespace detail {
template <class Item>
struct OwnMembers;
}
}  // namespace calljournal

/// What every entry of a call list has: its id and the name of the remote party.
///
/// A plain value: copies are deep, getters return references that live as long as the item. Texts are UTF-8 and stored
/// as given.
class CALLJOURNAL_EXPORT CallItem {
public:
    /// All texts empty.
    CallItem();
    CallItem(const std::string& entryId, const std::string& surname, const std::string& firstname);

    CallItem(const CallItem&) = default;
    CallItem(CallItem&&) = default;
    CallItem& operator=(const CallItem&) = default;
    CallItem& operator=(CallItem&&) = default;
    virtual ~CallItem();

    /// Returns whether entry id, surname and first name are equal byte for byte.
    virtual bool operator==(const CallItem& other) const;

    /// Empties the three texts.
    virtual void reset();

    const std::string& getEntryId() const;
    void setEntryId(const std::string& id);

    const std::string& getSurname() const;
    void setSurname(const std::string& name);

    const std::string& getFirstname() const;
    void setFirstname(const std::string& name);

private:
    friend struct calljournal::detail::OwnMembers<CallItem>;

    std::string entryId_;
    std::string surname_;
    std::string firstname_;
};

#endif
