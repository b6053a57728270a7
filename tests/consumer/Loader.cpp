#include <dlfcn.h>
#include <iostream>
#include <string>

/// Loads the library while it runs, as a phone's journal service does, and calls it once: "Loader LIBRARY". The
/// platform is the program's own.
int main(int, char** arguments) {
    void* const library = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::cerr << dlerror() << '\n';
        return 1;
    }
    using Function = bool (*)(const std::string&);
    const auto hasSpace = reinterpret_cast<Function>(dlsym(library, "hasPhoneAvailableMemorySpace"));
    std::cout << (hasSpace("no such file") ? "loaded, has space\n" : "loaded, has no space\n");
    return dlclose(library);
}
