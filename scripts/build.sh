#!/usr/bin/env bash
# Configures and builds into ./build with Ninja and ccache.
# Objects are shared between clones through ccache: paths are hashed relative to the clone.
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
export CCACHE_BASEDIR="$ROOT"
export CCACHE_NOHASHDIR=true
export CCACHE_SLOPPINESS="pch_defines,time_macros,include_file_mtime,include_file_ctime"
export CCACHE_MAXSIZE="${CCACHE_MAXSIZE:-5G}"
BUILD_DIR="${BUILD_DIR:-$ROOT/build}"
if [ ! -f "$BUILD_DIR/build.ninja" ]; then
  cmake -S "$ROOT" -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=Release
fi
cmake --build "$BUILD_DIR" -j "$(nproc)" "$@"
