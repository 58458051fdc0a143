#!/bin/bash
# The inspector against whole sites: every view, and that nothing of a site changes, however damaged it
# is. The verdicts of the doctor have a table of their own, check_cases.py.
#
#   tests/inspect_test.sh BUILD_DIRECTORY [views|damaged]
#
# Takes a C++ compiler and python3. Started as root it gives the sites to "nobody" and goes on as that
# user, so that permissions count.
set -u
half=${2:-}
work=$(mktemp -d)
chmod 755 "$work"
trap 'chmod -R u+rwx "$work"; rm -rf "$work"' EXIT
build=$work # the build folder may lie where "nobody" cannot go
cp "$1"/vantrel-{cron,inspect,sample-site,day} "$build" || exit 1
export TZ=UTC
now=1794833290 # 2026-11-16 12:48:10, a minute in which both periodic companion scripts start
site=$work/site
failures=0
checks=0

fail() { failures=$((failures + 1)); printf 'FAIL %s\n' "$*"; }
as_owner=()
if [ "$(id -u)" = 0 ]; then as_owner=(setpriv --reuid nobody --regid nogroup --clear-groups); fi
# Only the program's own clock is frozen; bench/ needs the same.
c++ -O1 -shared -fPIC -o "$work/clock.so" "$(dirname "$0")/../bench/frozen_clock.cpp" || exit 1
at_clock() { "${as_owner[@]}" env LD_PRELOAD="$work/clock.so" FROZEN_CLOCK=$now "$@"; }
inspect() { at_clock "$build/vantrel-inspect" --site "$site" "$@"; }

# Names, kinds, rights and times of everything, and the bytes of what is a file. The times are taken
# before the bytes are read. Folders and links are left out of the times of access: looking moves them on.
times() {
  find "$site" \( -type f -o -type p \) -printf '%P %y %m %s %T@ %C@ %A@\n' \
    -o -printf '%P %y %m %l %T@ %C@\n' | sort
}
bytes() { find "$site" -type f -exec sha256sum {} + | sort; }
# An old time of access is one that a reader would move on.
age() { find "$site" \( -type f -o -type p \) -exec touch -a -d '2026-01-01' {} +; }

# untouched WHAT COMMAND...: the command leaves the site as it is; its status is in $status.
untouched() {
  local what=$1 bytes_before before
  shift
  bytes_before=$(bytes)
  age
  before=$(times)
  "$@" >"$work/out" 2>"$work/err" </dev/null
  status=$?
  checks=$((checks + 1))
  diff <(echo "$before") <(times) >"$work/diff" || fail "$what: changed $(head -3 "$work/diff")"
  [ "$bytes_before" = "$(bytes)" ] || fail "$what: bytes changed"
  [ "$status" -le 3 ] || fail "$what: status $status: $(head -3 "$work/err")"
}

fresh() {
  [ -d "$site" ] && chmod -R u+rwx "$site"
  rm -rf "$site"
  cp -a "$work/model" "$site"
}

views=(site 'site --csv days' 'metrics --trades' 'alive --minutes 9' list 'why 20' preview 'preview --hits --changed' trades 'trades --wide --sort in24' 'trade 20' events 'events 3 --trade 20' runs check report)

"$build/vantrel-sample-site" "$work/model" --at $now --minutes 3 --days 20 --ranges 200 >/dev/null ||
  { echo "no sample site"; exit 1; }
for script in sync hta top; do
  printf '#!/bin/sh\necho %s >>ended\n' $script >"$work/model/sh_$script.cgi"
  chmod 755 "$work/model/sh_$script.cgi"
done
[ "$(id -u)" = 0 ] && chown -R nobody:nogroup "$work/model"

touch -d "@$now" "$work/model/d/out.lst"

if [ "$half" != damaged ]; then

echo "== views"
fresh
for view in "${views[@]}"; do
  untouched "$view" inspect $view
  [ $status = 0 ] || fail "$view: status $status: $(tail -2 "$work/out" "$work/err")"
  untouched "$view --json" inspect $view --json
  python3 -c 'import json, sys; assert json.load(sys.stdin)["view"] == sys.argv[1]' \
    "${view%% *}" <"$work/out" || fail "$view: JSON"
  LC_ALL=C grep -q $'\x1b' "$work/out" && fail "$view: colours without a terminal"
done
lines=$("$build/vantrel-inspect" --help | awk 'length($0) > 80 { exit 1 } END { print NR }') &&
  [ "$lines" -le 32 ] || fail "the help does not fit a screen"
version=$(sed -n 's/^project(vantrel VERSION \([0-9.]*\).*/\1/p' "$(dirname "$0")/../CMakeLists.txt")
for program in cron inspect sample-site day; do
  [ "$("$build/vantrel-$program" --version)" = "vantrel-$program $version" ] || fail "version of $program"
done

echo "== what the views say"
value() { inspect $1 --json | python3 -c "import json, sys; d = json.load(sys.stdin)['data']; print($2)"; }
expect() { [ "$2" = "$3" ] || fail "$1: '$2', not '$3'"; checks=$((checks + 1)); }
fresh
(cd "$site" && at_clock "$build/vantrel-cron")
expect "shares" "$(value list 'round(sum(e["share_percent"] for e in d["entries"]))')" 100
expect "windows" "$(value 'trade 20' 'd["last24"]["rin"]')" "$(value trades '[t["in24"] for t in d["trades"] if t["id"] == 20][0]')"
expect "totals" "$(value trades 'all(d["totals"][c] == sum(t[c] for t in d["trades"]) for c in ("in60", "out24", "left"))')" True
inspect trades | awk 'length > 100 || / spare / { exit 1 }' || fail "trades: too wide, or with idle reserved entries"
inspect trade 20 | LC_ALL=C grep -nE '[][{}_]|[0-9]{8}' | grep -v proxy_ && fail "trade: no plain words"
touch -d '2026-11-16 12:44' "$site/d/t/sum"
inspect trades | grep -q '4 minutes old' || fail "old data are not marked"

echo "== the whole site"
expect "the site's window" "$(value site 'd["last24"]["rin"]')" "$(value trades 'sum(t["in24"] for t in d["trades"])')"
expect "the site's hours" "$(value site 'd["today"]["rin"]')" "$(python3 - "$site"/d/t/[0-9]* <<'PYTHON'
import struct, sys  # the slots from midnight to the minute before the run
print(sum(struct.unpack_from('<i', open(f, 'rb').read(), m * 56)[0] for f in sys.argv[1:] for m in range(12 * 60 + 48)))
PYTHON
)"
reserved='lambda c: (lambda part, whole: round(part / whole * 100, 1))(*(sum(t[c] for t in e if t["collects"] != "hits with a marker") for e in (d["trades"][:11], d["trades"])))'
expect "the reserved share" "$(value site '[d["reserved"]["last24"][k] for k in ("share_in", "share_clk", "share_out")]')" \
  "$(value trades "[($reserved)(c) for c in ('in24', 'clk24', 'out24')]")"
expect "quality and ratio" "$(value site '(d["last07"]["quality_back"], d["last07"]["out_per_in"])')" \
  "$(value site '(lambda w: (round(w["rtc"] / w["clk"], 1), round(w["out"] / w["rin"] * 100, 1)))(d["last07"])')"

echo "== many sites"
# Beside a healthy site: one whose run would end early, one with hostile names, a place that is none.
fresh
(cd "$site" && at_clock "$build/vantrel-cron")
ln -sfn site "$work/link"
for copy in broken hostile; do rm -rf "${work:?}/$copy"; cp -a "$site" "$work/$copy"; done
rm "$work/broken/d/out.mod"
python3 - "$work/hostile/d/t/index" <<'PYTHON'
import sys  # two trades that cannot be told apart, and one that would end its sample
with open(sys.argv[1], 'r+b') as f:
    for entry, number, name in (20, 7, b'twin'), (21, 7, b'twin'), (22, 8, b'a"} 1\n\\\xe2\x80\xae\xff'):
        f.seek(entry * 996)
        f.write(number.to_bytes(4, 'little') + name + b'\0')
PYTHON
touch -d '2026-11-16 12:43' "$work/hostile/d/out.lst"
touch -d '2026-11-16 11:59' "$work/hostile/d/backup/one"
touch -d '2026-11-15 23:59' "$work/hostile/d/backup/two"
printf '11161240\n11161246\n11161247\n' >"$work/hostile/l/sys/cron.run"
printf '|2026111611%s||||\n' '47|cron|1|d&#47;ds|0' '49|cron|1|d&#47;ds|0' '50|cron|1|d&#47;ds|0' \
  '51|cron|10|no|1' '52|admin|1|x|0' >"$work/hostile/l/sys/sys.log"
untouched "sites" inspect sites ../hostile . "$work/nowhere" ../broken --json
expect "the worst status" $status 2
expect "worst first" "$(python3 -c 'import json, sys; print([(s["directory"].split("/")[-1], s["status"]) for s in json.load(sys.stdin)["data"]["sites"]])' <"$work/out")" \
  "[('nowhere', 2), ('broken', 2), ('hostile', 1), ('.', 1)]"
expect "what it knows of one" "$(value 'sites ../hostile' '(lambda s: (s["trades"], s["entries"], s["listed"] > 0, s["gaps"], s["missed_minutes"], s["events"], s["backup"], s["list_written"]))(d["sites"][0])')" \
  "(25, 36, True, 1, 5, [{'code': '1', 'level': '0', 'count': 2}, {'code': '10', 'level': '1', 'count': 1}], $((now - 49 * 60 - 10)), $((now - 5 * 60 - 10)))"
untouched "metrics" inspect metrics --trades . "$work/link" ../hostile ../broken
python3 - "$work/out" "$(value site 'd["last24"]["rin"]')" <<'PYTHON' || fail "metrics"
import re, sys
lines = open(sys.argv[1]).read().splitlines()
samples = [line for line in lines if line[0] != '#']
sample = re.compile(r'(vantrel_\w+)\{((?:\w+="(?:[^"\\]|\\["\\])*",?)*)\} -?[0-9]+')
found = [sample.fullmatch(line) for line in samples]
assert all(found), [l for l, f in zip(samples, found) if not f]
series = [f.group(1, 2) for f in found]
assert len(set(series)) == len(series)
families = [line.split()[2] for line in lines if line.startswith('# TYPE')]
assert len(set(families)) == len(families) and {name for name, labels in series} <= set(families)
assert sum('trade="twin"' in labels and 'counter="rin"' in labels for name, labels in series) == 3
assert sum(l.endswith('site",window="24h",counter="rin"} ' + sys.argv[2]) for l in samples) == 1
PYTHON

fi
if [ "$half" != views ]; then

echo "== damaged sites"
# Every view in both forms; what is wrong with one is reported at once.
all_views() {
  local view form code text_code
  for view in "${views[@]}"; do
    for form in '' --json; do
      inspect $view $form >"$work/view" 2>"$work/err"
      code=$?
      [ $code -le 2 ] || fail "damaged $1, $view $form: status $code: $(head -3 "$work/err")" >&3
      [ -n "$form" ] || text_code=$code
      [ $code = "$text_code" ] || fail "damaged $1, $view $form: status $code, without it $text_code" >&3
      if [ -n "$form" ] && [ -s "$work/view" ]; then
        python3 -m json.tool <"$work/view" >/dev/null || fail "damaged $1, $view: JSON" >&3
      fi
      LC_ALL=C grep -q $'[\x01-\x09\x0b-\x1f\x7f]' "$work/view" "$work/err" &&
        fail "damaged $1, $view $form: control characters" >&3
    done
  done
  true
}
exec 3>&1
for seed in $(seq 10); do
  fresh
  python3 - "$site" "$seed" <<'PYTHON'
import os, random, shutil, sys
site, seed = sys.argv[1], int(sys.argv[2])
r = random.Random(seed)
files = sorted(os.path.join(d, n) for d, _, names in os.walk(site) for n in names if '/l/in' not in d)
core = [os.path.join(site, p) for p in ('d/t/index', 'd/h/all.his', 'd/t/sum', 'd/out.lst', 'd/set', 'd/alerts',
                                        'l/sys/cron.run', 'd/t/20', 'd/ip.psv')]
for path in r.sample(core, 4) + r.sample(files, 12):
    if not os.path.isfile(path) or os.path.islink(path):
        continue
    kind = r.randrange(8)
    data = bytearray(open(path, 'rb').read())
    if kind == 0:
        data = data[:r.randrange(len(data) + 1)]
    elif kind == 1:
        data = bytearray(r.randbytes(r.randrange(5000)))
    elif kind == 2:
        for _ in range(len(data) // 8):
            data[r.randrange(len(data))] = r.randrange(256)
    elif kind == 3:
        data = b'|' * r.randrange(100000)
    elif kind == 4:
        data = bytes(data).replace(b'1', b'-99999999999999999999')
    if kind <= 4:
        open(path, 'wb').write(data)
        continue
    os.remove(path)
    if kind == 5:
        os.mkdir(path)
    elif kind == 6:
        os.mkfifo(path)
    else:
        os.symlink(r.choice([os.path.basename(path), '/dev/zero', '/dev/full', 'nowhere']), path)
PYTHON
  printf '%s' "$(head -c 3000 /dev/urandom | tr -d '\0')" >"$site/l/sys/sys.log"
  [ "$(id -u)" = 0 ] && chown -Rh nobody:nogroup "$site"
  untouched "damaged $seed" all_views "$seed"
done

fi
if [ "$half" != damaged ]; then

echo "== a wrong start of the run"
# Alone they are answered; everything else is a run, which writes the list.
start() { (cd "$site" && at_clock "$build/vantrel-cron" "$@"); }
fresh
for question in --help --version; do
  untouched "vantrel-cron $question" start $question
  [ $status = 0 ] && [ -s "$work/out" ] || fail "vantrel-cron $question: no answer"
done
for other in '' -h help --versions '--help --help' "--version x"; do
  fresh
  rm -f "$site/d/out.lst"
  start $other >"$work/out"
  [ -f "$site/d/out.lst" ] && [ ! -s "$work/out" ] || fail "vantrel-cron $other: no run"
done

fi
echo "$checks checks, $failures failures"
[ $failures = 0 ]
