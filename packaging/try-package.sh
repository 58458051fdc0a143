#!/bin/bash
# Makes the Debian package and tries it in a bare Debian root: installs it, starts what it brings,
# removes it, and looks whether anything is left. As root; takes debootstrap and a mirror.
#
#   packaging/try-package.sh [BUILD_DIRECTORY]
set -euo pipefail
project=$(cd "$(dirname "$0")/.." && pwd)
build=$(realpath "${1:-$project/build/release}")
root=$build/bare-root

say() { printf '== %s\n' "$*"; }
[ "$(id -u)" = 0 ] || { echo "try-package.sh: must be started as root" >&2; exit 1; }
command -v debootstrap >/dev/null || apt-get install -y debootstrap >/dev/null

say "package"
cmake --build "$build" -j2 >/dev/null
rm -f "$build"/vantrel_*.deb
(cd "$build" && cpack -G DEB >/dev/null)
package=$(ls "$build"/vantrel_*.deb)

say "bare root with the mirror and the release of this machine"
. /etc/os-release
mirror=$(apt-get indextargets --format '$(SITE)' "Release: $VERSION_CODENAME" | head -n 1)
umount_root() { umount "$root/proc" 2>/dev/null || true; }
trap umount_root EXIT
umount_root
rm -rf --one-file-system "$root"
debootstrap --variant=minbase "$VERSION_CODENAME" "$root" "$mirror" >"$build/debootstrap.log"

# What there is, by name; dpkg's own records and logs apart, which keep a trace of any package.
contents() {
  find "$root" -xdev \( -path "$root/var/lib/dpkg" -o -path "$root/var/log" \) -prune \
    -o -printf '%P %y %m %u\n' | sort
}
inside() { chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin "$@"; }

cp "$package" "$root/var/lib/dpkg/vantrel.deb"
contents >"$build/before.list"
say "install"
inside dpkg -i /var/lib/dpkg/vantrel.deb
inside dpkg -L vantrel | while read -r path; do
  [ -e "$root$path" ] || echo "  kept out by the root's own dpkg settings: $path"
done

say "start the programs"
inside vantrel-inspect --help >/dev/null
mkdir -p "$root/var/lib/dpkg/site/l/sys"
inside sh -c 'cd /var/lib/dpkg/site && vantrel-cron'
inside vantrel-inspect --site /var/lib/dpkg/site events
status=0
inside vantrel-inspect --site /var/lib/dpkg/site check >/dev/null || status=$?
[ "$status" = 2 ] || { echo "check of an empty site: status $status, not 2" >&2; exit 1; }

say "remove"
inside dpkg -r vantrel
inside dpkg -P vantrel 2>/dev/null || true
contents >"$build/after.list"
if ! diff "$build/before.list" "$build/after.list"; then
  echo "removing the package left a trace" >&2
  exit 1
fi
umount_root
rm -rf --one-file-system "$root"
say "installs and removes cleanly"
