# What makes an attack on a released program harder. All of it holds below this folder only: users of the library never
# see it. script/check/hardening looks at the built files.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# A distribution's own flags may name a level of fortification already.
set(released $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
add_compile_options("$<${released}:-fstack-protector-strong;-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
add_link_options($<${released}:LINKER:-z,relro,-z,now>)

# Checks of indices and iterators, for the host's programs; the library's speed matters more, and its tests have them.
add_library(calljournal_checked_containers INTERFACE)
target_compile_definitions(calljournal_checked_containers INTERFACE _GLIBCXX_ASSERTIONS)
