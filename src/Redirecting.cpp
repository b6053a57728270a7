#include "Redirecting.h"

Redirecting::Redirecting()
    : deflectNumberType(), deflectNumberPresentation(), deflectNamePresentation(), transferType() {}

bool Redirecting::operator==(const Redirecting& other) const {
    return deflectNumber == other.deflectNumber && deflectName == other.deflectName &&
           deflectNumberType == other.deflectNumberType &&
           deflectNumberPresentation == other.deflectNumberPresentation &&
           deflectNamePresentation == other.deflectNamePresentation && transferType == other.transferType;
}

void Redirecting::reset() {
    *this = Redirecting();
}
