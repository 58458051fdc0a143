#!/bin/bash
# Does every folder of src/ use only what the map in the README says it may? The events, the event log
# and the error pages of src/run/ are ground for all.
set -euo pipefail
cd "$(dirname "$0")/.."

ground='run/(events|event_log|error_page)\.h'
wrong=0
folders=0
for folder in src/*/; do
  name=$(basename "$folder")
  # The words of the map's second column: they end where two blanks follow.
  may=$(sed -nE "s|^    src/$name/ +(([a-z]+ )*[a-z]+)  .*|\1|p" README.md)
  [ -n "$may" ] || { echo "README.md: the map lacks src/$name/"; wrong=1; continue; }
  folders=$((folders + 1))
  [ "$may" = "all of them" ] && continue
  allowed="($name|${may// /|})/"
  if grep -rnE '#include "[a-z]+/' "$folder" | grep -vE "#include \"($allowed|$ground)"; then
    echo "src/$name/ may use only: $may"
    wrong=1
  fi
done
[ "$folders" -gt 0 ] && [ "$wrong" = 0 ] && echo "$folders folders of src/ use what they may"
