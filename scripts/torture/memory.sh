# shellcheck shell=bash
# memory: let every request for memory fail, natively and in the control, MINUTES there

torture_memory() {
  local minutes=$1 log=build/torture-memory.log ocx=build/torture-memory-ocx.log
  plan_packages run test
  plan_codecs x64
  plan_wine
  # shellcheck disable=SC2154
  expect "${plan[@]}" linux-debug 170 "memory natively" 600 windows-x64 150 "memory in the control" $((minutes * 60))
  setup_packages run test
  setup_codecs x64
  setup_wine
  build linux-debug test_torture || exit 1
  build windows-x64 test_ocxmemory || exit 1
  step "memory natively" "$log" env KW_TORTURE=all build/linux-debug/tests/test_torture --gtest_filter='*ShortOfMemory*' ||
    { what_failed "$log"; fail "lack of memory breaks something; the output is in $log"; }
  step "memory in the control" "$ocx" env KW_TORTURE=all KW_TORTURE_MINUTES="$minutes" KW_WINE_TIMEOUT=0 \
    scripts/wine-alone torture build/windows-x64/tests/test_ocxmemory.exe ||
    { what_failed "$ocx"; fail "lack of memory breaks the control; the output is in $ocx"; }
  say "natively $(awk '/^tried /{ n += $2 } END { print n + 0 }' "$log") requests failed, each alone or with all behind it"
  tr -d '\r' <"$ocx" | sed -n 's/^tried /  /p'
}
