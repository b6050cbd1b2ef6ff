#!/usr/bin/env bash
# Installs what is missing, builds and starts Zolvane Design Studio with the given arguments.
# Without arguments it opens the bundled example design.
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
"$ROOT/scripts/install-deps.sh"
"$ROOT/scripts/build.sh"
if [ $# -eq 0 ]; then
  example="$ROOT/examples/new_motor.zva"
  if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    echo "There is no display for the window here."
    echo "Run a headless operation instead, for example:"
    echo "  ./run.sh --operation read --exchange-file /tmp/out.mat $example"
    exit 0
  fi
  set -- "$example"
fi
# Started from the caller's folder, so that relative paths mean what the caller meant.
exec "$ROOT/build/zolvane-ds" "$@"
