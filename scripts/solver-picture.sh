#!/usr/bin/env bash
# Refreshes docs/solver-example.png: the bundled example's torque and back-EMF over one
# electrical period, as our solver computes them.
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
"$ROOT/scripts/build.sh" -j 1 --target zds_solver_plot
WORK="$(mktemp -d)"
trap 'rm -rf "$WORK"' EXIT
"$ROOT/build/bench/zds_solver_plot" "$ROOT/docs/solver-example.png" "$WORK"
