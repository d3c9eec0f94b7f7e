# Completions of brivane-ctl for bash.

# Names have blanks, so displays are completed by their numbers alone.
_brivane_ctl_displays() {
  brivane-ctl list 2>/dev/null | sed -n 's/^\[\([0-9]*\)\].*/\1/p'
}

_brivane_ctl() {
  local word=${COMP_WORDS[COMP_CWORD]} words=
  case $COMP_CWORD:${COMP_WORDS[1]} in
    1:*) words="up down set get list menu --help --version" ;;
    2:get | 3:set) words=$(_brivane_ctl_displays) ;;
    2:list) words=--json ;;
    2:menu) words=--start ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}

complete -F _brivane_ctl brivane-ctl
