# Completion of orlop-log for fish.
set -l shows '__fish_seen_subcommand_from show'
set -l streams '__fish_seen_subcommand_from stream'
complete -c orlop-log -f
complete -c orlop-log -n __fish_use_subcommand -a show -d 'What was logged'
complete -c orlop-log -n __fish_use_subcommand -a stream -d 'What is logged from now on'
complete -c orlop-log -n __fish_use_subcommand -l version -d 'Show the version'
complete -c orlop-log -l help -d 'Show how it is used'
complete -c orlop-log -n "$shows" -l last -x -a '30m 1h 1d 7d' -d 'How far back'
complete -c orlop-log -n "$shows" -l info -d 'Informative lines, too'
complete -c orlop-log -n "$shows" -l debug -d 'Debug lines, too'
complete -c orlop-log -n "$streams" -l level -x -a 'default info debug' -d 'Which lines'
complete -c orlop-log -n "$shows; or $streams" -l style -x -a 'default json' -d 'How entries are written'
complete -c orlop-log -n "$shows; or $streams" -l predicate -x -d 'Only entries of which this is true'
