# shellcheck shell=bash
# heap: the control's tests, again and again, with a heap that tells what is freed twice or written to after that

# The checks take too long for the hundreds of megabytes of hostile files.
# heap_rounds NAME PRESET SECONDS [COMMAND...]: rounds of the control's tests until the time is up, one at least; the
# command runs them elsewhere.
heap_rounds() {
  local name=$1 preset=$2 rounds=0 status log=build/torture-heap-$2.log
  local end=$((SECONDS + $3))
  shift 3
  attempt "$preset" build "$preset" test_activex || return 0
  while [ $rounds = 0 ] || [ "$SECONDS" -lt "$end" ]; do
    status=0
    step "$name" "$log" "$@" env KW_CHECK_HEAP=1 KW_WINE_TIMEOUT=3000 scripts/wine-alone torture \
      "build/$preset/tests/test_activex.exe" --gtest_filter="-HostileFilesTest.*" || status=$?
    if [ $status != 0 ] || grep -q ':heap:' "$log"; then
      # shellcheck disable=SC2034  # torture_results reads it
      failed=1
      what_failed "$log"
      results+=("$preset: the heap or a test complains; the output is in $log")
      return 0
    fi
    rounds=$((rounds + 1))
  done
  results+=("$preset: $rounds rounds, no complaint of the heap; $(tr -d '\r' <"$log" | sed -n 's/^\[  PASSED  \] //p') passed")
}

torture_heap() {
  local seconds=$(($1 * 30)) reason
  plan_packages run test
  plan_codecs x64 x86
  plan_wine
  plan_wine32
  # shellcheck disable=SC2154
  expect "${plan[@]}" windows-x64 300 windows-x86 300 "the control's tests" $((2 * seconds + 1200))
  setup_packages run test
  setup_codecs x64 x86
  setup_wine
  heap_rounds "tests with a checked heap, 64 bits" windows-x64 "$seconds"
  if reason=$(scripts/wine32 --allowed); then
    setup_wine32
    heap_rounds "tests with a checked heap, 32 bits" windows-x86 "$seconds" scripts/wine32
  else
    results+=("windows-x86: NOT RUN in 32 bits: $reason")
  fi
  torture_results
}
