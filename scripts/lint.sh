#!/bin/bash
# Are the sources formatted as .clang-format says, sound as .clang-tidy asks, and in the layers of the map?
#
#   scripts/lint.sh            everything
#   scripts/lint.sh FILE...    these sources only
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/setup.sh

install_packages "${build_packages[@]}" git clang clang-format clang-tidy
scripts/check-layers.sh

sources=("$@")
[ $# -gt 0 ] || mapfile -t sources < <(git ls-files '*.cpp' '*.h')
clang-format --dry-run -Werror "${sources[@]}"
echo "${#sources[@]} sources are formatted"

# The commands of a compiler that clang-tidy understands; nothing is compiled but the texts of the page.
cmake --preset lint >/dev/null
# Tests, benchmarks and fuzz targets are left out: what the macros of their libraries become is not ours.
mapfile -t units < <(printf '%s\n' "${sources[@]}" | grep -E '^(src|tools)/.*\.cpp$')
[ ${#units[@]} -gt 0 ] || exit 0
printf '%s\0' "${units[@]}" | xargs -0 -P "$(nproc)" -n 4 clang-tidy -p build/lint --quiet 2>/dev/null
echo "${#units[@]} sources are tidy, with the headers they read"
