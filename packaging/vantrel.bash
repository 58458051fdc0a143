# Completion for vantrel-inspect, vantrel-sample-site and vantrel-day. The programs themselves are asked
# what they take.

# The words in the first column of a help text: commands (or those of a command), and options.
_vantrel_words() {
  "$@" --help 2>/dev/null |
    awk '/^ +[a-z-]/ { sub(/^ */, ""); sub(/[ =].*/, ""); gsub(/,/, " "); print }'
}

_vantrel() {
  local word=${COMP_WORDS[COMP_CWORD]} program=${COMP_WORDS[0]} site=() command='' i
  COMPREPLY=()
  case ${COMP_WORDS[COMP_CWORD - 1]} in
    --site) mapfile -t COMPREPLY < <(compgen -d -- "$word") && return ;;
  esac
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      --site) site=(--site "${COMP_WORDS[++i]}") ;;
      -*) ;;
      *) command=${command:-${COMP_WORDS[i]}} ;;
    esac
  done
  case $program:$command:$word in
    *inspect:*:-*) mapfile -t COMPREPLY < <(compgen -W "$(_vantrel_words "$program" $command)" -- "$word") ;;
    *inspect::*) mapfile -t COMPREPLY < <(compgen -W "$(_vantrel_words "$program")" -- "$word") ;;
    *inspect:trade:* | *inspect:why:*)
      # Names of trades as the list has them: letters, digits, dots and hyphens.
      mapfile -t COMPREPLY < <(compgen -W "$("$program" "${site[@]}" trades 2>/dev/null |
        grep -oE ' [a-z0-9][a-z0-9-]*(\.[a-z0-9-]+)+ ')" -- "$word") ;;
    *inspect:*) ;;
    *:-*) mapfile -t COMPREPLY < <(compgen -W "$(_vantrel_words "$program")" -- "$word") ;;
  esac
} &&
  complete -o bashdefault -o default -F _vantrel vantrel-inspect vantrel-sample-site vantrel-day
