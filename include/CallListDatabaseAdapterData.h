#ifndef CALLJOURNAL_CALLLISTDATABASEADAPTERDATA_H
#define CALLJOURNAL_CALLLISTDATABASEADAPTERDATA_H

#include "CallJournalExport.h"

/// The parse tags of the missed call list reader: a number for each element name it may meet. The table of names is
/// filled by CallListDatabaseAdapterHelper::init() and emptied by finit(); nothing is found in between the two.
class CALLJOURNAL_EXPORT CallListDatabaseAdapterData {
public:
    /// The numbers are fixed, gaps included; 36 belongs to no element.
    enum eParseTag : int {
        TAG_ENTRY = 0,
        TAG_ITEM = 1,
        TAG_METHOD = 2,
        TAG_UNIQUEID = 3,
        TAG_CATEGORY = 4,
        TAG_ENTRYID = 5,
        TAG_SURNAME = 6,
        TAG_FIRSTNAME = 7,
        TAG_PICTURE_CLIP = 8,
        TAG_JSGROUPBY = 9,
        TAG_VIEWED = 10,
        TAG_NUMBER = 11,
        TAG_NUMBERTYPE = 12,
        TAG_RESOLVEDNUMBER = 13,
        TAG_CONNECTEDNUMBERPRIORITY = 14,
        TAG_CONNECTEDNUMBER = 15,
        TAG_CONNECTEDNUMBERTYPE = 16,
        TAG_CONNECTEDSURNAME = 17,
        TAG_CONNECTEDFIRSTNAME = 18,
        TAG_ISBLUETOOTHCALL = 19,
        TAG_TIMEDATE = 20,
        TAG_DURATION = 21,
        TAG_COMPLETED_ELSEWHERE = 22,
        TAG_CALLBACKNUMBER = 23,
        TAG_CALLBACKTYPE = 24,
        TAG_CALLBACKSTATE = 25,
        TAG_CALLBACKDEVICEID = 26,
        TAG_TARGETLOG = 27,
        TAG_NUMBERPRESENTATION = 28,
        TAG_NAMEPRESENTATION = 29,
        TAG_TIMEFORMAT = 30,
        TAG_DEFLECTNUMBERPRESENTATION = 31,
        TAG_DEFLECTNUMBER = 32,
        TAG_DEFLECTNUMBERTYPE = 33,
        TAG_DEFLECTNAMEPRESENTATION = 34,
        TAG_DEFLECTNAME = 35,
        TAG_GROUPNAME = 37,
        TAG_GROUPNUMBER = 38,
        TAG_TRANSFERTYPE = 39,
        TAG_PHONEBOOK_UNIQUEID = 40,
        TAG_OFFICE = 41,
        TAG_MOBILE_PHONEBOOK = 42,
        TAG_PRIVATE_PHONEBOOK = 43,
        TAG_EMAIL = 44,
        TAG_CALLGROUP = 45,
        TAG_DEFAULTNUMBER = 46,
        TAG_COMPANY = 47,
        TAG_OFFICE2 = 48,
        TAG_ADDRESS = 49,
        TAG_ADDRESS2 = 50,
        TAG_JOBFUNCTION = 51,
        TAG_VOICEDIAL = 52,
        TAG_PICTURE = 53,
        TAG_EXTERNALID = 54,
        TAG_CONTACTSOURCE = 55,
        TAG_UNKNOWN = 56  ///< Any other element name.
    };

    /// Returns the tag of the element `name` (zero-terminated, compared byte for byte), or TAG_UNKNOWN.
    static eParseTag getTag(const char* name);
};

#endif
