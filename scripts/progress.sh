# shellcheck shell=bash
# The progress display of ./kw; to be sourced. The steps' times go to build/times, from which the next run tells how
# long it will take.

say() { printf 'kw: %s\n' "$*"; }
# fail MESSAGE: one line that names the mend, and the end.
fail() { printf 'kw: %s\n' "$*" >&2; exit 1; }

processors=$(nproc)
declare -a step_names=() step_seconds=()

clock() { printf '%d:%02d' $(($1 / 60)) $(($1 % 60)); }

# progress_of LINE: sets `count` and `total` if the line tells how far its program is: ninja and scripts/tidy, CTest, apt.
progress_of() {
  if [[ $1 =~ ^\[([0-9]+)/([0-9]+)\] || $1 =~ ^\ *([0-9]+)/([0-9]+)\ Test\ +# ]]; then
    count=${BASH_REMATCH[1]} total=${BASH_REMATCH[2]} unit=""
  elif [[ $1 =~ ^(dl|pm)status:[^:]*:([0-9]+) ]]; then
    count=${BASH_REMATCH[2]} total=100 unit=" %"
  fi
}

# step NAME LOG COMMAND...: runs the command with its output in LOG, and shows how far it is and how long it has taken: on a
# terminal in one line that rewrites itself, else a line at each tenth. Returns what the command returns.
step() {
  local name=$1 log=$2 began=$EPOCHSECONDS pid status=0 alive=1 line count=0 total=0 unit="" tenth=0 text
  shift 2
  { : >"$log"; } 2>/dev/null || fail "$log cannot be written: make the folder writable and its disk not full"
  [ -t 1 ] || say "$name"
  # A process group of its own, so that all of it ends with this script.
  set -m
  "$@" >>"$log" 2>&1 </dev/null &
  pid=$!
  set +m
  trap 'kill -- "-$pid" 2>/dev/null; [ ! -t 1 ] || echo; exit 130' INT TERM HUP
  exec 8<"$log"
  while [ "$alive" = 1 ]; do
    kill -0 "$pid" 2>/dev/null || alive=0
    while IFS= read -r line <&8; do progress_of "$line"; done
    text=$name
    [ "$total" = 0 ] || text+="  $count$([ -n "$unit" ] && echo "$unit" || echo " of $total")"
    if [ -t 1 ]; then
      printf '\r\033[Kkw: %s  %s' "$text" "$(clock $((EPOCHSECONDS - began)))"
    elif [ "$total" -gt 0 ] && [ $((count * 10 / total)) -gt "$tenth" ]; then
      tenth=$((count * 10 / total))
      say "  $text  $(clock $((EPOCHSECONDS - began)))"
    fi
    [ "$alive" = 0 ] || sleep 0.2
  done
  exec 8<&-
  wait "$pid" || status=$?
  trap - INT TERM HUP
  [ ! -t 1 ] || printf '\r\033[K'
  step_names+=("$name")
  step_seconds+=($((EPOCHSECONDS - began)))
  if [ "$status" = 0 ]; then
    [ ! -t 1 ] || say "$name  $(clock $((EPOCHSECONDS - began)))"
    remember "$name" $((EPOCHSECONDS - began))
  fi
  return "$status"
}

# remember NAME SECONDS: notes how long the step took here.
remember() {
  if { grep -vE "^[0-9]+ $1\$" build/times; echo "$2 $1"; } >build/times.new 2>/dev/null; then
    mv build/times.new build/times
  fi
}

# expect NAME SECONDS...: pairs of steps and the seconds that each took in a fresh clone on a machine of two processors. Says
# what will happen and about how long it takes here; a step that ran before is expected to take that long again.
expect() {
  local names="" sum=0 seconds
  while [ $# -gt 0 ]; do
    seconds=$(grep -sE "^[0-9]+ $1\$" build/times | cut -d ' ' -f 1 || true)
    [ -n "$seconds" ] || seconds=$(($2 * 2 / processors))
    sum=$((sum + seconds))
    names+="${names:+, }$1"
    shift 2
  done
  if [ "$sum" -lt 90 ]; then
    say "what will happen: $names; about $sum seconds"
  else
    say "what will happen: $names; about $(((sum + 30) / 60)) minutes"
  fi
}

# times: a line for each step that ran, with its time.
times() {
  local i sum=0
  [ ${#step_names[@]} -gt 0 ] || return 0
  for i in "${!step_names[@]}"; do
    printf '  %6s  %s\n' "$(clock "${step_seconds[i]}")" "${step_names[i]}"
    sum=$((sum + step_seconds[i]))
  done
  printf '  %6s  together\n' "$(clock "$sum")"
}

# explain LOG OTHERWISE: the line that names the mend of what ended the step with that log.
explain() {
  if grep -qsE 'No space left on device|not enough free space|disk full' "$1" || [ "$(free_megabytes build)" -lt 5 ]; then
    echo "the disk is full: free 3 GB where this folder lies, then run the same command again"
  elif grep -qs 'Could not get lock' "$1"; then
    echo "another program works with apt: wait for its end, then run the same command again"
  elif grep -qsE 'Temporary failure resolving|Could not resolve|Network is unreachable|Could not connect|Connection timed out|Unable to connect' "$1"; then
    echo "the network or the package server cannot be reached: mend that, then run the same command again"
  else
    echo "$2"
  fi
}

# free_megabytes FOLDER
free_megabytes() { df -m --output=avail "$1" 2>/dev/null | tail -n 1 | tr -d ' ' | grep . || echo 0; }
