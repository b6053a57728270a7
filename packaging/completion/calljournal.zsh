#compdef calljournal
# Completion of calljournal(1) for zsh: the program itself says what the word may become.

local -a offers
offers=("${(@f)$(${(Q)words[1]/#\~\//$HOME/} --complete "${(@Q)words[2,CURRENT]}" 2>/dev/null)}")
offers=("${(@)offers/$'\t'/:}")
if [[ $offers[1] == "<file>" ]]; then
    [[ $PREFIX == --*=* ]] && compset -P "*="
    _files
elif [[ -n $offers[1] ]]; then
    _describe calljournal offers
fi
