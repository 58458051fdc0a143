#!/bin/bash
# Builds with the sanitizers and runs all tests, those of the inspector and of the documents included;
# ends non-zero when one fails. The browser, a monitoring system, kills, full disks and fuzzing are no
# part of it: .ci/run.
#
#   ./test.sh [CMAKE OPTION]...
set -euo pipefail
cd "$(dirname "$0")"
. scripts/setup.sh

install_packages "${build_packages[@]}" libgtest-dev python3 python3-cram
build_preset tests "$@"
say "Running the tests"
ctest --test-dir build/tests --output-on-failure -j "$(nproc)"
