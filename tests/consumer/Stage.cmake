# Installs the build into a folder and moves it, since an installed tree may be anywhere; then compares what is there
# with the list.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

set(WORK_DIR ${STAGE}.work)
file(REMOVE_RECURSE ${STAGE} ${WORK_DIR})
foreach(component runtime development command)
    run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/before --component ${component})
endforeach()
file(RENAME ${WORK_DIR}/before ${STAGE})

# Pages of the manual and the like are the packages' business; examples are what the source tree has.
list_files(files ${STAGE})
string(REGEX REPLACE "share/(man|bash-completion|doc|fish|zsh)[^\n]*\n" "" files "${files}")
foreach(folder contacts own-platform)
    file(GLOB examples RELATIVE ${EXAMPLES}/${folder} ${EXAMPLES}/${folder}/*)
    foreach(example IN LISTS examples)
        string(FIND "${files}" "share/calljournal/examples/${folder}/${example}\n" place)
        if(place EQUAL -1)
            message(FATAL_ERROR "the example ${folder}/${example} is not installed")
        endif()
        string(REPLACE "share/calljournal/examples/${folder}/${example}\n" "" files "${files}")
    endforeach()
endforeach()
expect_text("${files}" ${LIST})
