#!/bin/bash
# Builds with the sanitizers and runs all tests; ends non-zero when one fails.
#
#   ./test.sh [CMAKE OPTION]...
set -euo pipefail
cd "$(dirname "$0")"
. scripts/setup.sh

install_packages "${build_packages[@]}" libgtest-dev
build_preset tests "$@"
say "Running the tests"
ctest --test-dir build/tests --output-on-failure -j "$(nproc)"
