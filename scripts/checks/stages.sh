#!/usr/bin/env bash
# stages.sh STAGE: one stage of ./check. Prints what it found; its last line is the summary.
# Takes from the environment: fuzz_seconds, lint_folders (words).
# shellcheck source=scripts/common.sh
source "$(dirname "$(readlink -f "$0")")/../common.sh"
: "${fuzz_seconds:=30}" "${lint_folders:=src}"

sources() { git ls-files -co --exclude-standard -- '*.cpp' '*.h'; }

check_format() { sources | xargs clang-format-14 --dry-run -Werror; }

check_scripts() {
    shellcheck -x run test bench check .ci/run scripts/*.sh scripts/*/*.sh testbed/*.sh
    PYTHONPYCACHEPREFIX=$root/build/pycache python3 -m compileall -q scripts testbed
}

check_layers() { /usr/bin/python3 scripts/checks/layers.py; }

check_translations() { scripts/checks/translations.sh; }

check_lint() {
    build release
    # shellcheck disable=SC2086 # words
    /usr/bin/python3 scripts/checks/lint.py build $lint_folders -j "$jobs"
}

check_asan() {
    # The fonts and the image plugins that Qt loads stay loaded until the end. The build asks the
    # test programs for their lists.
    export LSAN_OPTIONS=suppressions=$root/scripts/checks/lsan.supp:print_suppressions=0
    build asan
    # Less is kept back of what was freed than usual (256 MB): a test holds a stream to its memory.
    ASAN_OPTIONS=detect_stack_use_after_return=1:quarantine_size_mb=32 UBSAN_OPTIONS=print_stacktrace=1 \
        run_tests asan asan-tests
}

# The tests with more than one thread; without the page turning, which has to keep time. The stand is
# a program of its own and comes from the release: checked, it paints too slowly for a camera.
check_tsan() {
    build tsan pictor_resources pictor pictor-probe pictor-stand killed_recorder test_app \
        test_camera test_video test_features test_platform test_e2e
    build release pictor-stand
    cp -f build/bin/pictor-stand build-tsan/bin/
    TSAN_OPTIONS=suppressions=$root/scripts/checks/tsan.supp \
        run_tests tsan tsan-tests -R '^(app|camera|video|features|platform)\.|'\
'^e2e\.(Closing|Jobs|Unplugging|BadStream|Language|Pdf|Recording)\.'
}

check_coverage() {
    build coverage
    find build-coverage -name '*.gcda' -delete
    run_tests coverage coverage-tests
    # In the build folder, where what it leaves behind when it is stopped does no harm.
    (cd build-coverage && gcovr -r "$root" -f "$root/src/" -e '.*autogen.*' -e '.*moc_.*' \
        -j "$jobs" --exclude-throw-branches --txt "$root/build/coverage.txt" .)
    tail -n 3 build/coverage.txt
}

# Sixty pages turned at each size, undisturbed and not; a minute recorded beside the live picture.
check_long() {
    build release
    PICTOR_LONG_TESTS=1 QT_QPA_PLATFORM=offscreen build/tests/test_e2e \
        --gtest_filter='*PageTurn*:Recording.*'
}

check_fuzz() {
    local program name targets=0
    build fuzz
    for program in build-fuzz/fuzz/fuzz_*; do
        [ -f "$program" ] || continue
        name=$(basename "$program")
        mkdir -p "build-fuzz/corpus/$name"
        "$program" -max_total_time="$fuzz_seconds" -rss_limit_mb=2048 -print_final_stats=1 \
            "build-fuzz/corpus/$name"
        targets=$((targets + 1))
    done
    say "$targets targets, $fuzz_seconds s each, without a finding"
}

# Into $package.
build_package() {
    build release
    rm -f build/pictor_*.deb
    (cd build && cpack)
    package=$(ls build/pictor_*.deb)
}

# The package, unpacked into a clean folder, runs a step of the tour from there.
check_package() {
    local package unpacked=build/unpacked id=org.pictor.Pictor
    build_package
    rm -rf "$unpacked"
    dpkg-deb -x "$package" "$unpacked"
    desktop-file-validate "$unpacked/usr/share/applications/$id.desktop"
    appstreamcli validate --no-net "$unpacked/usr/share/metainfo/$id.metainfo.xml"
    test -x "$unpacked/usr/bin/pictor"
    test -f "$unpacked/usr/share/doc/pictor/copyright"
    # What the bundle for macOS is made of, as far as another system can tell.
    python3 -c 'import plistlib, sys; plistlib.load(open(sys.argv[1], "rb"))["NSCameraUsageDescription"]' \
        packaging/macos/Info.plist.in
    cmake -G Ninja -S . -B build/macos-rules -DAPPLE=1 -DPICTOR_TESTS=OFF -DPICTOR_BENCH=OFF
    build/bin/pictor-iconset src/resources/icon/pictor.svg build/pictor.iconset
    [ "$(find build/pictor.iconset -name '*.png' | wc -l)" = 10 ]
    /usr/bin/python3 -B scripts/tour/tour.py build/package-tour \
        --programs "$unpacked/usr/lib/pictor" --only capture --only panels-chinese
    say "$(basename "$package"), $(stat -c %s "$package") bytes"
}

# The program against the kernel's own drivers, in a guest that is built once, outside of the tree.
check_devices() {
    local result=build/devices code=0 package
    build_package
    testbed/build.sh
    rm -rf "$result"
    testbed/guest.sh -o "$result" -t 1500 /usr/bin/python3 -B testbed/devices.py /vmjob/out \
        "$package" | tee build/devices.txt || code=$?
    testbed/guest.sh -v -o "$result" -t 300 /usr/bin/python3 -B testbed/devices.py /vmjob/out \
        "$package" | tee -a build/devices.txt || code=$?
    [ "$code" = 0 ] || return "$code"
    say "$(wc -l <build/devices.txt) steps, see build/devices.txt"
}

declare -F "check_$1" >/dev/null || fail "there is no stage $1"
"check_$1"
