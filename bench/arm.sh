# shellcheck shell=bash
# The library's jobs on this machine and on 32-bit ARM, where programs run under emulation: as ratios to the rules written
# down word for word, since times mean nothing there. Sourced by script/bench.

# Builds the program for 32-bit ARM as $1.
build_arm_ratios() {
    local program=$1 folder
    folder=$(dirname "$program")/arm
    if [ -x "$program" ] && [ -z "$(find src include platform bench -newer "$program" -name '*.*')" ]; then
        return
    fi
    mkdir -p "$folder/include"
    # Boost's headers are the same everywhere; those of the C library beside them are not.
    ln -sfn /usr/include/boost "$folder/include/boost"
    # shellcheck disable=SC2016 # for the inner shell to expand
    printf '%s\n' src/*.cpp platform/host/*.cpp bench/{Data,Events,WordForWord,ratios}.cpp |
        xargs -P "$(nproc)" -I{} sh -c 'arm-linux-gnueabihf-g++ -Wno-psabi -std=c++17 -O2 -DNDEBUG -Iinclude \
            -Iplatform/include -Iplatform/host -Isrc -Isrc/format -Ibench -isystem "$1/include" -c "$2" -o "$1/$(basename "$2" .cpp).o"' sh "$folder" {}
    arm-linux-gnueabihf-g++ "$folder"/*.o -o "$program"
}

measure_ratios() {
    local build=$1 scratch=$1/ratios.csv
    build_arm_ratios "$build/bench_ratios_arm"
    "$build/bin/bench_ratios" "$scratch" >"$build/ratios-own.txt"
    qemu-arm-static -L /usr/arm-linux-gnueabihf "$build/bench_ratios_arm" "$scratch" >"$build/ratios-arm.txt"
    printf '%-28s %12s %18s\n' "# times the library's time" "$(uname -m)" "32-bit ARM (qemu)"
    paste -d'|' "$build/ratios-own.txt" "$build/ratios-arm.txt" |
        awk -F'|' '{ name = substr($1, 1, 28); split(substr($1, 29), own, " "); split(substr($2, 29), arm, " ")
                     printf "%-28s %12s %18s\n", name, own[1], arm[1] }'
}
