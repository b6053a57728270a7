// Loaded in front of a program's libraries, ends the program where it would use what is known of numbers or letters.

#include <string_view>
#include <unicode/casemap.h>
#include <unistd.h>

namespace {

[[noreturn]] void end(std::string_view why) {
    static_cast<void>(::write(STDERR_FILENO, why.data(), why.size()) == 0);
    ::_exit(70);
}

}  // namespace

namespace i18n::phonenumbers {

class PhoneNumberUtil {
public:
    static PhoneNumberUtil* GetInstance();
};

PhoneNumberUtil* PhoneNumberUtil::GetInstance() {
    end("numbers are used\n");
}

}  // namespace i18n::phonenumbers

U_NAMESPACE_BEGIN

void CaseMap::utf8Fold(uint32_t, StringPiece, ByteSink&, Edits*, UErrorCode&) {
    end("letters are used\n");
}

U_NAMESPACE_END
