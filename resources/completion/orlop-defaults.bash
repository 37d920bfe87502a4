# Completion of orlop-defaults for bash.
_orlop_defaults() {
    local word="${COMP_WORDS[COMP_CWORD]}" verb="${COMP_WORDS[1]}" at=1 words=""
    COMPREPLY=()
    if [ "$verb" = -suite ]; then
        verb="${COMP_WORDS[3]}" at=3
    fi
    case $((COMP_CWORD - at)) in
        0) words="read write delete list"; [ "$at" -eq 1 ] && words+=" -suite" ;;
        1)
            # Keys have blanks in them.
            if [ "$verb" = read ] || [ "$verb" = write ] || [ "$verb" = delete ]; then
                local IFS=$'\n' key
                for key in $(orlop-defaults list 2>/dev/null | sed -E 's/: (bool|int|float|string|array|dict|data|date)( .*)?$//'); do
                    [[ "$key" == "$word"* ]] && COMPREPLY+=("$(printf %q "$key")")
                done
            fi
            return
            ;;
        2) [ "$verb" = write ] && words="-bool -int -float -string -array -dict" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -F _orlop_defaults orlop-defaults
