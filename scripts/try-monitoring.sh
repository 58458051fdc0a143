#!/bin/bash
# The inspector among the parts of a monitoring system: promtool, a node exporter and a Prometheus on
# loopback addresses, the system calls of "alive", the watching units under a systemd of their own.
# Under two minutes.
#
#   scripts/try-monitoring.sh              builds build/release and tries its programs
#   scripts/try-monitoring.sh DIRECTORY    tries the programs that were built there
#
# Installs what is missing: prometheus, prometheus-node-exporter, curl, strace. (Their services are not
# used here; where systemd runs the packages start them.) A systemd of its own takes root and the right
# to make namespaces; otherwise the units are only verified. The sites stay in build/monitoring/.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/setup.sh
. scripts/checks.sh
export PATH=$PATH:/usr/sbin:/sbin
programs=$(realpath -m "${1:-build/release}")
work=$PWD/build/monitoring
children=()
trap 'kill "${children[@]}" 2>/dev/null || true' EXIT
trap 'exit 130' INT TERM

install_packages prometheus prometheus-node-exporter curl strace
[ $# -gt 0 ] || { install_packages "${build_packages[@]}" && build_preset release; }
rm -rf "$work"
mkdir -p "$work/textfiles"
inspect() { "$programs/vantrel-inspect" "$@"; }

say "Three sites: one that runs, one whose run would end, one with hostile names"
hostile=$work/'a"b\c d'
for site in "$work/well" "$work/broken" "$hostile"; do
  "$programs/vantrel-sample-site" "$site" --ranges 500 --days 9 >/dev/null
  (cd "$site" && "$programs/vantrel-cron")
done
rm "$work/broken/d/out.mod"
printf '\xe2\x80\xae"}\\{\n\xff\0' | dd of="$hostile/d/t/index" bs=1 seek=$((12 * 996 + 4)) conv=notrunc status=none
prom=$work/textfiles/vantrel.prom
inspect metrics --trades "$work/well" "$work/broken" "$hostile" >"$prom"
check "promtool has nothing to say about $(grep -c '^v' "$prom") samples" same '' "$(promtool check metrics <"$prom" 2>&1)"
check "promtool takes the example of rules" promtool check rules examples/prometheus-rules.yml

say "A Prometheus that scrapes a node exporter"
# Two free ports below those the system gives to whoever connects.
read -r exporter server < <(python3 -c '
import random, socket
def free(port):
    with socket.socket() as s:
        return s.connect_ex(("127.0.0.1", port)) != 0
print(*[p for p in random.sample(range(20000, 32000), 20) if free(p)][:2])')
prometheus-node-exporter --collector.disable-defaults --collector.textfile \
  --collector.textfile.directory="$work/textfiles" --web.listen-address=127.0.0.1:"$exporter" \
  >"$work/exporter.log" 2>&1 &
children+=($!)
cat >"$work/prometheus.yml" <<EOF
global: {scrape_interval: 1s, evaluation_interval: 1s}
rule_files: [$PWD/examples/prometheus-rules.yml]
scrape_configs: [{job_name: node, static_configs: [{targets: ["127.0.0.1:$exporter"]}]}]
EOF
prometheus --config.file="$work/prometheus.yml" --storage.tsdb.path="$work/tsdb" \
  --web.listen-address=127.0.0.1:"$server" >"$work/prometheus.log" 2>&1 &
children+=($!)

# answer QUERY [LABEL]: the values, or that label of every series, in order.
answer() {
  curl -sG "http://127.0.0.1:$server/api/v1/query" --data-urlencode "query=$1" | python3 -c '
import json, sys
series = json.load(sys.stdin)["data"]["result"]
print(*(sorted(s["metric"][sys.argv[1]] for s in series) if len(sys.argv) > 1 else [s["value"][1] for s in series]))' "${@:2}"
}
for _ in $(seq 60); do
  [ -z "$(answer vantrel_check_status site 2>/dev/null)" ] || break
  sleep 0.5
done
check "every site is there by its name" same "$hostile $work/broken $work/well" "$(answer vantrel_check_status site)"
check "the exporter could read the file" same 0 "$(answer node_textfile_scrape_error)"
hits=$(inspect --site "$work/well" site --json | python3 -c 'import json, sys; print(json.load(sys.stdin)["data"]["last24"]["rin"])')
check "it has the $hits hits of the view" same "$hits" \
  "$(answer "vantrel_hits{site=\"$work/well\",window=\"24h\",counter=\"rin\"}")"
sleep 2
check "the alert of the broken site is raised" grep -qw "$work/broken" \
  <(answer 'ALERTS{alertname="VantrelRunEndsEarly"}' site)

say "alive"
strace -f -o "$work/calls" "$programs/vantrel-inspect" --site "$work/well" alive
calls=$(sed '1,/chdir(/d; /exit_group/,$d' "$work/calls" | wc -l)
check "$calls system calls once it is in the site" test "$calls" -le 6
check "one line, figures behind a bar" grep -qxE 'VANTREL OK: [^|]* \| age=[0-9]+s;180;360' <(inspect --site "$work/well" alive)

say "The watching units"
mkdir "$work/units"
for unit in examples/vantrel-{watch@,trouble@}.service; do
  sed "s|/usr/local/bin|$programs|; s/^\(User\|Group\)=/#&/; s|sendmail -t|tee -a $work/mailbox|" "$unit" >"$work/units/${unit#*/}"
done
instance=$(systemd-escape -p "$work/well")
cp examples/vantrel-watch@.timer "$work/units"
for name in watch@.service watch@.timer trouble@.service; do cp "$work/units/vantrel-$name" "$work/units/vantrel-${name/@/@$instance}"; done
check "systemd has nothing to say about them" same '' \
  "$(systemd-analyze verify --man=no "$work/units/"*"$instance"* 2>&1)"

# In a namespace of its own a systemd finds a system that was booted with one.
cat >"$work/under-systemd" <<EOF
mount -t tmpfs tmpfs /run && mkdir -p /run/systemd/system /run/user || exit
export XDG_RUNTIME_DIR=/run/user SYSTEMD_UNIT_PATH=$work/units:
/lib/systemd/systemd --user --unit=basic.target &
for i in \$(seq 50); do systemctl --user start basic.target 2>/dev/null && break; sleep 0.2; done
watch() { systemctl --user start vantrel-watch@'$instance'.service; echo "status \$?"; sleep 2; wc -l <$work/mailbox; }
echo -n >$work/mailbox
watch
touch -d '-10 minutes' $work/well/d/out.lst
watch
watch
systemctl --user start vantrel-watch@'$instance'.timer && systemctl --user is-active vantrel-watch@'$instance'.timer
kill -9 \$!
EOF
if [ "$(id -u)" = 0 ] && unshare --mount --pid --fork --mount-proc true 2>/dev/null; then
  timeout -s KILL 100 unshare --mount --pid --fork --mount-proc --kill-child bash "$work/under-systemd" >"$work/answers" 2>"$work/systemd.log" || true
  check "a fresh list: no failure, no mail" same "status 0 0" "$(sed -n 1,2p "$work/answers" | xargs)"
  check "an old one: the unit fails, mail is sent" grep -qxE 'status 1 [1-9][0-9]*' <(sed -n 3,4p "$work/answers" | xargs)
  check "and not again in the same hour" same "$(sed -n 3,4p "$work/answers")" "$(sed -n 5,6p "$work/answers")"
  check "the mail says what is wrong" grep -q 'VANTREL CRITICAL' "$work/mailbox"
  check "the timer starts" same active "$(sed -n 7p "$work/answers")"
else
  echo "Left out: a systemd of its own takes root and namespaces"
fi
end_of_checks
