# Builds, installs and uses the library without the host's part, against the headers of a phone that gives its
# enumerators other names and has more in its headers than the library asks for.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

set(headers ${WORK_DIR}/phone)
set(build ${WORK_DIR}/build)
set(stage ${WORK_DIR}/stage)
file(REMOVE_RECURSE ${WORK_DIR})

file(WRITE ${headers}/PhoneOnly.h "#ifndef PHONEONLY_H\n#define PHONEONLY_H\n#endif\n")
file(GLOB interfaces ${SOURCE_DIR}/platform/include/*.h)
foreach(interface IN LISTS interfaces)
    get_filename_component(name ${interface} NAME)
    file(READ ${interface} text)
    string(REGEX REPLACE "([{,][ \n]*)([A-Z][A-Z0-9_]+ = [0-9])" "\\1PHONE_\\2" text "${text}")
    string(REPLACE "= NO_SOURCE" "= PHONE_NO_SOURCE" text "${text}")
    file(WRITE ${headers}/${name} "${text}")
endforeach()
file(STRINGS ${headers}/NumberType.h renamed REGEX "PHONE_MOBILE")
if(NOT renamed)
    message(FATAL_ERROR "the phone's enumerators were not renamed")
endif()

set(compilers -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER})
run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${build} ${compilers} -DCMAKE_CXX_FLAGS=-O0 -DCMAKE_COMPILE_WARNING_AS_ERROR=ON
    -DCALLJOURNAL_HOST=OFF -DCALLJOURNAL_PLATFORM_INCLUDE=${headers})
run(${CMAKE_COMMAND} --build ${build} --parallel 2)
run(${CMAKE_COMMAND} --install ${build} --prefix ${stage})

# What is installed is the whole list without the host's part and the command.
file(READ ${CMAKE_CURRENT_LIST_DIR}/installed-files.txt whole)
string(REGEX REPLACE "(bin/|share/|include/calljournal/Host|LIBDIR/calljournal/|LIBDIR/[a-z/]*-host)[^\n]*\n" "" alone "${whole}")
file(WRITE ${WORK_DIR}/installed-files-alone.txt "${alone}")
list_files(files ${stage})
string(REGEX REPLACE "share/[^\n]*\n" "" files "${files}")
expect_text("${files}" ${WORK_DIR}/installed-files-alone.txt)
file(SHA256 ${headers}/NumberType.h built)
file(SHA256 ${stage}/include/calljournal/NumberType.h installed)
if(NOT built STREQUAL installed)
    message(FATAL_ERROR "not the phone's headers are installed, but others")
endif()

run(${CMAKE_COMMAND} -D LIBRARY=${stage}/${LIBDIR}/libcalljournal.so -D NM=${NM} -D POINTER_SIZE=${POINTER_SIZE}
    -P ${SOURCE_DIR}/tests/library/CheckSymbols.cmake)
run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/examples/own-platform -B ${WORK_DIR}/test ${compilers}
    -DCMAKE_PREFIX_PATH=${stage})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/test --target journal-test)
run(${WORK_DIR}/test/journal-test)
