# shellcheck shell=bash
# x86: every native test in 32 bits, with the address and the undefined-behaviour sanitizer

torture_x86() {
  plan_packages run test
  scripts/libraries-x86 --check || plan+=("libraries for i386" 20)
  # shellcheck disable=SC2154
  expect "${plan[@]}" linux-x86 170 "tests of linux-x86" 60
  setup_packages run test
  if ! scripts/libraries-x86 --check; then
    step "libraries for i386" build/i386.log scripts/libraries-x86 ||
      fail "$(explain build/i386.log "$(grep '^libraries-x86: ' build/i386.log | tail -n 1 | sed 's/^libraries-x86: //')")"
  fi
  attempt linux-x86 build linux-x86 && ctest_in linux-x86
  torture_results
}
