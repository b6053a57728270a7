# The installed command finds its libraries and its example files beside it, in a tree that was moved.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
run(${STAGE}/bin/calljournal --store ${WORK_DIR}/journal.db record --from ${STAGE}/share/calljournal/examples/calls.json)
execute_process(COMMAND ${STAGE}/bin/calljournal --store ${WORK_DIR}/journal.db list missed OUTPUT_VARIABLE listed
                COMMAND_ERROR_IS_FATAL ANY)
if(NOT listed MATCHES "0800")
    message(FATAL_ERROR "no calls in the list:\n${listed}")
endif()
