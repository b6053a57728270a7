// A program with macros of its own: those that curses.h defines, and the include guards of headers that have the names of
// the library's and of the platform's (own_guards.h, made by the build).
#include "own_guards.h"

#define TRUE 1
#define FALSE 0

#include "all_headers.h"

#if TRUE != 1 || FALSE != 0
#error "the program's macros have lost their values"
#endif

int main() {
    CallInfo call;
    Duration duration;
    duration.duration = "00:00:41";
    const std::string body = CallListDatabaseAdapterHelper::createXMLField("Viewed", TRUE == 1);
#undef TRUE
#undef FALSE
    const bool areTexts = CallListDatabaseAdapterHelper::TRUE == std::string("True") &&
                          CallListDatabaseAdapterHelper::FALSE == std::string("False");
    return areTexts && body == "<Viewed>True</Viewed>" && call == CallInfo() && !duration.duration.empty() ? 0 : 1;
}
