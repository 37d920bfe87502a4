# Completion of orlop-defaults for fish.
complete -c orlop-defaults -f
complete -c orlop-defaults -n __fish_use_subcommand -a read -d 'Print a value, or all'
complete -c orlop-defaults -n __fish_use_subcommand -a write -d 'Store a value'
complete -c orlop-defaults -n __fish_use_subcommand -a delete -d 'Forget a value'
complete -c orlop-defaults -n __fish_use_subcommand -a list -d 'Print the stored keys'
complete -c orlop-defaults -n '__fish_seen_subcommand_from read write delete' \
    -a '(orlop-defaults list 2>/dev/null | string replace -r \': (bool|int|float|string|array|dict|data|date)( .*)?$\' "")'
complete -c orlop-defaults -n '__fish_seen_subcommand_from write' \
    -a '-bool -int -float -string -array -dict'
