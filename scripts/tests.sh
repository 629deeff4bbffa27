# shellcheck shell=bash
# Runs tests and tells what came of them; to be sourced by ./kw.

declare -a results=()
failed=0
passed_cases=0
failed_cases=0
skipped_cases=0

# outcomes LOG: of each case in CTest's own log a line "passed|failed|skipped TEST CASE". A test that is no GoogleTest
# program is one case; one that ended before it told of a case's end has failed with that case.
outcomes() {
  tr -d '\r' <"$1" | awk '
    /^[0-9]+\/[0-9]+ Testing: / { test = $3; sub(/\.[0-9]+$/, "", test); cases = 0; running = "" }
    /^\[ RUN      \] / { running = $4 }
    /^\[       OK \] .* ms\)$/ { print "passed", test, $4; ++cases; running = "" }
    /^\[  SKIPPED \] .* ms\)$/ { print "skipped", test, $4; ++cases; running = "" }
    /^\[  FAILED  \] .* ms\)$/ { sub(/,$/, "", $4); print "failed", test, $4; ++cases; running = "" }
    /^Test (Passed|Failed)\.$/ || /^Test (Timeout|timeout)/ || /^<end of output>$/ && running != "" {
      if (running != "") print "failed", test, running
      else if (cases == 0) print ($2 == "Passed." ? "passed" : "failed"), test, "-"
      running = ""; ++cases
    }'
}

# what_failed LOG: the failing cases with the first words of each, for a reader who has nothing but this output.
what_failed() {
  tr -d '\r' <"$1" |
    awk '/: Failure$/ || /ERROR: AddressSanitizer|runtime error:/ { left = 8 }
         /^\[ / { left = 0 }
         left-- > 0 || /^\[  FAILED  \] .* ms\)$/' |
    cut -c 1-300 | head -n 60
}

# ctest_in PRESET [ARGUMENT...]: runs the preset's tests with these arguments of ctest.
ctest_in() {
  local preset=$1 log=build/$1-tests.log full=build/$1/Testing/Temporary/LastTest.log run status=0 passed bad skipped
  # shellcheck disable=SC2154
  local side_by_side=$processors
  shift
  # Of the tests under Wine those that wait for a display run beside those that work.
  [[ $preset != windows-* ]] || side_by_side=$((processors + 3))
  run=(ctest --test-dir "build/$preset" -j "$side_by_side" --no-tests=error --test-output-size-passed 100000000
       --test-output-size-failed 100000000)
  [[ $preset != windows-* ]] || run=(xvfb-run -a -s "-screen 0 1280x1024x24" "${run[@]}")
  [ "$preset" != windows-x86 ] || run=(scripts/wine32 "${run[@]}")
  rm -f "$full"
  step "tests of $preset" "$log" "${run[@]}" "$@" || status=$?
  if ! grep -q 'tests passed' "$log"; then
    failed=1
    results+=("$(printf '%-14s %s' "$preset" "no test ran: $(explain "$log" "see $log")")")
    return
  fi
  outcomes "$full" >"build/$preset-cases.txt"
  if [ "$status" != 0 ]; then
    what_failed "$full"
    cp "$full" "build/$preset-tests-first.log"
    ask_again "$preset" || failed=1
  fi
  passed=$(grep -c '^passed' "build/$preset-cases.txt" || true)
  bad=$(grep -c '^failed' "build/$preset-cases.txt" || true)
  skipped=$(grep -c '^skipped' "build/$preset-cases.txt" || true)
  # CTest knows of more failures than cases tell: a program that leaks, or ends with an error behind its last case.
  [ "$status" = 0 ] || [ "$bad" -gt 0 ] || grep -q '^flaky' "build/$preset-cases.txt" || bad=1
  [ "$bad" = 0 ] || failed=1
  passed_cases=$((passed_cases + passed)) failed_cases=$((failed_cases + bad)) skipped_cases=$((skipped_cases + skipped))
  results+=("$(printf '%-14s %5d passed, %d failed, %d skipped' "$preset" "$passed" "$bad" "$skipped")")
}

# ask_again PRESET: what a display, its pointer and its keys do has a timing of its own, so a failing case of `windows` and
# `activex` is asked once more. If it passes then it is printed as FLAKY, and the run fails all the same unless
# tests/flaky.txt names it. Everything else has one chance.
ask_again() {
  local preset=$1 cases=build/$1-cases.txt log=build/$1-tests-again.log program filter case run=(scripts/wine-alone)
  [[ $preset == windows-* ]] || return 1
  [ "$preset" != windows-x86 ] || run=(scripts/wine32 "${run[@]}")
  for program in windows activex; do
    grep -q "^failed $program " "$cases" || continue
    filter=$(sed -n "s/^failed $program //p" "$cases" | paste -sd :)
    step "$program once more" "$log" "${run[@]}" "$program" "build/$preset/tests/test_$program.exe" "--gtest_filter=$filter" || true
    for case in ${filter//:/ }; do
      tr -d '\r' <"$log" | grep -qF "[       OK ] $case (" || continue
      say "FLAKY $program.$case"
      results+=("FLAKY $program.$case")
      if grep -qE "^$program\.$case [0-9]{4}-[0-9]{2}-[0-9]{2} ." tests/flaky.txt; then
        sed -i "s|^failed $program $case\$|flaky $program $case|" "$cases"
      else
        say "tests/flaky.txt does not name it: mend it, or add a line with date and reason"
      fi
    done
  done
  ! grep -q '^failed' "$cases"
}

# attempt PRESET COMMAND...: a failing build is one line of the summary, and the other presets still get their turn.
attempt() {
  local preset=$1 status=0
  shift
  "$@" || status=$?
  [ "$status" != 0 ] || return 0
  failed=1
  results+=("$(printf '%-14s %s' "$preset" "does not build")")
  return 1
}

# summary: what came of all tests; the last line is counts alone.
summary() {
  say "results"
  printf '  %s\n' "${results[@]}"
  say "times"
  times
  echo "$passed_cases passed, $failed_cases failed, $skipped_cases skipped"
  [ "$failed" = 0 ] || fail "some tests fail; their output is in build/*-tests-first.log and build/*/Testing/Temporary/LastTest.log"
}

# torture_results: what came of the tests of a part of torture; the times are told elsewhere.
torture_results() {
  printf '  %s\n' "${results[@]}"
  [ "$failed" = 0 ] || fail "some tests fail; what failed is shown above, and their output is in build/*-tests-first.log"
}
