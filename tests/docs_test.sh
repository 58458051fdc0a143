#!/bin/bash
# The commands in the documents, and those of tests/*.t, run as they stand there: what they print
# must be what stands below them. Takes a C++ compiler and cram (the Debian package python3-cram).
#
#   tests/docs_test.sh BUILD_DIRECTORY [--update]     --update writes tests/*.t anew from what is printed
set -eu
build=$(realpath "$1")
project=$(realpath "$(dirname "$0")/..")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
c++ -O1 -shared -fPIC -o "$work/clock.so" "$project/bench/frozen_clock.cpp"

# For the documents it is 13:07, and each run is a minute after the one before it. A site begins with
# the moment in $BEGIN, if it is to begin at another, and is looked at in the moment $AT.
mkdir "$work/bin"
cat >"$work/bin/vantrel-sample-site" <<END
#!/bin/sh
date -d "\${BEGIN:-2026-11-16 13:07:10}" +%s >$work/now
exec $build/vantrel-sample-site "\$@" --ranges 1 --at \$(cat $work/now)
END
cat >"$work/bin/vantrel-cron" <<END
#!/bin/sh
now=\$(cat $work/now)
echo \$((now + 60)) >$work/now
FROZEN_CLOCK=\$now LD_PRELOAD=$work/clock.so exec $build/vantrel-cron
END
cat >"$work/bin/vantrel-inspect" <<END
#!/bin/sh
read now <$work/now
now=\$((now - 40))
[ -z "\$AT" ] || now=\$(date -d "2026-11-16 \$AT" +%s)
FROZEN_CLOCK=\$now LD_PRELOAD=$work/clock.so exec $build/vantrel-inspect "\$@"
END
chmod 755 "$work"/bin/*
ln -s "$build/tools/inspect/vantrel-event-pages" "$work/bin"

# Blocks without a command are not to be tried. Where a document fails, cram writes beside it.
for document in concepts operating; do
  awk '!/^    / { plain = 0 } /^    / && !code { plain = !/^    \$ / } { code = /^    / } !plain' \
    "$project/docs/$document.md" >"$work/$document.md"
done
cp "$project"/tests/*.t "$work/"
PATH=$work/bin:$project/examples:$PATH TZ=UTC \
  cram3 --indent=4 --preserve-env --shell=/bin/bash "$work"/*.md "$work"/*.t && exit
for result in "$work"/*.err; do
  document=$(basename "$result" .err)
  diff "$work/$document" "$result" | sed -n "s/^\([0-9]\+\).*/FAIL $document, line \1/p"
  [ "${2:-}" = --update ] && [ "$document" != "${document%.t}" ] && cp "$result" "$project/tests/$document"
done
[ "${2:-}" = --update ]
