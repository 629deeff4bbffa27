# shellcheck shell=bash
# hostile: open every hostile file, with and without Wine, in 5 s and 1.5 GiB each

torture_hostile() {
  local native=build/torture-hostile-native.log windows=build/torture-hostile-windows.log
  plan_packages run test
  plan_codecs x64
  plan_wine
  # shellcheck disable=SC2154
  expect "${plan[@]}" linux-release 180 "hostile files" 60 windows-x64 150 "hostile files, by the OCX" 120
  setup_packages run test
  setup_codecs x64
  setup_wine
  # Without sanitizers, which need several times the memory.
  build linux-release test_fuzz || exit 1
  KW_HOSTILE=all step "hostile files" "$native" build/linux-release/tests/test_fuzz --gtest_filter='HostileFiles.*' ||
    { what_failed "$native"; fail "a hostile file needs too much; the output is in $native"; }
  build windows-x64 test_activex || exit 1
  KW_HOSTILE=all step "hostile files, by the OCX" "$windows" scripts/wine-alone torture build/windows-x64/tests/test_activex.exe \
    --gtest_filter='HostileFilesTest.*' || { what_failed "$windows"; fail "a hostile file needs too much; the output is in $windows"; }
  say "$(grep -c ' s, ' "$native") hostile files natively and $(grep -c ' s, ' "$windows") by the OCX are opened in time and in little memory"
}
