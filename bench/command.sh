# What a user of the command waits for, from process start to exit. Sourced by script/bench, which has built everything.

# Runs a command `$1` times and prints the median of its milliseconds; `before` may undo what a run has done.
median_ms() {
    local runs=$1 start times=()
    shift
    for ((run = 0; run < runs; ++run)); do
        before
        start=$EPOCHREALTIME
        "$@" >/dev/null
        times+=("$(awk -v from="$start" -v to="$EPOCHREALTIME" 'BEGIN { printf "%.3f", (to - from) * 1000 }')")
    done
    printf '%s\n' "${times[@]}" | sort -g | awk '{ time[NR] = $1 } END { print time[int((NR + 1) / 2)] }'
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

row() { printf '%-58s %10s %s\n' "$@"; }

# $1 what, $2 the figure, $3 the most that it should be.
goal_row() {
    row "$1" "$2" "$(awk -v figure="$2" -v goal="$3" 'BEGIN {
        print "(at most " goal ": " (figure <= goal ? "met" : "not met") ")" }')"
}

measure_command() {
    local build=$1 work memory program entries asking reading listing on_disk in_memory
    program=$build/bin/calljournal
    work=$(mktemp -d -p "$build")
    memory=$(mktemp -d -p /dev/shm)
    calls 10000 >"$work/calls.json"
    unset CALLJOURNAL_LOG CALLJOURNAL_STORE CALLJOURNAL_REGION

    row "# command" "ms" ""
    goal_row "start-up: calljournal --version" "$(median_ms 21 "$program" --version)" 15
    "$program" --store "$work/empty.db" list missed >/dev/null
    goal_row "start-up: list of an empty store" "$(median_ms 21 "$program" --store "$work/empty.db" list missed)" 15

    before() { rm -f "$work"/all.db*; }
    row "record --from FILE, 10000 calls of as many parties" \
        "$(median_ms 3 "$program" --store "$work/all.db" record --from "$work/calls.json")" ""
    before() { :; }
    read -r entries asking reading <<<"$("$build/bin/bench_reply" "$work/all.db")"
    row "asking the store for the reply, $entries entries" "$asking" ""
    row "reading and sorting the list from the reply" "$reading" ""
    for format in json table; do
        listing=$(median_ms 7 "$program" --store "$work/all.db" --format $format list missed)
        row "list missed --format $format, whole process" "$listing" ""
        goal_row "... times the two steps above" \
            "$(awk -v all="$listing" -v asking="$asking" -v reading="$reading" \
                'BEGIN { printf "%.2f", all / (asking + reading) }')" 2
    done

    # The same write on a file system without a disk: what is missing there is the flush.
    on_disk=$(median_ms 15 "$program" --store "$work/one.db" record missed --number +49301234567)
    in_memory=$(median_ms 15 "$program" --store "$memory/one.db" record missed --number +49301234567)
    row "record one call, store on disk" "$on_disk" ""
    row "record one call, store in memory" "$in_memory" ""
    rm -r "$work" "$memory"
}
