#ifndef CALLJOURNAL_IMPORTCONTACTSCSVPARSER_H
#define CALLJOURNAL_IMPORTCONTACTSCSVPARSER_H

#include <boost/token_functions.hpp>
#include <boost/tokenizer.hpp>
#include <fstream>
#include <string>
#include <vector>

#include "CSVParserIfc.h"
#include "CSVType.h"
#include "CallJournalExport.h"
#include "Contact.h"
#include "StorageSpace.h"

/// Number of columns of the Tamber layout: 12.
extern CALLJOURNAL_EXPORT const int TAMBER_HEADERS_SIZE;

/// Imports the contacts of one CSV file, once, in its constructor, and deletes the file.
///
///     ImportContactsCSVParser import("/data/contacts.csv", phonebook.size());
///     if (import.getCSVType() == CSV_TAMBER || import.getCSVType() == CSV_OUTLOOK)
///         phonebook.add(import.getContacts());
///
/// Two layouts are known: Tamber (the 12 columns LastName, FirstName, Business1, Business2, Mobile1, Private1,
/// Company1, Address1, Address2, Position, Email1, DefaultDial, in this order) and Outlook (92 columns, taken by
/// position). Columns are separated by semicolons or, if that leaves the header in one, by commas; the backslash
/// escapes. Bad input is no exception but an outcome code; the reason goes to the platform log (module
/// "ImportContactscSVParser", level 2).
///
/// The steps of an import are public, and so is the object's state, on which they work: each can be used and tested
/// alone.
class CALLJOURNAL_EXPORT ImportContactsCSVParser : public CSVParserIfc {
public:
    /// Imports `fileName` into a phonebook that already holds `existingContacts` contacts: header and contacts together
    /// may take it to 101 lines (1001 on the NQ platform).
    ImportContactsCSVParser(const std::string& fileName, unsigned existingContacts);
    ~ImportContactsCSVParser() override;

    std::vector<Contact> getContacts() const override;
    int getCSVType() const override;

    /// Does what the constructor does: parseCSVType, then the file is deleted whatever the outcome. Throws nothing.
    void parseCSVTypeAndEraseFile(const std::string& fileName);

    /// Checks the storage, opens the file and hands each line to headerLineParser or lineContentParser.
    void parseCSVType(const std::string& fileName);

    /// Replaces `tokens` by the columns of `text`, each cut by trimFieldLength. Throws boost::escaped_list_error for a
    /// backslash before anything but n, a double quote, the separator or a backslash.
    void tokenizeLine(const std::string& text);

    /// Replaces each `search` in `text`, left to right without overlap. Does nothing if either is empty.
    void replaceAllInternal(std::string& text, std::string search, std::string replacement);

    /// Recognises the layout from the first line, in `line`.
    void headerLineParser();

    /// Turns a later line, in `line`, into a contact; an Outlook record may take further lines from `file`.
    void lineContentParser();

    /// Returns whether `headers` are the names of the Tamber layout in their order, byte for byte. Fills `columnMap`.
    bool isValidTamberHeader(const std::vector<std::string>& headers);

    /// Returns whether there are 92 `headers`, whatever their names, since they come in the user's language.
    bool isValidOutlookHeader(const std::vector<std::string>& headers);

    /// Returns the longest prefix of `field` that takes at most 249 bytes once XML-escaped. The cut counts bytes and
    /// may split a UTF-8 character.
    std::string trimFieldLength(const std::string& field);

    /// Returns whether the zero-terminated `text` is well-formed UTF-8 (RFC 3629): no overlong forms, no surrogates,
    /// nothing above U+10FFFF. A null pointer is valid.
    bool is_valid_utf8(const char* text) const;

    /// Returns the UTF-8 form of `length` bytes of ISO 8859-1 text. Nothing for a length below 1.
    std::string convertUnicodeANSIToUTF8(unsigned char* data, int length) const;

    /// Sets what does not depend on the file: no default number, source "CSV" (3).
    void initContact(Contact& c);

    /// Fills `c` from `tokens` by the layout found. Returns false, with a line in the log, if there is none.
    bool parseContact(Contact& c);

    /// Returns whether all eleven texts that an import fills are empty.
    bool isEmpty(const Contact& c);

    void parseTamberContactFields(Contact& c);
    void parseOutlookContactFields(Contact& c);

    /// Returns whether this is the TQ2 hardware, which always dials the first business number.
    bool isTQ2() const;

    /// Moves the default number of `c` into business1.
    void setDefaultNumberForTQ2(Contact& c);

    typedef boost::escaped_list_separator<char> Separator;

    std::vector<Contact> contacts;
    std::string emptyText;            ///< What `tokenizer` is bound to before the first line.
    std::vector<int> columnMap;       ///< Tamber layout: the field of each column, -1 for none.
    std::vector<std::string> tokens;  ///< The columns of the current record.
    Separator separator;              ///< Backslash, semicolon or comma, double quote.
    boost::tokenizer<Separator> tokenizer;
    int csvType;         ///< A CSVType.
    bool headerPending;  ///< The first line has not been handled yet.
    unsigned headerCount;
    unsigned lineCount;    ///< Lines read, existing contacts included.
    std::string line;      ///< The current line or joined record.
    std::string nextLine;  ///< The current continuation line.
    std::ifstream file;
};

#endif
