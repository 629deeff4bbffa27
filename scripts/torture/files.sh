# shellcheck shell=bash
# files: fail each call to the file system with each trouble, in everything that the library and the editor do

torture_files() {
  local minutes=$1 log=build/torture-files.log status=0 seed=1 end
  setup_packages run test
  build linux-debug test_files || exit 1
  end=$((EPOCHSECONDS + minutes * 60))
  # Each scenario by itself until the time is over; the first round begins with calls drawn by other seeds, so that a
  # short run reaches all of them.
  while [ $EPOCHSECONDS -lt $end ] && [ $status = 0 ]; do
    KW_TORTURE_SEED=$seed step "failing files, seed $seed" "$log" build/linux-debug/tests/test_files --gtest_brief=1 || status=$?
    seed=$((seed + 1))
    if [ $seed = 4 ]; then
      KW_TORTURE=all step "failing files, every call" "$log" build/linux-debug/tests/test_files --gtest_brief=1 || status=$?
    fi
  done
  [ $status = 0 ] || { what_failed "$log"; fail "a file or the control does not survive a failing call; see $log"; }
  say "$((seed - 1)) rounds of failing calls passed"
}
