// A program that includes nothing of the library but the importer's header, and works on the importer's members.
#include "ImportContactsCSVParser.h"

int main() {
    if (!hasPhoneAvailableMemorySpace("/nowhere/contacts.csv")) {
        return 0;  // The import would end there.
    }
    ImportContactsCSVParser importer("/nowhere/contacts.csv", 5);
    bool isRight = importer.csvType == CSV_FILE_ERROR && importer.headerPending && importer.lineCount == 5 &&
                   importer.headerCount == 0 && !importer.file.is_open() && importer.nextLine.empty();

    importer.line =
        "LastName;FirstName;Business1;Business2;Mobile1;Private1;Company1;Address1;Address2;Position;"
        "Email1;DefaultDial";
    importer.headerLineParser();
    isRight = isRight && importer.csvType == CSV_TAMBER && importer.columnMap.size() == 12 &&
              importer.tokens.front() == "LastName" && TAMBER_HEADERS_SIZE == 12;

    importer.separator = boost::escaped_list_separator<char>('\\', ',', '"');
    importer.line = "Smith,Ann,0301234,,,,,,,,,2";
    importer.lineContentParser();
    return isRight && importer.contacts.size() == 1 && importer.contacts.front().lastName == "Smith" ? 0 : 1;
}
