# Completion of tolvanixkit for fish.
set -l commands report explain check
complete -c tolvanixkit -n "not __fish_seen_subcommand_from $commands" -f
complete -c tolvanixkit -n "not __fish_seen_subcommand_from $commands" -a report \
  -d 'Show what result documents say'
complete -c tolvanixkit -n "not __fish_seen_subcommand_from $commands" -a explain \
  -d 'Say what happened in a run'
complete -c tolvanixkit -n "not __fish_seen_subcommand_from $commands" -a check \
  -d 'Find the faults of a package'
complete -c tolvanixkit -n "not __fish_seen_subcommand_from $commands" -l version \
  -d 'Show the version'
complete -c tolvanixkit -l help -d 'Show the help'
complete -c tolvanixkit -n '__fish_seen_subcommand_from report' -l format -x \
  -a 'table html json csv' -d 'Form of the output'
complete -c tolvanixkit -n '__fish_seen_subcommand_from report' -s o -r -F -d 'Write to a file'
complete -c tolvanixkit -n '__fish_seen_subcommand_from check' -l library -r -F \
  -d 'Linux build of the library'
complete -c tolvanixkit -n '__fish_seen_subcommand_from check' -l helper -r -F \
  -d 'Linux build of the helper'
