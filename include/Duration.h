#ifndef CALLJOURNAL_DURATION_H
#define CALLJOURNAL_DURATION_H

#include <string>

#include "CallJournalExport.h"

/// How long a call lasted; a part of call detail records. A plain value without a virtual destructor.
class CALLJOURNAL_EXPORT Duration {
public:
    /// Returns whether both texts are equal byte for byte: "1:00" and "01:00" differ.
    virtual bool operator==(const Duration& other) const;

    /// Empties the text.
    virtual void reset();

    std::string duration;  ///< For instance "00:02:13". Stored as given; nothing parses it. Empty by default.
};

#endif
