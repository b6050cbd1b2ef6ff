#!/usr/bin/env bash
# Installs the Debian 12 packages that building, running and testing need.
# Idempotent: asks apt only for what is missing.
set -euo pipefail

PACKAGES=(
  # toolchain
  build-essential cmake ninja-build ccache pkg-config
  # Qt 5
  qtbase5-dev qtbase5-dev-tools qtdeclarative5-dev libqt5charts5-dev
  libqt5opengl5-dev libqt5svg5-dev libqt5x11extras5-dev
  # Open CASCADE: modelling, data exchange, OCAF, visualisation
  libocct-foundation-dev libocct-modeling-data-dev libocct-modeling-algorithms-dev
  libocct-data-exchange-dev libocct-ocaf-dev libocct-visualization-dev
  # CGAL with its Qt 5 items, and what it stands on
  libcgal-dev libcgal-qt5-dev libgmp-dev libmpfr-dev libboost-dev
  # meshing, MAT files, plots, numerics, parallelism
  libnglib-dev libmatio-dev libqcustomplot-dev libalglib-dev libeigen3-dev libtbb-dev
  # compressed blocks of document files
  zlib1g-dev
  # tests and benchmarks; GetDP, the reference for our solver
  libgtest-dev libgmock-dev libbenchmark-dev getdp
  # headless display with software OpenGL
  xvfb xauth libgl1-mesa-dri
)

missing=()
for pkg in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$pkg")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing missing packages: ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
