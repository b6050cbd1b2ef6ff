#!/usr/bin/env bash
# Refreshes docs/main-window.png: the window test that opens the bundled example
# saves what it draws when ZDS_SCREENSHOT names a file.
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
"$ROOT/scripts/build.sh" --target test_ui
cd "$ROOT/build/tests"
QT_QPA_PLATFORM=offscreen ZDS_SCREENSHOT="$ROOT/docs/main-window.png" \
  xvfb-run -a -s "-screen 0 1280x1024x24" ./test_ui \
  --gtest_filter='MainWindowTest.TheMotorPageDrawsTheMachineAndFollowsAChangeAndItsUndo'
