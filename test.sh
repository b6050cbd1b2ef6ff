#!/usr/bin/env bash
# Installs what is missing, builds and runs all tests headless.
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
"$ROOT/scripts/install-deps.sh"
"$ROOT/scripts/build.sh"
export QT_QPA_PLATFORM=offscreen
cd "$ROOT/build"
# The 3D views need OpenGL: they get a virtual display with Mesa.
xvfb-run -a -s "-screen 0 1280x1024x24" ctest --output-on-failure -j "$(nproc)" "$@"
