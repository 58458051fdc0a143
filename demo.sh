#!/bin/bash
# Shows the maintenance run at work on a sample site.
#
#   ./demo.sh         one run, now, as the scheduler would start it
#   ./demo.sh --day   24 hours of simulated minutes, 1,440 runs
set -euo pipefail
cd "$(dirname "$0")"
. scripts/setup.sh

programs=$PWD/build/release
unset TZ  # the scheduler knows no other zone than that of the system

inspect() {
  "$programs/vantrel-inspect" --site "$site" "$@"
}

prepare() {
  install_packages "${build_packages[@]}"
  build_preset release
}

# lay_out NAME [OPTION]...: a fresh sample site in build/demo/NAME.
lay_out() {
  site=$PWD/build/demo/$1
  shift
  rm -rf "$site"
  mkdir -p "$site"
  "$programs/vantrel-sample-site" "$site" "$@"
  say "A sample site in ${site#"$PWD"/}"
  echo "$(($(stat -c %s "$site/d/t/index") / 996)) entries in the trade index," \
    "$(ls "$site/l/in" | wc -l) minutes of hit logs," \
    "$(wc -l < "$site/d/ip.psv") address ranges"
}

busiest_trade() {
  awk -F'|' '$2 > 10 && $17 > most { most = $17; id = $2 } END { print id }' "$site/d/t/sum"
}

# A run at the end of a minute counts for the next one: do not start where the two could differ.
wait_for_early_second() {
  local second
  second=$(date +%-S)
  if [ "$second" -ge 50 ]; then
    echo "Waiting $((61 - second)) seconds for the next minute"
    sleep $((61 - second))
  fi
}

one_run() {
  wait_for_early_second
  lay_out minute
  sed -i '5s/.*/|1|/' "$site/d/set"
  echo "The webmaster has asked for a synchronisation of the databases"
  touch "$site.before"
  say "One maintenance run, started as the scheduler does"
  echo "cd ${site#"$PWD"/} && env -i PATH=/usr/bin:/bin vantrel-cron"
  local status=0
  (cd "$site" && exec env -i PATH=/usr/bin:/bin "$programs/vantrel-cron" </dev/null) || status=$?
  echo "exit status $status; files it wrote:"
  (cd "$site" && find . -type f -newer "$site.before" | sort -V |
    awk '/d\/t\/[0-9]+$/ { ++slots; next } { print "  " $0 }
         END { print "  ./d/t/<id>, " slots " statistics files" }')
  if [ "$status" -ne 0 ] || ! [ "$site/d/out.lst" -nt "$site.before" ]; then
    echo "The run did not reach its end" >&2
    exit 1
  fi
}

show_run() {
  say "Events: vantrel-inspect events"
  inspect events
  say "Companion scripts that were started"
  cat "$site/companion.log"
  say "The busiest entries: vantrel-inspect trades --sort in24"
  inspect trades --sort in24 | sed -n 1,17p
  say "Where visitors go now: vantrel-inspect list"
  inspect list
  say "Is the site in order? vantrel-inspect check"
  local status=0
  inspect check || status=$?
  [ "$status" -le 1 ]  # 1 is a remark, 2 a run that would end early
}

one_day() {
  local options=(--minutes 180 --curve --at $(($(date +%s) - 24 * 60 * 60)))
  lay_out day "${options[@]}"
  ls "$site/l/in" > "$site.logs"
  say "24 hours of it, a run every minute"
  env -i PATH=/usr/bin:/bin "$programs/vantrel-day" "$site" "${options[@]}"
}

show_day() {
  local id
  id=$(busiest_trade)
  say "History: the last records of the busiest trade, and of the whole site"
  tail -n 3 "$site/d/h/site$id.example.his"
  tr -d '\n' < "$site/d/h/all.his" | grep -oE '\|[0-9]{8}(\|[^|]+)*\|{10}' | tail -n 3
  say "Backups"
  for archive in "$site"/d/backup/*; do
    echo "${archive#"$site"/}: $(stat -c %s "$archive") bytes, $(tar tzf "$archive" | wc -l) members"
  done
  say "Raw hit logs, kept for 25 hours"
  echo "of $(wc -l < "$site.logs") minutes that were there when the day began," \
    "$(ls "$site/l/in" | comm -13 - "$site.logs" | wc -l) were removed;" \
    "$(ls "$site/l/in" | wc -l) minutes are there now"
  say "Companion scripts: how often, and in which minutes of the hour"
  local script
  for script in sh_sync.cgi sh_hta.cgi sh_top.cgi; do
    echo "$script $(grep -c " $script " "$site/companion.log") times:" \
      $(grep " $script " "$site/companion.log" | cut -c 7-8 | sort -u)
  done
  echo "sh_sync.cgi at:" $(sed -n 's/^....\(..\)\(..\) sh_sync.*/\1:\2/p' "$site/companion.log")
  say "Alert mail, as the mail program got it"
  cat "$site/mail/outbox"
  say "The busiest trade: vantrel-inspect trade $id"
  inspect trade "$id"
  say "All of it as a page: vantrel-inspect report"
  inspect report -o "$site.html"
  echo "Open it in a browser: file://$site.html"
}

case ${1:-} in
  '')
    prepare
    one_run
    show_run
    ;;
  --day)
    prepare
    one_day
    show_day
    ;;
  *)
    sed -n '2,5s/^# \{0,1\}//p' "$0" >&2
    exit 2
    ;;
esac
