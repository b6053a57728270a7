# shellcheck shell=bash
# Completion of calljournal(1) for bash: the program itself says what the word may become.

_calljournal() {
    local program=${COMP_WORDS[0]/#~\//$HOME/} current=${COMP_WORDS[COMP_CWORD]#=}
    mapfile -t COMPREPLY < <("$program" --complete "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null | cut -f 1)
    if [[ ${COMPREPLY[0]-} == "<file>" ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}

complete -F _calljournal calljournal
