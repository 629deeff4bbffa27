# shellcheck shell=bash
# soak: do the same thing ten thousand times, and count what stays

torture_soak() {
  local minutes=$1 log=build/torture-soak.log
  plan_packages run test
  plan_codecs x64
  plan_wine
  # shellcheck disable=SC2154
  expect "${plan[@]}" linux-debug 300 windows-x64 500 "soak" $((minutes * 60))
  setup_packages run test
  setup_codecs x64
  setup_wine
  build linux-debug test_control || exit 1
  build windows-x64 test_activex || exit 1
  # So many that each takes its share of the minutes: all of them take about an hour.
  export KW_SOAK_PERCENT=$((minutes >= 60 ? 100 : (minutes * 100 + 59) / 60))
  say "$KW_SOAK_PERCENT percent of the long form"
  step "the editor" "$log" build/linux-debug/tests/test_control '--gtest_filter=Soak.*' ||
    { what_failed "$log"; fail "something stays; see $log"; }
  step "the control" "$log" scripts/wine-alone torture build/windows-x64/tests/test_activex.exe '--gtest_filter=SoakTest.*:Resources.*' ||
    { what_failed "$log"; fail "something stays; see $log"; }
  tr -d '\r' <"$log" | grep ' keep '
}
