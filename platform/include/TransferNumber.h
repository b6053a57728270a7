#ifndef CALLJOURNAL_TRANSFERNUMBER_H
#define CALLJOURNAL_TRANSFERNUMBER_H

/// Which number of a transferred call a number is. Stored data relies on the numbers.
class TransferNumber {
public:
    enum TransferNumberType : int {
        TRANSFER_SOURCE_NUMBER = 0,
        TRANSFER_DESTINATION_NUMBER = 1,
        TRANSFER_GROUP_NUMBER = 2
    };
};

#endif
