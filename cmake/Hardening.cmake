# What makes an attack on a released program harder, linked PRIVATE so that users of the library never see it.
# script/check-hardening looks at the built files.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

set(released $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)

add_library(calljournal_hardening INTERFACE)
# A distribution's own flags may name a level of fortification already.
target_compile_options(calljournal_hardening INTERFACE
    $<${released}:-fstack-protector-strong;-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>)
target_link_options(calljournal_hardening INTERFACE $<${released}:LINKER:-z,relro,-z,now>)

# Checks of indices and iterators, for the host's programs; the library's speed matters more, and its tests have them.
add_library(calljournal_checked_containers INTERFACE)
target_compile_definitions(calljournal_checked_containers INTERFACE _GLIBCXX_ASSERTIONS)
