#include "NumberingPlans.h"

#include <dlfcn.h>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace calljournal {

namespace {

/// Returns where the module is: at one place as seen from the program, in a build as where it is installed. The dynamic
/// linker's own word for the program's folder means that of the caller, which is another one where calls are intercepted.
std::string modulePath() {
    std::error_code ignored;  // without the folder, the linker says what it did not find
    return (std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path() / CALLJOURNAL_NUMBERS_MODULE)
        .string();
}

const NumberingPlans& loaded() {
    // The module itself is linked to bind all of its symbols at once; for the libraries below it that takes long.
    void* module = ::dlopen(modulePath().c_str(), RTLD_LAZY | RTLD_LOCAL);
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
