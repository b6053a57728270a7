#ifndef CALLJOURNAL_CONTACT_H
#define CALLJOURNAL_CONTACT_H

#include <string>

/// One contact of the phonebook. All texts are UTF-8.
class Contact {
public:
    /// Where a contact came from; the phonebook stores the numbers.
    enum eOrderedContactSource : int { NO_SOURCE = 0, CSV = 3, WSI = 4, LDAP = 7, LOCAL = 8 };

    std::string firstName;
    std::string lastName;
    std::string business1;
    std::string business2;
    std::string mobile1;
    std::string private1;
    std::string email1;
    std::string company1;
    std::string position;
    std::string address1;
    std::string address2;
    std::string pictureClip;
    /// The number that is dialled by default: 0 none, 1 private1, 2 business1, 3 business2, 4 mobile1.
    int defaultDial = 0;
    eOrderedContactSource source = NO_SOURCE;
};

#endif
