# What makes an attack on a released program harder. All of it holds below this folder only: users of the library never
# see it. script/check/hardening looks at the built files.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Of a function's jumps, only the meant ones: by shadow stacks and landing pads, or signed returns.
include(CheckCXXCompilerFlag)
foreach(flag -fcf-protection -mbranch-protection=standard)
    string(MAKE_C_IDENTIFIER "CALLJOURNAL_HAS${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
        set(jumps ${flag})
    endif()
endforeach()

# A distribution's own flags may name a level of fortification already.
set(released $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
set(fortified -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
add_compile_options("$<${released}:-fstack-protector-strong;-fstack-clash-protection;${jumps};${fortified}>")
add_link_options($<${released}:LINKER:-z,relro,-z,now>)

# Checks of indices and iterators, for the host's programs; the library's speed matters more, and its tests have them.
add_library(calljournal_checked_containers INTERFACE)
target_compile_definitions(calljournal_checked_containers INTERFACE _GLIBCXX_ASSERTIONS)
