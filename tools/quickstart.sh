#!/usr/bin/env bash
# Quick start on a fresh Debian 12 machine, as root or with sudo.
#
#   tools/quickstart.sh demo   install what is missing, build, run ooxml-dump on the bundled sample
#   tools/quickstart.sh test   install what is missing, build, run the whole test suite, then
#                              again in a clang build with AddressSanitizer, UndefinedBehaviorSanitizer
#                              and the libFuzzer targets, each of which runs for a short time
#   tools/quickstart.sh fuzz   only that sanitizer and fuzz build, and only the fuzz targets
#
# Builds go to build/ and build-sanitize/ (ccache makes rebuilds quick).  Each
# step prints how long it took, so that slow steps show in CI's log.
set -euo pipefail
cd "$(dirname "$0")/.."

# Runs a command as a named step and reports its wall time.
step() {
    local name=$1 start=$SECONDS
    shift
    echo "quickstart: -- $name"
    "$@"
    echo "quickstart: -- $name took $((SECONDS - start)) s"
}

PACKAGES="cmake g++ make python3 pkg-config ccache libwxgtk3.2-dev libexpat1-dev libgtest-dev"
FUZZ_PACKAGES="clang-14 libfuzzer-14-dev libclang-rt-14-dev"

install_missing() {
    local missing=""
    for package in $PACKAGES "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing="$missing $package"
    done
    [ -z "$missing" ] && return 0
    local sudo=""
    [ "$(id -u)" -ne 0 ] && sudo=sudo
    echo "quickstart: installing$missing"
    $sudo apt-get update -q
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -q --no-install-recommends $missing
}

build() {
    local dir=$1
    shift
    cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=Release "$@"
    cmake --build "$dir" -j "$(nproc)"
}

# One build for the sanitizers and the fuzz targets: every object carries both
# the sanitizers and libFuzzer's coverage instrumentation.
build_sanitize_fuzz() {
    build build-sanitize -DOOXML_BUILD_TESTS=ON -DOOXML_SANITIZE=ON \
        -DCMAKE_CXX_COMPILER=clang++-14 -DOOXML_BUILD_FUZZERS=ON
}

case "${1:-}" in
    demo)
        install_missing
        build build -DOOXML_BUILD_TESTS=OFF
        build/apps/ooxml-dump
        ;;
    test)
        step "install" install_missing $FUZZ_PACKAGES
        step "build" build build -DOOXML_BUILD_TESTS=ON
        step "tests" ctest --test-dir build --output-on-failure
        step "sanitizer build" build_sanitize_fuzz
        step "sanitizer tests" ctest --test-dir build-sanitize --output-on-failure -LE fuzz
        step "fuzz runs" ctest --test-dir build-sanitize --output-on-failure -L fuzz
        ;;
    fuzz)
        install_missing $FUZZ_PACKAGES
        build_sanitize_fuzz
        ctest --test-dir build-sanitize --output-on-failure -L fuzz
        ;;
    *)
        echo "usage: tools/quickstart.sh demo|test|fuzz" >&2
        exit 2
        ;;
esac
