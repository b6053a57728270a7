# Configures small projects that ask for what the installed package is, and for what it is not.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

# Whether find_package with `arguments` goes as `expected` says: "found", or a part of the message that refuses.
function(try arguments expected)
    file(REMOVE_RECURSE ${WORK_DIR})
    file(WRITE ${WORK_DIR}/CMakeLists.txt "cmake_minimum_required(VERSION 3.16)\nproject(try LANGUAGES CXX)\n"
         "find_package(calljournal ${arguments} REQUIRED CONFIG)\nmessage(STATUS \"found\")\n")
    execute_process(COMMAND ${CMAKE_COMMAND} -S ${WORK_DIR} -B ${WORK_DIR}/build -G ${GENERATOR}
                    -DCMAKE_PREFIX_PATH=${STAGE} OUTPUT_VARIABLE said ERROR_VARIABLE said)
    string(REGEX REPLACE "[ \n]+" " " said "${said}")
    if(NOT said MATCHES "${expected}")
        message(FATAL_ERROR "find_package(calljournal ${arguments}) does not say \"${expected}\" but:\n${said}")
    endif()
endfunction()

math(EXPR next "${VERSION_MAJOR} + 1")
try("" "-- found")
try("${VERSION_MAJOR}" "-- found")
try("${VERSION_MAJOR} COMPONENTS host testing" "-- found")
try("${next}" "compatible with requested version .${next}")
try("${VERSION_MAJOR} COMPONENTS nonsense" "has no .nonsense.")
