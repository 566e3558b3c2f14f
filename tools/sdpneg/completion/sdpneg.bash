# bash completion for sdpneg. The program itself knows what may come next.

_sdpneg() {
  local current=${COMP_WORDS[COMP_CWORD]} words
  local -a before=("${COMP_WORDS[@]:1:COMP_CWORD-1}")
  if [[ $current == "=" ]]; then # bash takes "--option=value" apart at the equals sign
    before+=("=")
    current=
  fi
  words=$("$1" --complete "${before[@]}" 2>/dev/null) || return 0
  if [[ $'\n'$words$'\n' == *$'\n<file>\n'* ]]; then
    words=${words/<file>/}
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current"; compgen -f -- "$current")
  else
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  fi
}

complete -F _sdpneg sdpneg
