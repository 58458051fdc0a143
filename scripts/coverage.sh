#!/bin/bash
# Which lines of src/ and tools/inspect/ do the tests run? Builds build/coverage, runs all tests there, and
# prints a table, the least covered files at its end. What a process runs that ends at once, as the workers
# of "vantrel-inspect sites" do, is not counted (glance.cpp), and what a build ran is not, either.
#
#   scripts/coverage.sh [GCOVR OPTION]...     such as --html-details build/coverage/index.html
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/setup.sh

install_packages "${build_packages[@]}" libgtest-dev python3 python3-cram gcovr
cmake -S . -B build/coverage -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS="-O0 --coverage" -DVANTREL_TESTS=ON
cmake --build build/coverage -j "$(nproc)"
# Some tests go on as "nobody", who has to find the files for the counts.
find build/coverage -name '*.gcno' | while read -r notes; do
  : >"${notes%.gcno}.gcda"
  chmod 666 "${notes%.gcno}.gcda"
done
ctest --test-dir build/coverage --output-on-failure -j "$(nproc)"
find build/coverage -name '*.gcda' -empty -delete
gcovr --root . --filter src/ --filter tools/inspect/ --sort-percentage --print-summary "$@" build/coverage
