#!/bin/sh
# Builds the program through pkg-config alone: compile.sh OUTPUT [static]. PKG_CONFIG_PATH says where calljournal is
# installed, if that is not where pkg-config looks anyway.
# shellcheck disable=SC2046,SC2086 # flags are words
set -e
output=$1
cd "$(dirname "$0")"
libraries=$(pkg-config --libs calljournal)
if [ "$2" = static ]; then
    libraries=$(pkg-config --variable=static_library calljournal)
fi
${CXX:-c++} -std=c++11 $CXXFLAGS $(pkg-config --cflags calljournal) -o "$output" \
    main.cpp MemoryService.cpp Phone*.cpp $libraries
