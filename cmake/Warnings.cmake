# The warnings that our own targets are built with, linked PRIVATE so that users of the library never see them. A preset
# makes them errors. The records have no virtual destructors, as the phone declares them; clang would rather have them.
add_library(calljournal_warnings INTERFACE)
target_compile_options(calljournal_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    $<$<CXX_COMPILER_ID:Clang>:-Wno-delete-non-abstract-non-virtual-dtor>)
