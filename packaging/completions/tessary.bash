# Completion of the command tessary in bash.

# _tessary_options COMMAND: what the command's help lists.
_tessary_options() {
  case $1 in
    diff | diff-folder) echo --verify --strict --html --json --quiet ;;
    convert) echo --backup --on-backup-failure --dry-run --journal --html --json --quiet ;;
    convert-folder) echo --backup --omit --on-backup-failure --dry-run --journal --html --json --quiet ;;
    check) echo --omit --json --quiet ;;
    restore) echo --oldest --dry-run --quiet ;;
    explain | info | show | roundtrip) echo --quiet ;;
    '') echo --version ;;
  esac
  echo --help -h
}

_tessary() {
  local commands='diff diff-folder convert convert-folder check restore explain info show roundtrip help'
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command='' i
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; ++i)); do
    [ "${COMP_WORDS[i]}" != -- ] || { compopt -o default; return; }
    [ -n "$command" ] || [[ ${COMP_WORDS[i]} == -* ]] || command=${COMP_WORDS[i]}
  done
  # "--option=value" arrives as three words.
  if [ "$word" = = ]; then
    word=
  elif [ "$before" = = ]; then
    before=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  case $before in
    --backup) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- "$word"); return ;;
    --journal | --html | --omit) compopt -o default; return ;;
    --on-backup-failure) mapfile -t COMPREPLY < <(compgen -W 'abort continue' -- "$word"); return ;;
  esac
  if [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(_tessary_options "$command")" -- "$word")
  elif [ -z "$command" ]; then
    mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$word")
  else
    case $command in
      help) mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$word") ;;
      diff-folder | convert-folder | check)
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -d -- "$word")
        ;;
      explain) ;;
      *) compopt -o default ;;
    esac
  fi
}

complete -F _tessary tessary
