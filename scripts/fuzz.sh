#!/usr/bin/env bash
# Builds the fuzz targets of the file readers with clang in build-fuzz/ and runs each
# for SECONDS, one after the other, on a corpus seeded from the bundled files.
# Findings (crash-*, leak-*, timeout-*) land in build-fuzz/findings/<target>/.
set -euo pipefail
SECONDS_EACH="${1:?usage: scripts/fuzz.sh SECONDS}"
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD_DIR="${FUZZ_BUILD_DIR:-$ROOT/build-fuzz}"
JOBS="${FUZZ_JOBS:-1}"
# FUZZ_TARGETS="a b" runs only those.
read -r -a TARGETS <<< "${FUZZ_TARGETS:-fuzz_material_text fuzz_script_catalogue fuzz_undo_history fuzz_document fuzz_mat_file}"

export CCACHE_BASEDIR="$ROOT" CCACHE_NOHASHDIR=true
if [ ! -f "$BUILD_DIR/build.ninja" ]; then
  CC=clang CXX=clang++ cmake -S "$ROOT" -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZDS_FUZZ=ON
fi
cmake --build "$BUILD_DIR" -j "$JOBS" --target "${TARGETS[@]}"

# Seeds: the bundled designs, material files, script catalogues, an undo history, and
# in fuzz/seeds/ what the program writes of the bundled example for a parent: its motor
# properties (zolvane-ds examples/new_motor.zva --operation getProps --exchange-file
# motorProps.mat) and its protected form holding them as simulation data (of a copy
# named new_motor.zvap: zolvane-ds new_motor.zvap --operation write --exchange-file
# motorProps.mat). motorPropsCompressed.mat holds the same variables each compressed,
# as a parent program saves them by default.
seed() {
  local target="$1"
  local corpus="$BUILD_DIR/corpus/$target"
  mkdir -p "$corpus"
  case "$target" in
    fuzz_document) cp "$ROOT"/examples/*.zva "$ROOT"/fuzz/seeds/*.zvap "$corpus"/ ;;
    fuzz_mat_file) cp "$ROOT"/fuzz/seeds/*.mat "$corpus"/ ;;
    fuzz_script_catalogue) for f in "$ROOT"/assets/scripts/*/.*.json; do cp "$f" "$corpus/$(basename "$f")"; done ;;
    fuzz_undo_history)
      printf '%s' '{"cmds":[{"type":"UndoCommand","text":"a"},{"type":"CommandSetPropertyObject","object":"airgap1","nameProp":"thickness","prevValue":"AAAABgBAAAAAAAAAAA==","newValue":"AAAABgA/8AAAAAAAAA=="}],"index":1,"version":1}' \
        > "$corpus/history.json" ;;
    fuzz_material_text)
      # The first byte chooses the kind: 0 iron, 1 magnet, 2 conductor.
      local kind=0
      for folder in Iron Magnet Conductor; do
        local i=0
        while IFS= read -r -d '' f; do
          { printf "\\x$(printf %02x "$kind")"; cat "$f"; } > "$corpus/$folder-$i.txt"
          i=$((i + 1))
        done < <(find "$ROOT/assets/materials/$folder" -name '*.txt' -print0 | head -z -n 20)
        kind=$((kind + 1))
      done ;;
  esac
  echo "$corpus"
}

# Each target runs in two passes. The fuzzing pass looks for crashes and hangs with the
# fast unwinder. The leak pass then runs every input of the grown corpus once more with
# the full unwinder, and the leak checker looks once, when it ends: the suppressions name
# frames inside Qt, Open CASCADE and netgen, which keep no frame pointers, and the full
# unwinder on every allocation makes a design's load twenty times slower, too slow to
# fuzz.
status=0
for target in "${TARGETS[@]}"; do
  corpus="$(seed "$target")"
  findings="$BUILD_DIR/findings/$target"
  mkdir -p "$findings"
  # A design that loads builds its bodies' geometry: seconds under the sanitizers.
  timeout=10
  [ "$target" = fuzz_document ] && timeout=120
  # libmatio asks for what a damaged file declares, sizes that wrapped below zero
  # among them, and copes when it is refused: refused it is, as the C library would.
  asan_options=""
  [ "$target" = fuzz_mat_file ] && asan_options="allocator_may_return_null=1:"
  run() {
    # Undefined behaviour ends the run as a crash would, so that it leaves its input.
    (cd "$BUILD_DIR/fuzz" && QT_QPA_PLATFORM=offscreen LSAN_OPTIONS="suppressions=$ROOT/fuzz/lsan.supp" \
        UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
        ASAN_OPTIONS="$asan_options$1" "./$target" -timeout="$timeout" -rss_limit_mb=4096 \
        -artifact_prefix="$findings/" "${@:2}" "$corpus")
  }
  echo "== $target: fuzzing for ${SECONDS_EACH}s"
  run detect_leaks=0 -detect_leaks=0 -max_total_time="$SECONDS_EACH" || status=1
  echo "== $target: leaks, over $(ls "$corpus" | wc -l) inputs"
  run fast_unwind_on_malloc=0 -detect_leaks=0 -runs=0 || status=1
done
exit $status
