# shellcheck shell=bash
# What a user of the command waits for, from process start to exit. Sourced by script/bench, which has built everything.

# Runs a command `$1` times and prints the least and the median of its milliseconds; `before` may undo what a run has
# done. The least is what the work takes; what else the machine does only adds to it.
times_of() {
    local runs=$1 start times=()
    shift
    for ((run = 0; run < runs; ++run)); do
        before
        start=$EPOCHREALTIME
        "$@" >/dev/null
        times+=("$(awk -v from="$start" -v to="$EPOCHREALTIME" 'BEGIN { printf "%.3f", (to - from) * 1000 }')")
    done
    printf '%s\n' "${times[@]}" | sort -g | awk '{ time[NR] = $1 } END { print time[1], time[int((NR + 1) / 2)] }'
}
before() { :; }

# Prints `$1` missed calls of as many parties, one JSON object a line.
calls() {
    awk -v count="$1" 'BEGIN {
        for (i = 0; i < count; ++i) {
            printf "{\"Kind\": \"missed\", \"Surname\": \"Mustermann\", \"Firstname\": \"Katharina\", "
            printf "\"Number\": \"+4930%07d\", \"NumberType\": \"BUSINESS1\", ", 1000000 + i
            printf "\"TimeDate\": \"2024-%02d-%02d %02d:%02d:00\"}\n", i % 12 + 1, i % 28 + 1, i % 24, i % 60
        }
    }'
}

# $1 what, $2 least and median, $3 the most that the least should be, if there is a goal.
row() {
    local least median verdict=""
    read -r least median <<<"$2"
    if [ -n "${3:-}" ]; then
        verdict=$(awk -v figure="$least" -v goal="$3" 'BEGIN {
            print "at most " goal ": " (figure <= goal ? "met" : "not met") }')
    fi
    printf '%-58s %10s %10s  %s\n' "$1" "$least" "$median" "$verdict"
}

measure_command() {
    local build=$1 work memory program entries asking reading steps listing
    program=$build/bin/calljournal
    work=$(mktemp -d -p "$build")
    memory=$(mktemp -d -p /dev/shm)
    calls 10000 >"$work/calls.json"
    unset CALLJOURNAL_LOG CALLJOURNAL_STORE CALLJOURNAL_REGION

    printf '%-58s %10s %10s  %s\n' "# from process start to exit, milliseconds" least median goal
    row "start-up: calljournal --version" "$(times_of 21 "$program" --version)" 15
    "$program" --store "$work/empty.db" list missed >/dev/null
    row "start-up: list of an empty store" "$(times_of 21 "$program" --store "$work/empty.db" list missed)" 15

    before() { rm -f "$work"/all.db*; }
    row "record --from FILE, 10000 calls of as many parties" \
        "$(times_of 5 "$program" --store "$work/all.db" record --from "$work/calls.json")"
    before() { :; }
    # The round in which both together took the least.
    read -r entries asking reading <<<"$(for _ in {1..9}; do "$build/bin/bench_reply" "$work/all.db"; done |
        awk '{ print $2 + $3, $0 }' | sort -g | awk 'NR == 1 { print $2, $3, $4 }')"
    row "in a process: the store's reply of $entries entries" "$asking -"
    row "in a process: reading and sorting the list from it" "$reading -"
    steps=$(times_of 9 "$build/bin/bench_reply" "$work/all.db")
    row "a process of these two steps and no more" "$steps"
    for format in table json; do
        listing=$(times_of 9 "$program" --store "$work/all.db" --format $format list missed)
        row "list missed --format $format" "$listing"
        row "... times that process" "$(awk '{ printf "%.2f %.2f", $1 / $3, $2 / $4 }' <<<"$listing $steps")" 2
    done

    # The same write on a file system without a disk: what is missing there is the flush.
    row "record one call, store on disk" \
        "$(times_of 15 "$program" --store "$work/one.db" record missed --number +49301234567)"
    row "record one call, store in memory" \
        "$(times_of 15 "$program" --store "$memory/one.db" record missed --number +49301234567)"
    row "list of that store, nothing written" "$(times_of 15 "$program" --store "$work/one.db" list missed)"
    rm -r "$work" "$memory"
}
