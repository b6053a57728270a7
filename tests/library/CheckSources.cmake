# Compiles the sources of the library, all of them directly in src/, with nothing but the public headers, the platform's
# headers and Boost in reach:
#   - against the platform's headers as they are, in one line with a program and the host's platform; the program runs;
#   - against a platform whose enumerators have other names, since a phone's headers name them as they like.
#   cmake -D SOURCE_DIR=... -D WORK_DIR=... -D COMPILER=... -D OPTIONS=... -D EMULATOR=... -D PROGRAM=... -P CheckSources.cmake
cmake_minimum_required(VERSION 3.25)

set(headers ${SOURCE_DIR}/platform/include)
set(renamed ${WORK_DIR}/renamed-platform)
file(REMOVE_RECURSE ${renamed})
file(COPY ${headers}/ DESTINATION ${renamed})
set(count 0)
foreach(header CallLogEntryEvent Contact JournalServiceObserverIfc NumberType TransferNumber)
    file(READ ${headers}/${header}.h text)
    string(REGEX MATCHALL "[A-Z][A-Z0-9_]+ = [0-9]+" enumerators "${text}")
    foreach(enumerator IN LISTS enumerators)
        string(REGEX REPLACE " = .*" "" name "${enumerator}")
        string(REGEX REPLACE "([^A-Za-z0-9_])${name}([^A-Za-z0-9_])" "\\1PHONE_${name}\\2" text "${text}")
        math(EXPR count "${count} + 1")
    endforeach()
    file(WRITE ${renamed}/${header}.h "${text}")
endforeach()
if(count LESS 30)
    message(FATAL_ERROR "only ${count} enumerators were found to be renamed")
endif()

file(GLOB sources ${SOURCE_DIR}/src/*.cpp)
file(GLOB host ${SOURCE_DIR}/platform/host/*.cpp)
separate_arguments(options UNIX_COMMAND "${OPTIONS}")
execute_process(COMMAND ${COMPILER} ${options} -std=c++17 -I${SOURCE_DIR}/include -I${headers} ${PROGRAM} ${sources} ${host}
                        -o ${WORK_DIR}/plain_program
                WORKING_DIRECTORY ${WORK_DIR} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${EMULATOR} ${WORK_DIR}/plain_program COMMAND_ERROR_IS_FATAL ANY)

set(failed "")
foreach(source IN LISTS sources)
    execute_process(COMMAND ${COMPILER} ${options} -std=c++17 -fsyntax-only -I${SOURCE_DIR}/include -I${renamed} ${source}
                    WORKING_DIRECTORY ${WORK_DIR} RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        list(APPEND failed "${source}")
    endif()
endforeach()
if(failed)
    list(JOIN failed "\n" text)
    message(NOTICE "${text}")
    message(FATAL_ERROR "Sources need more than the public headers and the platform's.")
endif()
