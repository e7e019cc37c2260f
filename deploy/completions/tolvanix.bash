# Completion of tolvanix for bash.
_tolvanix() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
  COMPREPLY=()
  case $previous in
    -w) return ;;
    -n) mapfile -t COMPREPLY < <(compgen -f -X '!*.[iI][nN][fF]' -- "$word") ;;
    -o | -e | -p) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    *)
      # bash takes "=" for a word of its own.
      if [[ $previous == -d || $word == = || $previous == = ]]; then
        mapfile -t COMPREPLY < <(compgen -W '0 1 2 3 4' -- "${word#=}")
        return
      fi
      local options='-i -u -uhid -h -v'
      ((COMP_CWORD > 1)) && options='-o -d= -e -p -n -c -w'
      mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
      [[ ${COMPREPLY[*]} == -d= ]] && compopt -o nospace 2>/dev/null
      ;;
  esac
  return 0
}
complete -o filenames -F _tolvanix tolvanix
