# Completion of quilctl for bash: the program itself knows what may follow.
_quilctl() {
  local IFS=$'\n'
  COMPREPLY=($(quilctl complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null))
  [[ ${COMPREPLY[0]-} == *= ]] && compopt -o nospace
}
COMP_WORDBREAKS=${COMP_WORDBREAKS//=/}
complete -F _quilctl quilctl
