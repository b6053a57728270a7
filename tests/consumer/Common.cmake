# What the scripts beside this one share.
cmake_minimum_required(VERSION 3.25)

# Runs a command quietly; shows all that it said if it fails.
function(run)
    execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE said ERROR_VARIABLE said RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "${said}\n${status}: ${command}")
    endif()
endfunction()

# Fails with the difference unless `actual` is what the file `expected_file` holds, byte for byte.
function(expect_text actual expected_file)
    file(READ ${expected_file} expected)
    if(NOT actual STREQUAL expected)
        get_filename_component(name ${expected_file} NAME)
        file(WRITE ${WORK_DIR}/actual-${name} "${actual}")
        execute_process(COMMAND diff -u ${expected_file} ${WORK_DIR}/actual-${name})
        message(FATAL_ERROR "not what ${expected_file} says")
    endif()
endfunction()

# Sets `result` to the sorted lines that name the files of the folder, with the machine's library folder as "LIBDIR" and
# the version as "VERSION".
function(list_files result folder)
    file(GLOB_RECURSE files RELATIVE ${folder} LIST_DIRECTORIES false ${folder}/*)
    set(text "")
    foreach(file IN LISTS files)
        string(REGEX REPLACE "^${LIBDIR}/" "LIBDIR/" file "${file}")
        string(REPLACE "${VERSION}" "VERSION" file "${file}")
        # One file for each build type.
        string(REGEX REPLACE "targets-[a-z]+\\.cmake$" "targets-TYPE.cmake" file "${file}")
        string(APPEND text "${file}\n")
    endforeach()
    set(${result} "${text}" PARENT_SCOPE)
endfunction()

# Whether the program asks the loader for our libraries: `wanted` is a list of names, none by default.
function(expect_needed program)
    execute_process(COMMAND ${READELF} -d ${program} OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "\\[libcalljournal[^]]*\\]" needed "${dynamic}")
    set(wanted "")
    foreach(name IN LISTS ARGN)
        list(APPEND wanted "[${name}]")
    endforeach()
    if(NOT "${needed}" STREQUAL "${wanted}")
        message(FATAL_ERROR "${program} needs \"${needed}\", not \"${wanted}\"")
    endif()
endfunction()
