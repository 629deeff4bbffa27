# shellcheck shell=bash
# hosts: use the control in a container whose library takes minutes to build

torture_hosts() {
  local log=build/torture-hosts.log
  plan_packages run test
  plan_codecs x64
  plan_wine
  # shellcheck disable=SC2154
  expect "${plan[@]}" wxWidgets 700 windows-x64 150 "wxWidgets' container" 60
  setup_packages run test
  setup_codecs x64
  setup_wine
  step wxWidgets build/wxwidgets.log scripts/wxwidgets ||
    fail "$(explain build/wxwidgets.log "$(grep '^wxwidgets: ' build/wxwidgets.log | tail -n 1 | sed 's/^wxwidgets: //')")"
  build windows-x64 test_wx || exit 1
  step "wxWidgets' container" "$log" scripts/wine-alone torture build/windows-x64/tests/test_wx.exe ||
    { what_failed "$log"; fail "the control fails in wxWidgets' container; its output is in $log"; }
  say "$(tr -d '\r' <"$log" | sed -n 's/^\[  PASSED  \] //p') passed in wxWidgets' container"
}
