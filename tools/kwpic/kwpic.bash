# shellcheck shell=bash
# Completion of kwpic for bash.

_kwpic() {
  local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]-} before=${COMP_WORDS[COMP_CWORD - 1]-} effects
  COMPREPLY=()
  if [ "$COMP_CWORD" = 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W "info split join convert apply effects --help --version --licences" -- "$word")
    return
  fi
  case $command in
    apply)
      if [ "$COMP_CWORD" = 2 ]; then
        effects=$("${COMP_WORDS[0]}" effects 2>/dev/null | sed -n 's/^\([A-Za-z][A-Za-z0-9]*\).*/\1/p')
        mapfile -t COMPREPLY < <(compgen -W "$effects" -- "$word")
        return
      elif [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$("${COMP_WORDS[0]}" apply "${COMP_WORDS[2]}" --help 2>/dev/null |
          sed -n 's/^ *\(--[A-Za-z]*\).*/\1/p')" -- "$word")
        return
      fi
      ;;
    convert)
      case $before in
        --bpp) mapfile -t COMPREPLY < <(compgen -W "1 4 8 24 32" -- "$word") ; return ;;
        --page | --quality) return ;;
      esac
      if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "--page --bpp --quality --help" -- "$word")
        return
      fi
      ;;
    effects)
      mapfile -t COMPREPLY < <(compgen -W "--markdown" -- "$word")
      return
      ;;
  esac
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -f -- "$word")
}

complete -F _kwpic kwpic
