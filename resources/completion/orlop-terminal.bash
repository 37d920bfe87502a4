# Completion of orlop-terminal for bash.
_orlop_terminal_identities() {
    orlop-terminal list 2>/dev/null | cut -d' ' -f1
}
_orlop_terminal() {
    local word="${COMP_WORDS[COMP_CWORD]}" before="${COMP_WORDS[COMP_CWORD - 1]}" words=""
    COMPREPLY=()
    case "${COMP_WORDS[1]}" in
        add)
            case "$before" in
                --folder) mapfile -t COMPREPLY < <(compgen -d -- "$word"); return ;;
                --name | --referrer | --user-agent | --cookies | --post | --checksum) return ;;
            esac
            words="--folder --name --paused --referrer --user-agent --cookies --post --checksum --help"
            ;;
        list) words="--json --help" ;;
        pause | resume | remove) words="--all --help $(_orlop_terminal_identities)" ;;
        wait) words="--help" ;;
        *)
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
            words="- -- --help --version"
            [ "$COMP_CWORD" -eq 1 ] && words+=" add list pause resume remove wait"
            ;;
    esac
    mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -o filenames -F _orlop_terminal orlop-terminal
