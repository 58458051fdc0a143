#!/bin/bash
# The maintenance run among the real parts of a system: four minutes under the cron daemon with alert
# mail into a local mailbox, backups listed and restored with tar, the event log under logrotate, the
# examples for systemd. About five minutes.
#
#   scripts/try-real-parts.sh              builds build/release and tries its programs
#   scripts/try-real-parts.sh DIRECTORY    tries the programs that were built there
#
# Installs what is missing: cron, logrotate, faketime, procps, and dma where no mail program is. As
# another user than root it takes sudo. A cron daemon that was not running is started and stopped
# again (the other jobs of the machine get those minutes too), the line in the crontab is taken out,
# and a mailbox that was empty is emptied. The sites stay in build/real-parts/.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/setup.sh
. scripts/checks.sh

unset TZ  # the cron daemon knows no other zone than that of the system
export PATH=$PATH:/usr/sbin:/sbin
programs=$(realpath -m "${1:-build/release}")
work=$PWD/build/real-parts
user=$(id -un)
mailbox=/var/mail/$user
minutes=4
cron_pid=
crontab_line=
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)

differ() {
  ! cmp -s "$1" "$2"
}

prepare() {
  install_packages cron logrotate faketime procps
  # What killed programs left under a process number stops the wrapper that gets the same one.
  find /dev/shm -maxdepth 1 -name '*faketime*' -mmin +1 -delete 2>/dev/null || true
  if ! [ -x /usr/sbin/sendmail ]; then
    install_packages dma
  fi
  if [ $# -eq 0 ]; then
    install_packages "${build_packages[@]}"
    build_preset release
  fi
  rm -rf "$work"
  mkdir -p "$work"
}

put_back() {
  if [ -n "$crontab_line" ]; then
    remove_crontab_line
  fi
  if [ -n "$cron_pid" ]; then
    stop_cron
  fi
}

# lay_out NAME SECONDS: a sample site whose next run is that of the given time.
lay_out() {
  site=$work/$1
  mkdir "$site"
  "$programs/vantrel-sample-site" "$site" --at "$2"
}

# The lines of the event log that ended a run.
serious_events() {
  [ ! -f "$site/l/sys/sys.log" ] || awk -F'|' '$6 == 1' "$site/l/sys/sys.log"
}

# --- The cron daemon and the mailbox -----------------------------------------------------------

start_cron() {
  if pgrep -x 'crond?' >/dev/null; then
    echo "The cron daemon is running already"
    return
  fi
  "${as_root[@]}" cron -f &
  cron_pid=$!
  echo "Started the cron daemon, process $cron_pid"
}

stop_cron() {
  "${as_root[@]}" kill "$cron_pid"
  wait "$cron_pid" || true
  echo "Stopped the cron daemon, process $cron_pid"
  cron_pid=
}

# The line of the example with the paths of this site.
add_crontab_line() {
  local example
  example=$(grep '^[^#]' examples/crontab)
  example=${example/\/srv\/www\/site/$site}
  crontab_line=${example//\/usr\/local\/bin/$programs}
  { crontab -l 2>/dev/null || true; echo "$crontab_line"; } | crontab -
  echo "crontab: $crontab_line"
}

remove_crontab_line() {
  local rest
  rest=$(crontab -l | grep -vxF "$crontab_line" || true)
  if [ -n "$rest" ]; then
    printf '%s\n' "$rest" | crontab -
  else
    crontab -r
  fi
  crontab_line=
}

# The hit logs of the minutes to come, which the request scripts would write on a living site.
add_hit_logs() {
  local living=$site
  lay_out later $((start + 60 * minutes))
  cp -rn "$site/l/in" "$site/l/out" "$living/l/"
  site=$living
}

# set_alerts: three thresholds that this traffic crosses, two that it does not; nothing sent yet.
set_alerts() {
  printf '|%s' /usr/sbin/sendmail "$user@localhost" "$user@localhost" 0 \
    9999999 0 9999999 0 0 0 1 0 1 0 >"$site/d/alerts"
  printf '|' >>"$site/d/alerts"
}

flags() {
  cut -d'|' -f 7,9,11,13,15 "$site/d/alerts"
}

mails() {
  if [ -s "$mailbox" ]; then grep -c '^From ' "$mailbox" || true; else echo 0; fi
}

last_mail() {
  awk '/^From / { text = "" } { text = text $0 "\n" } END { printf "%s", text }' "$mailbox"
}

alert_text() {
  cat <<TEXT
Dear webmaster,

This is an email from the Vantrel Alert System to inform you about the following.

* Your site dropped below 9999999 unique hits per day
* Your site has grown to  1 unique hits per hour
* One of your trades has grown to 1 unique hits per day
Thank you for your time.

Vantrel Alert System
TEXT
}

# watch SECONDS: waits for that time and notes every time at which the list was written meanwhile.
declare -A list_written
watch() {
  while [ "$(date +%s)" -lt "$1" ]; do
    sleep 1
    list_written[$(stat -c %Y "$site/d/out.lst")]=1
  done
}

# The incoming hits in the slots of a minute, over all statistics files.
hits_stored() {
  local file slot
  slot=$((10#$(date -d "@$1" +%H) * 60 + 10#$(date -d "@$1" +%M)))
  for file in "$site"/d/t/[0-9]*; do
    od -An -td4 -j $((56 * slot)) -N 4 "$file"
  done | awk '{ hits += $1 } END { print hits }'
}

# The incoming hits in the log of a minute; a marked one counts for a second entry too.
hits_logged() {
  awk -v RS='|' '{ sub(/\n$/, "") } NR % 12 == 0 { ++hits } NR % 12 == 9 && $0 != "" { ++hits }
    END { print hits }' "$site/l/in/$(date -d "@$1" +%y-%j-%H-%M)"
}

check_runs() {
  local i minute stamp stamps='' companions='' late=0 listed=''
  for ((i = 0; i < minutes; ++i)); do
    minute=$((start + 60 * i))
    stamp=$(date -d "@$minute" +%m%d%H%M)
    stamps+=$stamp$'\n'
    [ $((10#${stamp:6} % 3)) -ne 0 ] || companions+="$stamp sh_hta.cgi run"$'\n'
    [ $((10#${stamp:6} % 2)) -ne 0 ] || companions+="$stamp sh_top.cgi run"$'\n'
    minute=$((minute - 60))
    check "$(date -d "@$minute" +%H:%M) is stored with the $(hits_logged $minute) hits of its log" \
      same "$(hits_logged $minute)" "$(hits_stored $minute)"
  done
  check "l/sys/cron.run has one stamp a minute: $(tail -n $minutes "$site/l/sys/cron.run" | xargs)" \
    same "${stamps%$'\n'}" "$(tail -n +$((stamps_before + 1)) "$site/l/sys/cron.run")"
  check "no event ended a run" same '' "$(serious_events)"
  for minute in $(printf '%s\n' "${!list_written[@]}" | sort -n); do
    [ "$minute" -ge "$start" ] || continue
    listed+=$(date -d "@$minute" +%m%d%H%M)$'\n'
    [ $((minute % 60)) -le $late ] || late=$((minute % 60))
  done
  check "d/out.lst was written once in each minute, at second $late at the latest" \
    same "$stamps" "$listed"
  check "the companions kept their schedule: $(cut -d' ' -f 1,2 "$site/companion.log" | xargs)" \
    same "${companions%$'\n'}" "$(cat "$site/companion.log")"
}

check_mail() {
  check "two runs sent one mail to $mailbox" same $((mails_before + 1)) "$(mails)"
  check "its subject" grep -qx 'Subject: Automatic Alert from Vantrel' <(last_mail)
  check "its recipient" grep -qx "To: $user@localhost" <(last_mail)
  check "its text, with the three alerts that fired" \
    same "$(alert_text)" "$(last_mail | sed '1,/^$/d')"
  check "d/alerts has their flags: $(flags)" same '1|0|0|1|1' "$(flags)"
}

under_cron() {
  say "$minutes minutes under the cron daemon, with alert mail"
  # The line must be in the crontab before the minute that begins next.
  while [ "$(date +%-S)" -gt 45 ]; do sleep 1; done
  start=$(($(date +%s) / 60 * 60 + 60))
  lay_out site $start
  add_hit_logs
  set_alerts
  stamps_before=$(wc -l <"$site/l/sys/cron.run")
  mails_before=$(mails)
  add_crontab_line
  start_cron
  echo "Runs from $(date -d @$start +%H:%M) on, please wait"
  watch $((start + 60 * 2 - 15))
  check_mail
  set_alerts
  echo "The flags are taken back, as the administration does"
  watch $((start + 60 * minutes - 45))
  remove_crontab_line
  if [ -n "$cron_pid" ]; then
    stop_cron
  fi
  check_runs
  check "two more runs sent one more mail, and cron none of its own" \
    same $((mails_before + 2)) "$(mails)"
  if [ "$mails_before" -eq 0 ]; then
    rm -f "$mailbox" 2>/dev/null || : >"$mailbox"
  else
    echo "The mailbox was not empty: the mails of this script stay in it"
  fi
}

# --- Backups ------------------------------------------------------------------------------------

# run_at TIME: one run at that time of 16 November 2026. The times of files are left as they are.
run_at() {
  touch "$site.before"
  (cd "$site" && env -i PATH=/usr/bin:/bin NO_FAKE_STAT=1 \
    faketime -f "@2026-11-16 $1:10" "$programs/vantrel-cron" </dev/null)
}

contents() {
  (cd "$site" && find d/t d/gr d/h d/tpl d/css) | sort
}

# A backup is made behind the last change of d/t and d/h in its run: the run goes on with old hit
# logs, alerts and the companions. So there is no exception in the comparison with the site.
backup_at() {
  local hour=${1%:*}
  say "The backup of $1, listed and restored with tar"
  lay_out "backup-$hour" "$(date -d "2026-11-16 $1" +%s)"
  cp -r "$site/d/t" "$site.t"
  run_at "$1"
  local archive=d/backup/26-320-$hour.tar.gz
  check "$archive is the one archive" same "${archive##*/}" "$(ls "$site/d/backup")"
  check "it has the $(contents | wc -l) files and folders of the site" \
    same "$(contents)" "$(tar tzf "$site/$archive" | sed 's:/$::' | sort)"
  local restored=$work/restored-$hour
  mkdir "$restored"
  check "tar restores it" tar xzf "$site/$archive" -C "$restored"
  local folder
  for folder in d/t d/h d/gr d/tpl d/css; do
    check "$folder is the same to the byte ($(find "$site/$folder" -type f | wc -l) files)" \
      diff -r "$site/$folder" "$restored/$folder"
  done
  check "d/t/sum in it is that of this run" \
    differ "$site.t/sum" "$restored/d/t/sum"
}

restore_and_go_on() {
  say "The site goes on from a restored backup"
  local entries
  entries=$(wc -l <"$site/d/t/sum")
  rm -r "$site"/d/{t,h,gr,tpl,css}
  tar xzf "$site"/d/backup/26-320-11.tar.gz -C "$site"
  run_at 12:00
  check "the next run is noted" same 11161200 "$(tail -n 1 "$site/l/sys/cron.run")"
  check "no event ended it" same '' "$(serious_events)"
  check "it wrote the list" test "$site/d/out.lst" -nt "$site.before"
  check "it wrote the sums of $entries entries" same "$entries" "$(wc -l <"$site/d/t/sum")"
}

# --- logrotate and systemd ----------------------------------------------------------------------

# synchronise_at TIME: a run with an event.
synchronise_at() {
  sed -i '5s/.*/|1|/' "$site/d/set"
  run_at "$1"
}

rotate() {
  logrotate -f -s "$work/logrotate.state" "$work/logrotate.conf"
}

rotate_log() {
  say "The event log under logrotate"
  local log=$site/l/sys/sys.log
  sed "s|/srv/www/site|$site|; s|www-data www-data|$user $(id -gn)|" examples/logrotate \
    >"$work/logrotate.conf"
  chmod 644 "$work/logrotate.conf"
  synchronise_at 12:01
  cp "$log" "$work/first.log"
  check "logrotate takes the example" rotate
  check "the old log stays, uncompressed ($(wc -l <"$work/first.log") lines)" \
    cmp "$work/first.log" "$log.1"
  check "the new log is empty, with mode and owner of the example" \
    same "0 660 $user" "$(stat -c '%s %a %U' "$log")"
  synchronise_at 12:02
  check "the run appends to the new log" \
    same '|202611161202|cron|10|synchronizing databases|0||||' "$(cat "$log")"
  check "and not to the old one" cmp "$work/first.log" "$log.1"
  check "logrotate takes it again" rotate
  check "the oldest log is compressed, and whole" cmp "$work/first.log" <(zcat "$log.2.gz")
}

verify_units() {
  say "The examples for systemd"
  if ! command -v systemd-analyze >/dev/null; then
    echo "Left out: systemd is not installed"
    return
  fi
  local unit
  unit=$work/vantrel-cron@$(systemd-escape -p "$site")
  sed "s|/usr/local/bin|$programs|" examples/vantrel-cron@.service >"$unit.service"
  cp examples/vantrel-cron@.timer "$unit.timer"
  # Where the package is not installed systemd would miss the manual page.
  check "systemd has nothing to say about service and timer" \
    same '' "$(systemd-analyze verify --man=no "$unit.service" "$unit.timer" 2>&1)"
}

trap put_back EXIT
trap 'exit 130' INT TERM
prepare "$@"
under_cron
backup_at 23:59
check "the history in it has the day" grep -q '|20261116|' "$work/restored-23/d/h/all.his"
backup_at 11:59
restore_and_go_on
rotate_log
verify_units
end_of_checks
