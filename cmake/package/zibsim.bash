# Completion of zibsim's commands and options for bash.

_zibsim_options() {
  case $1 in
    '') echo "--help --version" ;;
    run) echo "--help --format --output --junit --jobs --strict" ;;
    inspect) echo "--help --event-type --format" ;;
    serve) echo "--help --port" ;;
    diff) echo "--help" ;;
    record) echo "--help --output --with-texts" ;;
    schema) echo "--help" ;;
  esac
}

_zibsim() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=
  [ "$COMP_CWORD" -gt 1 ] && command=${COMP_WORDS[1]}
  local choices=
  case $command:$before in
    run:--format) choices="timeline jsonl html" ;;
    inspect:--format) choices="text json html" ;;
    inspect:--event-type) choices="notification-clicked notification-delivered" ;;
    :*) choices="run inspect serve diff record schema $(_zibsim_options '')" ;;
    *) [[ $word != -* ]] || choices=$(_zibsim_options "$command") ;;
  esac
  if [ -n "$choices" ]; then
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$word")
  else
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  fi
}
complete -o filenames -F _zibsim zibsim
