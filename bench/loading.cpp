// A process that loads what reading a number takes, reads one and ends, for script/bench: what loading takes of a command
// that records a call.

#include "NumberMatcher.h"

int main() {
    return calljournal::NumberMatcher("DE")("030 1234567") == "+49301234567" ? 0 : 1;
}
