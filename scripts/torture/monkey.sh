# shellcheck shell=bash
# monkey: do anything with the editor and with the control, in runs that a seed repeats

# monkeys PROGRAM_NAME EVENTS SECONDS COMMAND...: runs of so many events, each with a seed of its own, until the time is up.
monkeys() {
  local name=$1 events=$2 seconds=$3 seed=${KW_MONKEY_SEED:-$RANDOM} runs=0 log
  local end=$((SECONDS + seconds))
  shift 3
  while [ "$SECONDS" -lt "$end" ]; do
    log=build/torture-monkey-$name-$seed.log
    KW_MONKEY_SEED=$seed KW_MONKEY_EVENTS=$events "$@" >"$log" 2>&1 || {
      what_failed "$log"
      fail "to repeat it: KW_MONKEY_SEED=$seed KW_MONKEY_EVENTS=$events $*; its output is in $log"
    }
    rm -f "$log"
    runs=$((runs + 1)) seed=$((seed + 1))
  done
  say "$name: $runs runs of $events events, seeds $((seed - runs)) to $((seed - 1))"
}

torture_monkey() {
  local seconds=$(($1 * 60))
  plan_packages run test
  plan_codecs x64
  plan_wine
  # shellcheck disable=SC2154
  expect "${plan[@]}" linux-torture 300 linux-debug 300 windows-x64 500 "monkeys" "$seconds"
  setup_packages run test
  setup_codecs x64
  setup_wine
  build linux-torture test_control || exit 1
  build linux-debug test_control || exit 1
  build windows-x64 test_activex || exit 1
  monkeys editor 250000 $((seconds / 4)) build/linux-torture/tests/test_control '--gtest_filter=Monkey.*'
  monkeys watched 20000 $((seconds / 4)) build/linux-debug/tests/test_control '--gtest_filter=Monkey.*'
  monkeys control 3000 $((seconds / 2)) scripts/wine-alone torture build/windows-x64/tests/test_activex.exe '--gtest_filter=OcxMonkey.*'
}
