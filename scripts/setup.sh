# shellcheck shell=bash
# Brings what is missing onto the machine; to be sourced by ./kw. Each function does nothing if nothing is missing.
# A function that was stopped in the middle succeeds when it is called again.

# packages_of LIST...: the names in scripts/packages/LIST.txt.
packages_of() { sed 's/#.*//' "${@/%/.txt}" | tr -s ' \n' '\n' | grep . | sort -u; }

# missing_packages LIST...
missing_packages() {
  local wanted installed
  wanted=$(cd scripts/packages && packages_of "$@")
  # shellcheck disable=SC2086
  installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' $wanted 2>/dev/null | sed -n 's/^installed //p' | sort -u)
  comm -23 <(printf '%s\n' "$wanted") <(printf '%s\n' "$installed") | tr '\n' ' '
}

# apt_step NAME COMMAND...: a step of apt or dpkg, as root. It waits up to two minutes while another program works with apt.
apt_step() {
  local name=$1 log=build/packages.log until=$((EPOCHSECONDS + 120))
  shift
  while ! step "$name" "$log" "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive LC_ALL=C "$@"; do
    if ! grep -qs 'Could not get lock\|is another process using it' "$log" || [ "$EPOCHSECONDS" -ge "$until" ]; then
      fail "$(explain "$log" "the packages cannot be installed ($(grep -m1 '^E:' "$log" || echo 'no reason given'); see $log): mend that, then run the same command again")"
    fi
    say "another program works with apt: waiting for its end"
    sleep 5
  done
}

# The steps of the set-up, for expect(): names and seconds in the array `plan`.
plan=()
plan_packages() { [ -z "$(missing_packages "$@" | tr -d ' ')" ] || plan+=("packages" 150); }
plan_codecs() { scripts/codecs --check "$@" >/dev/null 2>&1 || plan+=("codec libraries, $*" $((10 + 60 * $#))); }
plan_wine() { [ -e build/wine/made ] || plan+=("Wine prefix" 15); }
plan_wine32() { ! scripts/wine32 --allowed >/dev/null || scripts/wine32 --check || plan+=("32-bit Wine" 60); }

# setup_packages LIST...
setup_packages() {
  local missing
  as_root=()
  command -v dpkg-query >/dev/null || fail "this needs Debian 12: there is no dpkg-query here; use a Debian 12 machine or container"
  missing=$(missing_packages "$@")
  [ -n "${missing// /}" ] || return 0
  if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null || fail "packages are missing and there is no sudo; as root run: apt-get install $missing"
    sudo -v || fail "packages are missing; as root run: apt-get install $missing"
    as_root=(sudo)
  fi
  say "missing packages: $missing"
  # An installation that was killed has to be ended first.
  if [ -n "$(dpkg --audit 2>/dev/null)" ]; then
    apt_step "packages: repair" sh -c 'dpkg --configure -a && apt-get -y -f install'
  fi
  apt_step "packages: lists" apt-get -o APT::Update::Error-Mode=any update
  # shellcheck disable=SC2086
  apt_step "packages: download" apt-get -y --no-install-recommends -o APT::Status-Fd=1 --download-only install $missing
  # shellcheck disable=SC2086
  apt_step "packages: installation" apt-get -y --no-install-recommends -o APT::Status-Fd=1 install $missing
}

# setup_codecs TARGET...: the codec libraries for these Windows targets (x64, x86).
setup_codecs() {
  local log=build/codecs.log
  ! scripts/codecs --check "$@" >/dev/null 2>&1 || return 0
  step "codec libraries, $*" "$log" scripts/codecs "$@" ||
    fail "$(explain "$log" "$(grep '^codecs: ' "$log" | tail -n 1 | sed 's/^codecs: //')")"
}

setup_wine() {
  local made=build/wine/made
  [ -e "$made" ] && return 0
  step "Wine prefix" build/wine.log make_wine_prefix ||
    fail "$(explain build/wine.log "Wine could not make its prefix; read build/wine.log, then run the same command again")"
  touch "$made" || fail "the disk is full: free 3 GB where this folder lies, then run the same command again"
}

# setup_wine32: a Wine that runs programs of 32 bits, beside that of the machine.
setup_wine32() {
  local log=build/wine32.log
  ! scripts/wine32 --check || return 0
  step "32-bit Wine" "$log" scripts/wine32 --setup ||
    fail "$(explain "$log" "$(grep '^wine32: ' "$log" | tail -n 1 | sed 's/^wine32: //')")"
}

make_wine_prefix() {
  rm -rf build/wine
  # shellcheck disable=SC2154
  export WINEPREFIX=$root/build/wine WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml=
  timeout 300 xvfb-run -a sh -c 'wine wineboot -i && wineserver -w' &&
    cp /usr/share/fonts/truetype/liberation/*.ttf /usr/share/wine/fonts/tahoma*.ttf build/wine/drive_c/windows/Fonts/
}

# offer_hook: offers scripts/pre-commit to a clone without it; a clone is asked once.
offer_hook() {
  local hook answer=""
  hook=$(git rev-parse --git-path hooks 2>/dev/null)/pre-commit || return 0
  ! grep -qs 'scripts/pre-commit' "$hook" && [ "$(git config kw.hook)" != no ] || return 0
  if [ ! -t 0 ] || [ ! -t 1 ]; then
    say "to check the format at each commit: scripts/pre-commit --install"
    return 0
  fi
  read -r -p "kw: check format and tree rules at each commit (a Git hook)? [y/N] " answer || true
  if [[ $answer == [yY]* ]]; then
    scripts/pre-commit --install
  else
    git config kw.hook no
  fi
}
