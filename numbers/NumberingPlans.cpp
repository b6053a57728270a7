#include "NumberingPlans.h"

#include <dlfcn.h>
#include <stdexcept>

namespace calljournal {

namespace {

/// The module is at one place as seen from the program, in a build as where it is installed.
constexpr char modulePath[] = "$ORIGIN/" CALLJOURNAL_NUMBERS_MODULE;

const NumberingPlans& loaded() {
    // The module itself is linked to bind all of its symbols at once; for the libraries below it that takes long.
    void* module = ::dlopen(modulePath, RTLD_LAZY | RTLD_LOCAL);
    const void* plans = module == nullptr ? nullptr : ::dlsym(module, "calljournalNumberingPlans");
    if (plans == nullptr) {
        throw std::runtime_error(std::string("what is known of phone numbers cannot be loaded; install the program "
                                             "again: ") +
                                 ::dlerror());
    }
    return *static_cast<const NumberingPlans*>(plans);
}

}  // namespace

const NumberingPlans& numberingPlans() {
    static const NumberingPlans& plans = loaded();
    return plans;
}

}  // namespace calljournal
