# Fails unless DOCUMENT holds, letter for letter, what stands between the [README] marks of EXAMPLE.
file(READ ${EXAMPLE} example)
file(READ ${DOCUMENT} document)
string(REGEX REPLACE ".*// \\[README\\]\n(.*)// \\[README\\].*" "\\1" quoted "${example}")
string(FIND "${document}" "${quoted}" place)
if(place EQUAL -1)
    message(FATAL_ERROR "${DOCUMENT} does not quote ${EXAMPLE}")
endif()
