# shellcheck shell=bash
# threads: the engine under the thread sanitizer; controls in eight threads for MINUTES, the library unloaded 200 times

# apartments NAME PRESET MINUTES [COMMAND...]: the part for Windows, by a command that runs it elsewhere.
apartments() {
  local name=$1 preset=$2 seconds=$(($3 * 60)) log=build/torture-$2.log
  shift 3
  attempt "$preset" build "$preset" test_activex || return 0
  if step "$name" "$log" "$@" env KW_TORTURE_SECONDS=$seconds KW_WINE_TIMEOUT=$((seconds + 900)) scripts/wine-alone torture \
    "build/$preset/tests/test_activex.exe" --gtest_filter='Apartments.*:Unload.*'; then
    results+=("$preset: $(tr -d '\r' <"$log" | sed -n '/ lives and /p; s/^\[  PASSED  \] //p' | paste -sd ,)")
  else
    # shellcheck disable=SC2034  # torture_results reads it
    failed=1
    what_failed "$log"
    results+=("$preset: fails; the output is in $log")
  fi
}

torture_threads() {
  local minutes=$1 reason
  plan_packages run test
  plan_codecs x64 x86
  plan_wine
  plan_wine32
  # shellcheck disable=SC2154
  expect "${plan[@]}" linux-tsan 100 "tests of linux-tsan" 60 windows-x64 300 "threads in 64 bits" $((minutes * 60 + 90)) \
    windows-x86 300 "threads in 32 bits" $((minutes * 60 + 90))
  setup_packages run test
  setup_codecs x64 x86
  setup_wine
  attempt linux-tsan build linux-tsan test_picture && ctest_in linux-tsan -R '^picture[.]'
  apartments "threads in 64 bits" windows-x64 "$minutes"
  if reason=$(scripts/wine32 --allowed); then
    setup_wine32
    apartments "threads in 32 bits" windows-x86 "$minutes" scripts/wine32
  else
    results+=("windows-x86: NOT RUN in 32 bits: $reason")
  fi
  torture_results
}
