# shellcheck shell=bash
# kill: end kwpic, and the control while it opens a document, 500 times each at moments spread over a run

torture_kill() {
  local log=build/torture-kill.log kills=500 windows=$((30 * $1))
  [ "$windows" -le 500 ] || windows=500
  plan_packages run test
  plan_codecs x64
  plan_wine
  # shellcheck disable=SC2154
  expect "${plan[@]}" linux-debug 200 windows-x64 300 "kills" $((60 * $1))
  setup_packages run test
  setup_codecs x64
  setup_wine
  build linux-debug test_kwpic || exit 1
  build windows-x64 test_kwpic test_activex || exit 1
  KW_KWPIC=$PWD/build/linux-debug/kwpic KW_TORTURE_KILLS=$kills \
    step "kwpic, $kills kills a command" "$log" build/linux-debug/tests/test_kwpic --gtest_filter='KwpicKilled.*' ||
    { what_failed "$log"; fail "a killed kwpic leaves a file that is neither old nor new; see $log"; }
  say "$(grep -h ' runs were ended' "$log")"
  KW_KWPIC=$PWD/build/windows-x64/kwpic.exe KW_TORTURE_KILLS=$((windows / 5)) \
    step "kwpic.exe, $((windows / 5)) kills a command" "$log" \
    scripts/wine-alone torture build/windows-x64/tests/test_kwpic.exe --gtest_filter='KwpicKilled.*' ||
    { what_failed "$log"; fail "a killed kwpic.exe leaves a file that is neither old nor new; see $log"; }
  say "$(tr -d '\r' <"$log" | grep -h ' runs were ended')"
  KW_TORTURE_KILLS=$windows step "the control, $windows kills" "$log" \
    scripts/wine-alone torture build/windows-x64/tests/test_activex.exe --gtest_filter='KilledOpening.*' ||
    { what_failed "$log"; fail "a killed host leaves a file that is neither old nor new; see $log"; }
  say "$(tr -d '\r' <"$log" | grep -h ' runs were ended')"
}
