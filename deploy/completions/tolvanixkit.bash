# Completion of tolvanixkit for bash.
_tolvanixkit() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} options
  COMPREPLY=()
  case $previous in
    --format)
      mapfile -t COMPREPLY < <(compgen -W 'table html json csv' -- "$word")
      return
      ;;
    -o | --library | --helper)
      mapfile -t COMPREPLY < <(compgen -f -- "$word")
      return
      ;;
  esac
  if ((COMP_CWORD == 1)); then
    mapfile -t COMPREPLY < <(compgen -W 'report explain check --help --version' -- "$word")
    return
  fi
  case ${COMP_WORDS[1]} in
    report) options='--format -o --help' ;;
    check) options='--library --helper --help' ;;
    *) options='--help' ;;
  esac
  if [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
  else
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  fi
}
complete -o filenames -F _tolvanixkit tolvanixkit
