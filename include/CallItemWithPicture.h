#ifndef CALLJOURNAL_CALLITEMWITHPICTURE_H
#define CALLJOURNAL_CALLITEMWITHPICTURE_H

#include <string>

#include "CallItem.h"
#include "CallJournalExport.h"

/// A call list entry as the data access service keeps it: with the service's id and a picture of the party.
class CALLJOURNAL_EXPORT CallItemWithPicture : public CallItem {
public:
    /// All texts empty.
    CallItemWithPicture();

    /// Unique id and picture clip start empty and are set afterwards.
    CallItemWithPicture(const std::string& entryId, const std::string& surname, const std::string& firstname);

    using CallItem::operator==;

    /// Empties all five texts.
    void reset() override;

    /// Returns whether the items are equal as CallItem (through its virtual operator), in unique id and in picture.
    virtual bool operator==(const CallItemWithPicture& other) const;

    const std::string& getUniqueId() const;

    /// Stores `id` as it is. Replacing an id that is already set writes the line "setUniqueId[%s]" to the log (module
    /// "Journal Service", level 4), since entries seldom change theirs; a first id is not worth a line.
    void setUniqueId(const std::string& id);

    /// The reference of the picture, in the platform's own form.
    const std::string& getPictureClip() const;
    void setPictureClip(const std::string& clip);

private:
    friend struct calljournal::detail::OwnMembers<CallItemWithPicture>;

    std::string uniqueId_;
    std::string pictureClip_;
};

#endif
