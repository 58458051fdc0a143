#!/bin/bash
# Installs as the documents say, word by word, in a throwaway Debian booted with a systemd and a cron of
# its own: by cmake, as a package, as an unpacked folder; takes the package away again; and runs the
# service of the examples, in all its limits, with a mail, a backup and companions due. As root, some
# eight minutes, half of them for the base system, which is kept in build/try-install/base.
#
#   scripts/try-install.sh              builds build/release as the README says and tries that
#   scripts/try-install.sh --same       builds it a second time elsewhere, too: the same packages?
set -euo pipefail
site=/srv/www/site

# --- Inside -------------------------------------------------------------------------------------

# commands SECTION WORD: the command with that word in a section of the README.
commands() {
  awk -v heading="## $1" '/^## /{on = $0 == heading} on && /^    /{print substr($0, 5)}' README.md | grep -F -e "$2"
}

lay_out() {
  rm -rf "$site"
  "$@" vantrel-sample-site "$site" >/dev/null
  chown -R www-data: "$site"
}

# wait_for SECONDS COMMAND...
wait_for() {
  local end=$((SECONDS + $1))
  until "${@:2}"; do [ $SECONDS -lt $end ] && sleep 0.5 || return; done
}

serious_events() { [ ! -f $site/l/sys/sys.log ] || awk -F'|' '$6 == 1' $site/l/sys/sys.log; }
# has_mail TEXT: in root's mailbox, once the queue was gone through.
has_mail() { dma -q && grep -qs "$1" /var/mail/root; }
more_stamps() { [ "$(wc -l <$site/l/sys/cron.run)" -gt "$stamps" ]; }
is_listed() { [ $site/d/out.lst -nt /try/before ]; }

# one_run WHO: waits until the next run has been made.
one_run() {
  stamps=$(wc -l <$site/l/sys/cron.run)
  touch /try/before
  check "$1 makes a run: a stamp in l/sys/cron.run" wait_for 125 more_stamps
  check "and a new list in d/out.lst" wait_for 20 is_listed
  check "which no event ended" same '' "$(serious_events)"
}

# first_site MANUAL: its commands, as they stand there.
first_site() {
  cd "$(mktemp -d)" && PATH=/usr/bin:/bin bash -ec "$(awk '/^##/{on = /A first site/} on && /^    \$ /{print substr($0, 7)}' "$1")"
}

# under_cron PREFIX: the line of the README for that prefix, in the crontab of the user of the site.
under_cron() {
  local line share=$1/share
  line=$(commands 'The crontab line' "&& $1/bin/")
  check "README, manual, manual page and example have one line: $line" same "$(printf "$line\\n%.0s" {1..4} | tr -s ' ')" \
    "$(grep -h '^ *\* \* .*cron' <(cat "$share"/doc/vantrel/{README.md,operating.md,examples/crontab}) \
      <(zcat "$share/man/man8/vantrel-cron.8.gz" | sed 's/\\//g') | sed 's/^ *//' | tr -s ' ')"
  check "no other line for cron has a bare name" bash -c "! grep -hE '^ *([*0-9/,-]+ +){5}.* vantrel-' $share/doc/vantrel/*.md"
  check "the first site of the manual has its list" grep -q 'gamma.*quota' <(first_site "$share/doc/vantrel/operating.md" 2>&1)
  lay_out env PATH="$1/bin:$PATH"
  crontab -u www-data - <<<"$line"
  one_run cron
  crontab -u www-data -r
  no_loose_ends "$1" "$share/doc/vantrel"
}

# no_loose_ends PREFIX DOCUMENTS: what the installed texts point to is there.
no_loose_ends() {
  local thing page missing='' looked=0
  for thing in $(cd "$2" && grep -ohE '\]\([^):#]+' -- *.md | sed 's/.*(//') \
    $(zcat -f "$2"/*.md "$2"/examples/* "$1"/share/man/man?/vantrel-* "$1"/lib/systemd/system/vantrel-* | sed 's/\\//g' |
      grep -oE '(/usr|/opt)(/[a-zA-Z0-9_.@-]+)+|vantrel-[a-z@-]+\.(service|timer)|vantrel-[a-z-]+ ?\([158]\)' |
      tr -d ' ' | sed 's/\.$//' | sort -u); do
    page=${thing#*\(}
    page=${page%\)}
    looked=$((looked + 1))
    case $thing in
      /*) [ -e "$thing" ] ;;
      *.service | *.timer) [ -e "$1/lib/systemd/system/$thing" ] ;;
      *\)) [ -e "$1/share/man/man$page/${thing%(*}.$page.gz" ] ;;
      *) [ -e "$2/$thing" ] ;;
    esac || missing+=" $thing"
  done
  check "all $looked things the installed texts point to are there" same '' "$missing"
}

# at TIME: the time zone in which it is that time now, and the service in it.
at() {
  local behind=$((($(date -u +%s) - $(date -u -d "$1" +%s) + 86400) % 86400))
  export TZ=SET$((behind / 3600)):$((behind / 60 % 60)):$((behind % 60))
  mkdir -p /run/systemd/system/vantrel-cron@.service.d
  printf '[Service]\nEnvironment=TZ=%s\n' "$TZ" >/run/systemd/system/vantrel-cron@.service.d/zone.conf
  systemctl daemon-reload
}

# The units as they are installed, systemd's limits in force.
service() {
  local unit escaped
  escaped=$(systemd-escape -p $site)
  unit=vantrel-cron@$escaped.service
  lay_out env
  bash -c "$(zcat /usr/share/man/man8/vantrel-cron.8.gz | sed 's/\\//g' | grep '^systemctl')"
  one_run "the timer of the manual page"
  systemctl disable --now "vantrel-cron@$escaped.timer"
  check "the exposure is 2.0 at most: $(systemd-analyze security "$unit" | tail -n 1)" \
    awk '{exit !($(NF - 2) <= 2.0)}' <(systemd-analyze security "$unit" | tail -n 1 | tr -s ' ')

  at 23:59:05
  lay_out env
  printf '|%s' /usr/sbin/sendmail root@localhost root@localhost 0 9999999 0 9999999 0 0 0 1 0 1 0 '' >$site/d/alerts
  rm -f $site/d/backup/*
  for script in sh_hta sh_top; do
    printf '#!/bin/sh\ngrep -E "^(Seccomp|NoNewPrivs|CapBnd):" /proc/self/status >l/%s.limits\n' $script >$site/$script.cgi
  done
  systemctl start "$unit"
  check "the backup of 23:59 is whole" tar -tzf "$(ls $site/d/backup/*-23.tar.gz)" d/t/index d/t/sum d/h
  check "the alert is in root's mailbox" wait_for 20 has_mail 'Subject: Automatic Alert from Vantrel'
  at 00:06:05
  rm $site/l/sys/cron.last  # two starts in one minute of the system's clock
  systemctl start "$unit"
  for script in sh_hta sh_top; do
    check "$script.cgi ran within the limits: $(xargs <$site/l/$script.limits)" grep -q 'Seccomp:.2' $site/l/$script.limits
  done
  check "no event ended a run" same '' "$(serious_events)"
  journalctl -q -o cat -u "$unit" | grep -v '^\(Starting\|Finished\|.*Deactivated\)' || true
  touch -d '-10 minutes' $site/d/out.lst
  systemctl start "vantrel-watch@$escaped.service" || true
  check "the watching units mail root about an old list" wait_for 20 has_mail 'VANTREL CRITICAL'
}

small_things() {
  check "every program names the version of the package" same "$(dpkg-query -W -f='${Version}' vantrel)" \
    "$(for program in cron inspect sample-site day; do vantrel-$program --version | sed 's/.* //'; done | sort -u)"
  check "logrotate does not know the snippet" bash -c '! grep -rqs vantrel /etc/logrotate.d'
  check "bash completes" grep -qx check <(bash -c '. /usr/share/bash-completion/bash_completion
    . /usr/share/bash-completion/completions/vantrel-inspect
    COMP_WORDS=(vantrel-inspect che) COMP_CWORD=1; _vantrel; printf "%s\n" "${COMPREPLY[@]}"')
}

contents() {
  find / -xdev \( -path /var -o -path /run -o -path /tmp -o -path /try -o -path /srv -o -path "$PWD" \) -prune -o -printf '%p %y %m %u\n' | sort
}

inside() {
  local unit
  cd "$1"
  . scripts/checks.sh
  say 'By cmake'
  bash -c "$(commands Install 'cmake --install')" >/dev/null
  under_cron /usr/local
  xargs rm <build/release/install_manifest.txt
  rm -rf /usr/local/share/doc/vantrel /usr/local/lib/systemd
  say 'The folder'
  bash -c "$(commands Install 'tar -xzf')"
  under_cron /opt/vantrel
  bash -c "$(commands Install 'systemctl link')"
  lay_out env PATH="/opt/vantrel/bin:$PATH"
  unit=vantrel-cron@$(systemd-escape -p $site).timer
  systemctl enable --now "$unit"
  one_run "the timer of the folder"
  systemctl disable --now "$unit"
  find /etc/systemd/system -lname '/opt/vantrel/*' -delete
  systemctl daemon-reload
  rm -r /opt/vantrel
  say 'The package'
  contents >/try/contents
  bash -c "$(commands Install 'dpkg -i')" >/dev/null
  under_cron /usr
  small_things
  service
  dpkg -P vantrel >/dev/null
  check "taken away, the package leaves no trace" diff /try/contents <(contents)
  end_of_checks
}
say() { printf '\n== %s\n' "$*"; }
if [ "${1:-}" = --inside ]; then inside "$2"; exit; fi

# --- Outside ------------------------------------------------------------------------------------

cd "$(dirname "$0")/.."
. scripts/setup.sh
[ "$(id -u)" = 0 ] || { echo "try-install.sh: must be started as root" >&2; exit 1; }
install_packages "${build_packages[@]}" dpkg-dev debootstrap lintian systemd-container
work=$PWD/build/try-install
mkdir -p "$work"
rm -f build/release/vantrel[-_]*.{deb,tar.gz}
for word in --preset 'target package'; do
  command=$(awk '/^## /{on = $0 == "## Install"} on && /^    /{print substr($0, 5)}' README.md | grep -F -e "$word")
  say "$command"
  bash -c "$command" >"$work/build.log"
done

say "lintian"
lintian --allow-root --fail-on error,warning build/release/vantrel_*.deb

if [ "${1:-}" = --same ]; then
  say "A second time, in another folder, file system, time zone, under another umask"
  second=$(mktemp -d -p /dev/shm)
  git ls-files -z | xargs -0 cp --parents -t "$second"
  (cd "$second" && umask 077 && TZ=Asia/Tokyo && export TZ && cmake --preset release && cmake --build build/release -j 1 --target package) >"$work/build.log"
  for package in build/release/vantrel[-_]*.{deb,tar.gz}; do
    cmp "$package" "$second/$package" && echo "the same bytes: ${package##*/}"
  done
  rm -r "$second"
fi

if ! [ -e "$work/base/usr/bin/python3" ]; then
  say "A bare Debian, from the mirror of this one"
  . /etc/os-release
  mirror=$(apt-get indextargets --format '$(SITE)' "Release: $VERSION_CODENAME" | head -n 1)
  debootstrap --variant=minbase --include=bash-completion,cmake,cron,dbus,dma,logrotate,python3,sudo,systemd-sysv \
    "$VERSION_CODENAME" "$work/base.new" "$mirror" >"$work/debootstrap.log"
  rm -rf "$work/base"
  mv "$work/base.new" "$work/base"
fi
say "Booted"
rm -rf "$work/root"
cp -a "$work/base" "$work/root"
mkdir "$work/root/try"
echo "127.0.1.1 $(hostname)" >>"$work/root/etc/hosts"
cat >"$work/root/etc/systemd/system/try.service" <<END
[Unit]
After=cron.service
SuccessAction=poweroff
FailureAction=poweroff
[Service]
Type=oneshot
ExecStart=/bin/bash $PWD/scripts/try-install.sh --inside $PWD
StandardOutput=file:/try/answers
StandardError=inherit
END
ln -s ../try.service "$work/root/etc/systemd/system/multi-user.target.wants/"
timeout -s KILL 900 systemd-nspawn -q --register=no --keep-unit --private-network -D "$work/root" --bind="$PWD" \
  --boot >"$work/boot.log" 2>&1 </dev/null || true
cat "$work/root/try/answers"
grep -q '^[0-9]* passed, 0 failed' "$work/root/try/answers" && ! grep -q ^FAILED "$work/root/try/answers"
