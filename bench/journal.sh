# shellcheck shell=bash
# A journal's jobs at growing sizes. Sourced by script/bench, which has built everything.

measure_journal() {
    local build=$1 work
    unset CALLJOURNAL_LOG CALLJOURNAL_STORE CALLJOURNAL_REGION
    work=$(mktemp -d -p "$build")
    "$build/bin/bench_journal" "$build/bin/calljournal" "$build/bin/bench_loading" "$work"
    rm -r "$work"
}
