# shellcheck shell=bash
# ./kw package; to be sourced by ./kw. Everything is made from the last commit, in a folder of its own, so that two machines
# with the same packages make the same files from the same commit.
#   build/package/tree    the commit's files and its builds
#   build/package/out     what is handed on

package_folder=build/package
# shellcheck disable=SC2154
package_tools=$root/scripts/package

# The version, of the one place that names it.
version_of() { sed -nE 's/^project\(KwEditor VERSION ([0-9.]+).*/\1/p' "$1/CMakeLists.txt"; }

package_commit() {
  SOURCE_DATE_EPOCH=$(git log -1 --format=%ct) || fail "this is no clone with a commit: the packages are made from the last commit"
  commit=$(git rev-parse HEAD)
  export SOURCE_DATE_EPOCH TZ=UTC
  [ -z "$(git status --porcelain)" ] || say "the packages are made from the last commit: what is not committed is not in them"
}

package_tree() {
  local tree=$1
  mkdir -p "$tree/build" && find "$tree" -mindepth 1 -maxdepth 1 ! -name build -exec rm -rf {} + &&
    git archive "$commit" | tar -x -C "$tree" && ln -sfn "$root/build/deps" "$tree/build/deps"
}

package_build() {
  local tree=$1 preset
  package_tree "$tree" || return 1
  cd "$tree" || return 1
  export CCACHE_BASEDIR=$PWD
  for preset in windows-x64 windows-x86 linux-release; do
    # What was built of an older commit has its time.
    [ "$(cat "build/$preset.commit" 2>/dev/null)" = "$commit" ] || rm -rf "build/$preset"
  done
  # shellcheck disable=SC2154
  for preset in windows-x64 windows-x86; do
    # The symbols tell lines, too; the code is the same.
    cmake --preset "$preset" -DKW_LINES=ON && cmake --build --preset "$preset" -j "$processors" --target "${products[@]}" || return 1
  done
  configure_and_build linux-release --target kwpic || return 1
  for preset in windows-x64 windows-x86 linux-release; do echo "$commit" >"build/$preset.commit"; done
}

# package_sign FILE...: with the caller's key; without one nothing is signed.
package_sign() {
  local file
  [ -n "$sign_key" ] || return 0
  for file; do
    rm -f "$file.signed"
    osslsigncode sign -certs "$sign_certificate" -key "$sign_key" -h sha256 -n KwEditor -in "$file" -out "$file.signed" &&
      mv "$file.signed" "$file" || return 1
  done
}

# package_parts TREE OUT: the folders from which the archives are made.
package_parts() {
  local tree=$1 out=$2 bits build
  local all=$out/parts/KwEditor-$version
  rm -rf "$out"
  mkdir -p "$all"/{docs,samples,include,pascal} "$out/parts/symbols" || return 1
  "$tree/scripts/notices" "$out/parts/THIRD-PARTY-NOTICES" &&
    "$tree/scripts/notices" --check "$tree"/build/windows-x64/symbols/*.map &&
    "$tree/scripts/notices" --check "$tree"/build/windows-x86/symbols/*.map || return 1
  KW_PREFIX=$root/build/wine "$package_tools/registry" "$tree/build/windows-x64/KwEditor.ocx" "$out/parts/registry.txt" || return 1
  grep -qE "^## .*\b$version\b" "$tree/CHANGELOG.md" ||
    { echo "CHANGELOG.md has no heading with the version $version: add it"; return 1; }
  grep -qF "typelib tlbid=\"{4bfcb3e4-0334-4a07-b856-10d03c0d1fd0}\" version=\"${version%.*}\"" "$tree/samples/cpp/KwMinimal.manifest" ||
    { echo "samples/cpp/KwMinimal.manifest names another version than ${version%.*}: change it"; return 1; }
  cp "$tree"/{LICENSE,CHANGELOG.md} "$out/parts/THIRD-PARTY-NOTICES" "$all/" &&
    cp -r "$tree"/docs/. "$all/docs/" && cp -r "$tree"/samples/. "$all/samples/" &&
    cp "$tree/build/windows-x64/generated/activex/"{KwEditor.h,KwEditor_i.c} "$all/include/" &&
    "$package_tools/pascal-unit" "$tree" "$all/pascal/KwEditor_TLB.pas" || return 1
  for bits in x64 x86; do
    build=$tree/build/windows-$bits
    mkdir -p "$all/$bits" "$out/parts/symbols/$bits" "$out/parts/msi-$bits/docs" &&
      cp "${products[@]/#/$build/}" "$build/generated/activex/KwEditor.tlb" "$all/$bits/" &&
      package_sign "$all/$bits"/*.ocx "$all/$bits"/*.exe &&
      "$package_tools/manifest" $bits "$version" "$out/parts/registry.txt" "$all/$bits/KwEditor.manifest" &&
      cp "$build"/symbols/*.debug "$out/parts/symbols/$bits/" &&
      cp "${products[@]/#/$all/$bits/}" "$all"/{LICENSE,THIRD-PARTY-NOTICES,CHANGELOG.md} "$out/parts/msi-$bits/" &&
      cp "$tree"/docs/{hosting,reference,kwpic}.md "$out/parts/msi-$bits/docs/" || return 1
  done
  (cd "$all" && find . -type f -printf '%P\n' | LC_ALL=C sort | xargs -d '\n' sha256sum >../sums && mv ../sums SHA256SUMS)
}

# package_zip FOLDER OUT.zip NAME: the folder NAME below FOLDER, its files in order and with the commit's time.
package_zip() {
  find "$1/$3" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} + && rm -f "$2" &&
    (cd "$1" && find "$3" -type f | LC_ALL=C sort | zip -X -q -9 -@ "$2") && touch -d "@$SOURCE_DATE_EPOCH" "$2"
}

package_archives() {
  local out=$1 bits
  for bits in x64 x86; do
    "$package_tools/msi" $bits "$version" "$out/parts/registry.txt" "$out/parts/msi-$bits" "$out/parts/KwEditor-$version-$bits.msi" &&
      package_sign "$out/parts/KwEditor-$version-$bits.msi" && mv "$out/parts/KwEditor-$version-$bits.msi" "$out/" || return 1
  done
  package_zip "$out/parts" "$out/KwEditor-$version.zip" "KwEditor-$version" &&
    package_zip "$out/parts" "$out/KwEditor-$version-symbols.zip" symbols
}

package_all() {
  local tree=$1 out=$2
  package_parts "$tree" "$out" && package_archives "$out" && "$package_tools/debian" "$tree" "$version" "$out" || return 1
  (cd "$out" && sha256sum -- *.msi *.zip *.deb >SHA256SUMS)
}

command_package() {
  local check=0 folder=$root/$package_folder file
  sign_key="" sign_certificate=""
  while [ $# -gt 0 ]; do
    case $1 in
      --check) check=1 ;;
      --key | --certificate)
        # shellcheck disable=SC2154
        if ! file=$(cd "$caller" && realpath -e "${2-}" 2>/dev/null) || [ ! -f "$file" ] || [ ! -r "$file" ]; then
          fail "$1 needs a file that can be read: ./kw package --key KEY.pem --certificate CERTIFICATE.pem"
        fi
        declare -g "sign_${1#--}=$file"
        shift ;;
      *) fail "unknown option '$1': see ./kw help" ;;
    esac
    shift
  done
  [ -n "$sign_key" ] && [ -n "$sign_certificate" ] || [ -z "$sign_key$sign_certificate" ] ||
    fail "a signature needs both --key and --certificate"
  plan_packages run test package
  plan_codecs x64 x86
  plan_wine
  [ "$check" = 0 ] || plan_wine32
  plan+=(products 120 packages 30)
  [ "$check" = 0 ] || plan+=("the same again" 120 "installation under Wine" 120)
  expect "${plan[@]}"
  setup_packages run test package
  setup_codecs x64 x86
  setup_wine
  package_commit
  version=$(version_of .)
  step products build/package.log package_build "$folder/tree" ||
    fail "$(explain build/package.log "the products of the last commit do not build; see build/package.log")"
  step packages build/package.log package_all "$folder/tree" "$folder/out" ||
    fail "$(explain build/package.log "the packages cannot be made: $(tail -n 1 build/package.log)")"
  if [ "$check" = 1 ]; then
    ! scripts/wine32 --allowed >/dev/null || setup_wine32
    step "the same again" build/package.log package_again "$folder" ||
      fail "$(explain build/package.log "$(tail -n 1 build/package.log)")"
    step "installation under Wine" build/package.log "$package_tools/check" "$folder/out" "$version" ||
      fail "$(explain build/package.log "$(tail -n 1 build/package.log)")"
    grep '^package: ' build/package.log
  fi
  (cd "$folder/out" && find . -maxdepth 1 -type f -printf '%s %P\n' | sort -k 2 | sed 's/^/  /')
  [ -n "$sign_key" ] || say "these packages are unsigned: name a key with --key KEY.pem --certificate CERTIFICATE.pem"
  say "the packages of version $version are in $package_folder/out"
  times
}

# package_again FOLDER: builds the same commit in another folder, and packs it a second time.
package_again() {
  local again=$1/again name
  [ -z "$sign_key" ] || { echo "package: a signature holds its time, so nothing is compared"; return 0; }
  (package_build "$again/tree") && package_all "$again/tree" "$again/out" || return 1
  for name in $(cd "$1/out" && find . -maxdepth 1 -type f -printf '%P\n'); do
    cmp "$1/out/$name" "$again/out/$name" || { echo "$name differs from the same of a second build: find what tells the time or the folder"; return 1; }
  done
  rm -rf "$again/out"
  echo "package: a second build in another folder made the same files, byte by byte"
}
