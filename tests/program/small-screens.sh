#!/usr/bin/env bash
# Tests of sizes and boxes on a real X server with a window manager, on the two
# small screens: 1280x720 at 100 % and 1920x1080 at 150 %. Skipped (77) without xvfb-run or
# openbox.
#   small-screens.sh <test program> <gtest filter>
set -u
program=$1
filter=$2
command -v xvfb-run >/dev/null && command -v openbox >/dev/null || exit 77
run() { # screen, scale
  env -u QT_QPA_PLATFORM xvfb-run -a -s "-screen 0 $1x24" bash -c '
    openbox >/dev/null 2>&1 & wm=$!
    # The window manager is up once it owns the screen; the tests need it from their first window.
    for _ in $(seq 50); do xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q "window id" && break; sleep 0.1; done
    QT_SCALE_FACTOR='"$2"' "$0" --gtest_filter="$1" --gtest_brief=1; status=$?
    kill $wm; exit $status' "$program" "$filter"
}
run 1280x720 1 && run 1920x1080 1.5
