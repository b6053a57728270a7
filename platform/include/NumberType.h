#ifndef CALLJOURNAL_NUMBERTYPE_H
#define CALLJOURNAL_NUMBERTYPE_H

/// The kind of a phone number, shown as an icon beside it. Stored data relies on the numbers.
class NumberType {
public:
    enum NT : int { NO_ICON = 0, PRIVATE = 1, BUSINESS1 = 2, BUSINESS2 = 3, MOBILE = 4 };
};

#endif
