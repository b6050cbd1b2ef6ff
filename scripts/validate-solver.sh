#!/usr/bin/env bash
# Compares our solver with GetDP on one slice of the bundled example, on the same mesh,
# materials and currents, and writes the cases and both solve times as JSON:
#   scripts/validate-solver.sh OUT.json
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
if [ $# -ne 1 ]; then
  echo "usage: $0 OUT.json" >&2
  exit 2
fi
if ! command -v getdp >/dev/null; then
  echo "GetDP is not installed: scripts/install-deps.sh installs it" >&2
  exit 1
fi
OUT="$(cd "$(dirname "$1")" && pwd)/$(basename "$1")"
"$ROOT/scripts/build.sh" -j 1 --target zds_solver_reference
WORK="$(mktemp -d)"
trap 'rm -rf "$WORK"' EXIT
QT_QPA_PLATFORM=offscreen "$ROOT/build/bench/zds_solver_reference" "$OUT" "$WORK"
