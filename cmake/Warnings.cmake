# The warnings that our own targets are built with, linked PRIVATE so that users of the library never see them. A preset
# makes them errors.
add_library(calljournal_warnings INTERFACE)
target_compile_options(calljournal_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
