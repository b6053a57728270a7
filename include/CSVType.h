#ifndef CALLJOURNAL_CSVTYPE_H
#define CALLJOURNAL_CSVTYPE_H

/// Outcome of a contacts import. Only CSV_TAMBER and CSV_OUTLOOK mean success. The numbers are part of the interface.
enum CSVType : int {
    CSV_NO_CAPACITY = 0,           ///< Not enough free storage for the file, or more lines than the contact limit.
    CSV_INVALID_DELIMITERS = 1,    ///< The header is one column with the semicolon and with the comma.
    CSV_TOO_MANY_HEADERS = 2,      ///< The header has more than 100 columns.
    CSV_INVALID_HEADERS = 3,       ///< The header is of neither layout.
    CSV_INVALID_DEFAULT_DIAL = 4,  ///< A DefaultDial column is not an integer from 0 to 4.
    CSV_COLUMN_MISMATCH = 5,       ///< The number of columns of a line does not fit the header.
    CSV_FILE_ERROR = 6,            ///< The file cannot be opened or is empty, or an exception ended the import.
    CSV_TAMBER = 7,                ///< Imported: the layout of the phone's manager tool.
    CSV_OUTLOOK = 8                ///< Imported: the layout of an Outlook export.
};

#endif
