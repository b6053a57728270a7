# Builds an example that leaves the platform to the host's library, through CMake and through pkg-config, and runs it.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

file(REMOVE_RECURSE ${WORK_DIR})
file(WRITE ${WORK_DIR}/CMakeLists.txt "
cmake_minimum_required(VERSION 3.16)
project(host LANGUAGES CXX)
find_package(calljournal 1 REQUIRED CONFIG COMPONENTS host)
add_executable(by-cmake ${EXAMPLE})
target_link_libraries(by-cmake PRIVATE calljournal::calljournal calljournal::host)
")
run(${CMAKE_COMMAND} -S ${WORK_DIR} -B ${WORK_DIR} -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${CXX}
    "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" -DCMAKE_PREFIX_PATH=${STAGE})
run(${CMAKE_COMMAND} --build ${WORK_DIR})

set(ENV{PKG_CONFIG_PATH} ${STAGE}/${LIBDIR}/pkgconfig)
execute_process(COMMAND ${PKG_CONFIG} --cflags --libs calljournal-host OUTPUT_VARIABLE flags COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${CXX_FLAGS} ${flags}")
run(${CXX} -o ${WORK_DIR}/by-pkg-config ${EXAMPLE} ${flags})
set(ENV{LD_LIBRARY_PATH} ${STAGE}/${LIBDIR})

foreach(program by-cmake by-pkg-config)
    execute_process(COMMAND ${WORK_DIR}/${program} OUTPUT_VARIABLE printed COMMAND_ERROR_IS_FATAL ANY)
    if(NOT printed MATCHES "<Surname>Smith &amp; Co</Surname>.*\n0 missed entries\n$")
        message(FATAL_ERROR "${program} prints:\n${printed}")
    endif()
endforeach()
