# Completion of calljournal(1) for fish: the program itself says what the word may become.

function __calljournal_offers
    set -l words (commandline -opc)
    set -l current (commandline -ct)
    set -l offers ($words[1] --complete $words[2..-1] "$current" 2>/dev/null)
    if test "$offers" = "<file>"
        set -l option (string match -r -- '^--[^=]*=' "$current")
        printf "$option%s\n" (__fish_complete_path (string replace -- "$option" "" "$current"))
    else
        printf "%s\n" $offers
    end
end

complete -c calljournal -f -a "(__calljournal_offers)"
