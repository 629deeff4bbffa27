# shellcheck shell=bash
# Runs the fuzz targets; to be sourced by ./kw. What they learn, and what they find, lies in build/fuzz.

# fuzz_dictionary TARGET: writes the words that inputs of the target are made of; no file if there are none.
fuzz_dictionary() {
  local names=("$1") name
  case $1 in
    fmf) names=(tiff) ;;
    document) names=(bmp gif jpeg tiff) ;;
  esac
  for name in "${names[@]}"; do
    [ ! -r "fuzz/dictionaries/$name" ] || sed "s/^\([a-z]\)/${name}_\1/" "fuzz/dictionaries/$name"
  done >"build/fuzz/$1.dict"
  [ -s "build/fuzz/$1.dict" ]
}

# fuzz_one TARGET MINUTES: what it finds goes to build/fuzz/findings; what it learned is where the next run begins.
fuzz_one() {
  local target=$1 folder=build/fuzz options=() longest=65536
  mkdir -p "$folder/learned/$target"
  ! fuzz_dictionary "$target" || options=(-dict="$folder/$target.dict")
  # Steps are few bytes each, and so are the numbers of an effect.
  case $target in steps | effects) longest=8192 ;; esac
  nice "build/linux-fuzz/fuzz_$target" -max_total_time=$(($2 * 60)) -timeout=25 -max_len="$longest" \
    -malloc_limit_mb=1200 -print_final_stats=1 -artifact_prefix="$folder/findings/$target-" "${options[@]}" \
    "$folder/learned/$target" "$folder/seeds/$target" "fuzz/corpus/$target" >"$folder/$target.log" 2>&1 ||
    echo failed >>"$folder/$target.log"
  nice "build/linux-fuzz/fuzz_$target" -runs=0 -print_coverage=1 "$folder/learned/$target" "fuzz/corpus/$target" \
    >"$folder/$target-coverage.log" 2>&1 || true
}

# fuzz_coverage LOG...: for each room "ROOM RAN EDGES FUNCTIONS": the share, in percent, of its functions that the
# inputs ran and of the edges in those, and how many functions there are. Of several logs, the one that covers most of a
# function counts. Half of the edges are the sanitizers' own, which lead to their reports.
fuzz_coverage() {
  awk -v root="$PWD" '
    FILENAME ~ /rooms.txt$/ { if ($1 == "room") folder[$2] = $3; next }
    /^(UN)?COVERED_FUNC: / {
      path = $NF
      sub(/:[0-9]+$/, "", path)
      sub(/\/build\/linux-fuzz\/\.\.\/\.\./, "", path)
      room = ""
      if (index(path, root "/build/linux-fuzz/include/") == 1) {
        split(substr(path, length(root "/build/linux-fuzz/include/") + 1), parts, "/")
        room = parts[1]
      } else
        for (one in folder)
          if (index(path, root "/" folder[one] "/") == 1 && length(folder[one]) > length(folder[room])) room = one
      if (room == "") next
      split($5, edges, "/")
      place = $0
      sub(/^.* edges: [^ ]* /, "", place)
      of[place] = room
      if (edges[1] > went[place]) went[place] = edges[1]
      if (edges[2] > all[place]) all[place] = edges[2]
    }
    END {
      for (place in of) {
        ++functions[of[place]]
        if (went[place] == 0) continue
        ++ran[of[place]]
        a[of[place]] += all[place]
        w[of[place]] += went[place]
      }
      for (room in functions)
        printf "%s %d %d %d\n", room, 100 * ran[room] / functions[room], ran[room] ? 100 * w[room] / a[room] : 0, functions[room]
    }' build/linux-fuzz/rooms.txt "$@" | LC_ALL=C sort
}

# fuzz_report TARGET: a line on its runs, and the share of each room's functions that they ran.
fuzz_report() {
  local log=build/fuzz/$1.log
  printf '  %-10s %10s runs  %6s a second  %s\n' "$1" "$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")" \
    "$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")" \
    "$(grep -m1 -E 'broken promise|runtime error|SUMMARY' "$log" || echo "nothing found")"
  fuzz_coverage "build/fuzz/$1-coverage.log" | sort -k2,2nr -k1,1 | awk '$2 > 0 { printf "%s%s %d %%", NR == 1 ? "" : ", ", $1, $2 }' |
    fold -s -w 96 | sed 's/^/             /'
  echo
}

# fuzz_all MINUTES: each target so long, as many side by side as there are processors.
fuzz_all() {
  local folder=build/fuzz target targets=() logs=()
  mkdir -p "$folder/findings"
  build/linux-fuzz/kwseeds "$folder/seeds"
  for target in build/linux-fuzz/fuzz_*; do targets+=("${target##*/fuzz_}"); done
  say "fuzzing ${targets[*]}, $1 min each"
  for target in "${targets[@]}"; do
    # shellcheck disable=SC2154
    while [ "$(jobs -rp | wc -l)" -ge "$processors" ]; do wait -n; done
    fuzz_one "$target" "$1" &
  done
  wait
  say "what each target did, and the share of each room's functions that its inputs run"
  for target in "${targets[@]}"; do
    fuzz_report "$target"
    logs+=("$folder/$target-coverage.log")
    # shellcheck disable=SC2034
    [ "$(tail -n 1 "$folder/$target.log")" != failed ] || failed=1
  done
  say "all of them together"
  fuzz_coverage "${logs[@]}" |
    awk '{ printf "  %-18s %3d %% of %5d functions, %3d %% of the edges in those\n", $1, $2, $4, $3 }'
}
