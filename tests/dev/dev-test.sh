#!/usr/bin/env bash
# dev-test.sh CASE DEV: runs a copy of the script over made-up packages, with stand-ins for what it calls. Writes below
# TMPDIR alone.
set -euo pipefail

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
project=$folder/project
calls=$folder/calls
display=:0

fail() {
    printf 'dev-test: %s\n' "$*" >&2
    cat "$folder/output" "$calls" >&2
    exit 1
}

# stand_in NAME < script
stand_in() {
    # Not through a link to the real one.
    rm -f "$folder/bin/$1"
    { echo '#!/bin/sh' && cat; } >"$folder/bin/$1"
    chmod +x "$folder/bin/$1"
}

prepare() {
    local tool
    mkdir -p "$project/packaging/packages" "$project/build" "$folder/bin"
    cp "$1" "$project/dev"
    cp "$(dirname "$1")/packaging/packages/need.sh" "$project/packaging/packages/"
    cp "$(dirname "$1")/packaging/display.sh" "$project/packaging/"
    printf 'made-up-compiler\n' >"$project/packaging/packages/build.txt"
    printf 'made-up-display\n' >"$project/packaging/packages/display.txt"
    printf 'made-up-framework\n' >"$project/packaging/packages/test-build.txt"
    printf 'docker.io\nmade-up-tool\n' >"$project/packaging/packages/test.txt"
    : >"$calls"
    printf 'made-up-compiler\nmade-up-display\nmade-up-framework\nmade-up-tool\ndocker.io\n' >"$folder/installed"
    for tool in bash cat comm dirname env mkdir nproc sed sh sort uname; do
        ln -s "$(command -v "$tool")" "$folder/bin/$tool"
    done
    stand_in id <<<'echo 1000'
    stand_in dpkg-query <<<"sed 's/^/ii  /' '$folder/installed'"
    stand_in apt-get <<<"echo apt-get \"\$@\" >>'$calls'"
    stand_in ctest <<<"echo ctest \"\$@\" >>'$calls'"
    # Leaves behind what the real one does, as far as the script looks at it.
    stand_in cmake <<STAND_IN
echo cmake "\$@" >>'$calls'
for argument; do
    case \$argument in
    -DZENTRILL_BUILD_TESTS=*)
        mkdir -p build/release
        : >build/release/build.ninja
        echo "ZENTRILL_BUILD_TESTS:BOOL=\${argument#*=}" >build/release/CMakeCache.txt
        ;;
    esac
done
STAND_IN
    mkdir -p "$project/build/release/Zentrill.app/Contents/MacOS"
    printf '#!/bin/sh\n' >"$project/build/release/Zentrill.app/Contents/MacOS/Zentrill"
    chmod +x "$project/build/release/Zentrill.app/Contents/MacOS/Zentrill"
}

dev() { env -i PATH="$folder/bin" HOME="$folder" TMPDIR="$folder" DISPLAY="$display" "$project/dev" "$@" >"$folder/output" 2>&1; }

expect_output() { grep -qF -- "$1" "$folder/output" || fail "the output does not tell: $1"; }
expect_call() { grep -qxF -- "$1" "$calls" || fail "not called: $1"; }
expect_no_call() { ! grep -q -- "$1" "$calls" || fail "called: $1"; }
has_only() { printf '%s\n' "$@" >"$folder/installed"; }

# Whoever may not install is told what to install.
case_hint() {
    has_only made-up-compiler docker.io
    if dev test; then fail "went on without its packages"; fi
    expect_output 'apt-get install --no-install-recommends made-up-framework made-up-tool'
    expect_no_call apt-get
}

# With its packages present, it asks for nobody's rights and says nothing about packages.
case_quiet() {
    dev test || fail "failed"
    expect_no_call apt-get
    if grep -qiE 'root|install' "$folder/output"; then fail "speaks of packages"; fi
}

# The Docker Engine as its makers package it: Debian's would replace it.
case_brought_otherwise() {
    if [ ! -x /usr/bin/docker ] || { [ ! -x /usr/bin/dockerd ] && [ ! -x /usr/sbin/dockerd ]; }; then exit 77; fi
    has_only made-up-compiler made-up-framework made-up-tool
    dev test || fail "wants a second engine"
}

case_no_display() {
    has_only made-up-compiler
    display=''
    if dev run; then fail "went on without a display"; fi
    expect_output 'there is no display for the window, and a virtual one needs packages that root has to install: made-up-display'
    expect_no_call apt-get
}

case_no_virtual_display() {
    display=''
    for tool in mktemp rm sleep; do ln -s "$(command -v "$tool")" "$folder/bin/$tool"; done
    stand_in Xvfb <<<'exit 1'
    if dev run; then fail "went on without a display"; fi
    expect_output 'there is no display for the window, and no virtual one can be had'
}

case_sudo() {
    stand_in sudo <<<"echo sudo >>'$calls'; exec \"\$@\""
    ln -s "$(type -P true)" "$folder/bin/true"
    has_only made-up-compiler docker.io
    dev test || fail "failed"
    expect_call 'apt-get install -y -qq --no-install-recommends --no-remove made-up-framework'
    expect_call 'apt-get install -y -qq --no-install-recommends --no-remove made-up-tool'
    [ "$(grep -c '^apt-get update' "$calls")" -eq 1 ] || fail "asks for the lists of packages again"
}

# A package manager that takes until it is waited for, or until the test ends.
install_slowly() {
    ln -s "$(command -v sleep)" "$folder/bin/sleep"
    stand_in id <<<'echo 0'
    stand_in apt-get <<STAND_IN
case \$* in update*) exit 0 ;; esac
until [ ! -e '$calls' ] || '$(command -v grep)' -q 'Waiting for the packages' '$folder/output'; do sleep 0.01; done
echo apt-get "\$@" >>'$calls'
STAND_IN
}

expect_order() { [ "$(grep -nE -m 1 "$1" "$calls" | cut -d : -f 1)" -lt "$(grep -nE -m 1 "$2" "$calls" | cut -d : -f 1)" ] || fail "not in this order: $1, $2"; }

# What only running the tests needs is installed while they are built, and is there before they run.
case_meanwhile() {
    has_only made-up-compiler made-up-framework docker.io
    install_slowly
    dev test || fail "failed"
    expect_order '^cmake --build' '^apt-get install .* made-up-tool$'
    expect_order '^apt-get install' '^ctest'
}

case_not_installed_meanwhile() {
    has_only made-up-compiler made-up-framework docker.io
    stand_in id <<<'echo 0'
    stand_in apt-get <<<'echo no such package; exit 100'
    if dev test; then fail "went on without its packages"; fi
    expect_output 'no such package'
    expect_output 'try it by hand: apt-get install --no-install-recommends made-up-tool'
    expect_no_call '^ctest'
}

# A package manager that is still at work is waited for, whatever comes of the build.
case_build_fails_meanwhile() {
    has_only made-up-compiler made-up-framework docker.io
    install_slowly
    stand_in cmake <<<"echo build failed >>'$calls'; exit 1"
    if dev test; then fail "went on without a build"; fi
    expect_call 'apt-get install -y -qq --no-install-recommends --no-remove made-up-tool'
    expect_no_call '^ctest'
}

# Folders of tests are built and run alone.
case_folders() {
    mkdir -p "$project/tests/catalog" "$project/tests/models"
    touch "$project/tests/catalog/CMakeLists.txt" "$project/tests/models/CMakeLists.txt"
    stand_in nproc <<<'echo 3'
    dev test catalog models -R Size || fail "failed"
    expect_call 'cmake --build --preset release --target tests-catalog tests-models'
    expect_call 'ctest --preset release -j 5 --label-regex ^(catalog|models)$ -R Size'
    if dev test kitchen; then fail "tests in a folder that is not there"; fi
    expect_output 'there are no tests in tests/kitchen'
}

case_sanitizer() {
    mkdir -p "$project/tests/models"
    touch "$project/tests/models/CMakeLists.txt" "$project/packaging/packages/clang.txt"
    stand_in nproc <<<'echo 3'
    dev sanitize thread models || fail "failed"
    expect_call 'cmake --build --preset tsan --target tests-models'
    expect_call 'ctest --preset tsan -j 5 --label-regex ^(models)$'
    dev sanitize -R Size || fail "failed"
    expect_call 'ctest --preset asan -j 5 -R Size'
}

# The menu entry's command starts what was installed, whatever the home folder is called.
case_install() {
    local home="$folder/the \"home\" of \`\$sam\`, 100% \\ his" data command
    data="$home/.local/share"
    for tool in cp grep id mkdir rm sed touch; do rm -f "$folder/bin/$tool" && ln -s "$(command -v "$tool")" "$folder/bin/$tool"; done
    mkdir -p "$home" "$project/packaging/desktop" "$project/build/release/Zentrill.app/Contents/Resources"
    cp "$1/packaging/desktop/"*.sh "$1/packaging/desktop/"*.desktop "$project/packaging/desktop/"
    cp "$1/packaging/icon/zentrill.svg" "$project/build/release/Zentrill.app/Contents/Resources/"
    printf '#!/bin/sh\necho started >>"%s"\n' "$calls" >"$project/build/release/Zentrill.app/Contents/MacOS/Zentrill"
    printf '<string>com.user.Zentrill</string>\n' >"$project/build/release/Zentrill.app/Contents/Info.plist"
    env -i PATH="$folder/bin" HOME="$home" "$project/dev" install >"$folder/output" 2>&1 || fail "failed"
    # The entry's own escapes are undone here; those of its quotes are the same as a shell's.
    command=$(sed -n 's/^Exec=//p' "$data/applications/com.user.Zentrill.desktop" | sed -e 's/\\\\/\\/g' -e 's/%%/%/g')
    sh -c "$command" || fail "this does not start: $command"
    expect_call started
    [ -s "$data/icons/hicolor/scalable/apps/com.user.Zentrill.svg" ] || fail "there is no icon"
    grep -qx 'Icon=com.user.Zentrill' "$data/applications/com.user.Zentrill.desktop" || fail "the entry has no icon"
    env -i PATH="$folder/bin" HOME="$home" XDG_DATA_HOME="$folder/data" "$project/dev" install >"$folder/output" 2>&1 ||
        fail "does not replace an earlier one"
    [ -s "$folder/data/applications/com.user.Zentrill.desktop" ] || fail "the entry is not where the account has its data"
    printf '<string>com.somebody.else</string>\n' >"$home/Applications/Zentrill.app/Contents/Info.plist"
    if env -i PATH="$folder/bin" HOME="$home" "$project/dev" install >"$folder/output" 2>&1; then
        fail "replaces what is not Zentrill"
    fi
    expect_output 'is not Zentrill: move it away first'
    grep -q somebody "$home/Applications/Zentrill.app/Contents/Info.plist" || fail "removed what is not Zentrill"
}

case_first_run() {
    has_only made-up-compiler
    dev run || fail "the program wants the tests' packages"
    expect_call 'cmake --preset release -DZENTRILL_BUILD_TESTS=OFF'
    expect_call 'cmake --build --preset release --target Zentrill'
}

case_test_after_run() {
    dev run
    dev test
    expect_call 'cmake --preset release -DZENTRILL_BUILD_TESTS=ON'
    expect_call 'cmake --build --preset release'
}

# Taking the tests out of the folder would have them built again the next time.
case_run_after_test() {
    dev test
    dev run
    expect_no_call BUILD_TESTS=OFF
}

# What the folder was configured with a week ago may be gone, or want more by now.
case_run_without_test_packages() {
    dev test
    has_only made-up-compiler
    dev run || fail "the program wants the tests' packages"
    expect_call 'cmake --preset release -DZENTRILL_BUILD_TESTS=OFF'
}

prepare "$2"
"case_$1" "$(dirname "$2")"
