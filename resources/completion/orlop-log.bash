# Completion of orlop-log for bash.
_orlop_log() {
    local word="${COMP_WORDS[COMP_CWORD]}" before="${COMP_WORDS[COMP_CWORD - 1]}" words
    case "$before" in
        --style) words="default json" ;;
        --level) words="default info debug" ;;
        --last) words="30m 1h 1d 7d" ;;
        --predicate) return ;;
        *)
            case "${COMP_WORDS[1]}" in
                show) words="--last --info --debug --style --predicate --help" ;;
                stream) words="--level --style --predicate --help" ;;
            esac
            [ "$COMP_CWORD" -eq 1 ] && words="show stream --help --version"
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -F _orlop_log orlop-log
