#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs COMMAND in a clone of this repository, within a Debian that has nothing but its essential packages and apt:
# what a stranger meets who follows the README. Only what is committed is in the clone.
#   tools/bare-root.sh [--user] [--desktop] [--share FOLDER] RELEASE COMMAND [ARGUMENT...]
#   tools/bare-root.sh trixie ./run.sh --selftest out --overlay
# --user     as an ordinary user who may install with sudo, instead of as root
# --desktop  with a desktop's packages, whose services are none of the tests' business
# --share    with this machine's FOLDER as /mnt
# PINTALUX_BARE_CCACHE names a folder that outlives the root and keeps what was compiled in it; one for each release.
# The packages come from the mirror that this machine's apt uses. Ends with the status of COMMAND, or with 75 when the
# mirror cannot be reached. Needs to be root, for the root's mounts and owners. Nothing of the root is left behind.
set -euo pipefail
source=$(cd "$(dirname "$0")/.." && pwd)
unreachable=75

as_user=no
desktop=()
shared=
while [[ ${1:-} == --* ]]; do
  case "$1" in
    --user) as_user=yes ;;
    --desktop) desktop=(xfce4 nautilus xdg-desktop-portal xdg-desktop-portal-gtk at-spi2-core dbus-x11) ;;
    --share) shared=$(realpath "$2"); shift ;;
    *) echo "bare-root: unknown option $1" >&2; exit 2 ;;
  esac
  shift
done
[ $# -ge 2 ] || { sed -n '3,13s/^# \?//p' "$0" >&2; exit 2; }
release=$1
shift

fail() { echo "bare-root: $1" >&2; exit "${2:-1}"; }
[ "$(id -u)" -eq 0 ] || fail "los montajes piden ser root: sudo $0 …"
"$source/tools/setup.sh" root >&2 || fail "no se pudo instalar mmdebstrap" "$unreachable"

scratch=$(mktemp -d)
inside=
finish() {
  trap '' INT TERM HUP
  if [ -n "$inside" ]; then kill "$inside" 2>/dev/null && wait "$inside" 2>/dev/null || true; fi
  rm -rf --one-file-system "$scratch" # the root's mounts were in a namespace that has ended
}
trap finish EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

# The address from which this machine has the packages with that label of Debian's.
mirror() { apt-get indextargets --format '$(ORIGIN)|$(LABEL)|$(REPO_URI)' 'Created-By: Packages' | sed -n "s/^Debian|$1|//p" | head -n 1; }
reachable() { /usr/lib/apt/apt-helper download-file "$1/dists/$2/InRelease" "$scratch/InRelease" >/dev/null 2>&1; }

packages=$(mirror Debian)
packages=${packages%/}
[ -n "$packages" ] || fail "apt no conoce ningún espejo de Debian" "$unreachable"
reachable "$packages" "$release" || fail "no se alcanza $release en $packages" "$unreachable"
sources=("deb $packages $release main")
security=$(mirror Debian-Security)
if [ -n "$security" ] && reachable "${security%/}" "$release-security"; then
  sources+=("deb ${security%/} $release-security main")
fi

# What this machine's apt must be told to reach the mirror, the root's must be told as well.
apt-config dump | grep -E '^Acquire::(https?::|Check-|Retries)' >"$scratch/apt.conf" || true
extra=("${desktop[@]}")
[ "$as_user" = no ] || extra+=(sudo passwd)
[ -z "${PINTALUX_BARE_CCACHE:-}" ] || extra+=(ccache)
[[ $packages != https:* ]] || extra+=(ca-certificates)

root="$scratch/root"
include=()
[ ${#extra[@]} -eq 0 ] || include=(--include="$(IFS=,; echo "${extra[*]}")")
started=$SECONDS
mmdebstrap --quiet --mode=root --format=directory --variant=apt --aptopt="$scratch/apt.conf" \
  --dpkgopt=force-unsafe-io "${include[@]}" "$release" "$root" "${sources[@]}" >"$scratch/log" 2>&1 || {
  cat "$scratch/log" >&2
  reachable "$packages" "$release" || fail "el espejo ha dejado de responder" "$unreachable"
  fail "no se pudo crear la raíz"
}
printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d" # no package starts a service here
chmod +x "$root/usr/sbin/policy-rc.d"

touch "$root/etc/pintalux-bare-root" # tells tools that may break everything where they are
echo "127.0.0.1 localhost $(uname -n)" >"$root/etc/hosts" # sudo looks itself up

user=root home=/root
if [ "$as_user" = yes ]; then
  user=persona home=/home/persona
  chroot "$root" useradd --create-home --shell /bin/bash "$user"
  echo "$user ALL=(ALL) NOPASSWD: ALL" >"$root/etc/sudoers.d/$user"
fi
git clone --quiet "$source" "$root$home/pintalux"
chroot "$root" chown -R "$user:" "$home/pintalux"
ccache=()
if [ -n "${PINTALUX_BARE_CCACHE:-}" ]; then
  mkdir -p "$PINTALUX_BARE_CCACHE" "$root/var/cache/ccache"
  ccache=(CCACHE_DIR=/var/cache/ccache)
fi
echo "bare-root: $release en $((SECONDS - started)) s" >&2

# The first process of a namespace: with it end all that the command has left running, and the mounts.
cat >"$scratch/init" <<'END'
set -euo pipefail
root=$1 user=$2 ccache=$3 shared=$4
shift 4
mount --bind "$root" "$root"
mount -t proc proc "$root/proc"
mount -t sysfs -o ro sys "$root/sys"
mount -t devpts -o newinstance,ptmxmode=0666,mode=0620,gid=5 devpts "$root/dev/pts"
mount --bind "$root/dev/pts/ptmx" "$root/dev/ptmx"
mount -t tmpfs -o mode=1777 shm "$root/dev/shm"
mount -t tmpfs -o mode=755 run "$root/run"
mkdir -m 1777 "$root/run/lock"
if [ -n "$ccache" ]; then
  mount --bind "$ccache" "$root/var/cache/ccache"
  chroot "$root" chown -R "$user:" /var/cache/ccache
fi
if [ -n "$shared" ]; then mount --bind "$shared" "$root/mnt"; fi
trap 'exit 143' TERM
# In the place of this machine's: in a root that is merely changed nobody may have namespaces of their own.
cd "$root"
mount --move . /
chroot . runuser -u "$user" -- "$@" <&0 &
wait $!
END
unshare --mount --pid --fork --kill-child --uts --ipc -- \
  bash "$scratch/init" "$root" "$user" "${PINTALUX_BARE_CCACHE:-}" "$shared" \
  env -i HOME="$home" USER="$user" LOGNAME="$user" SHELL=/bin/bash TERM="${TERM:-dumb}" ${CI:+CI="$CI"} \
  PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin "${ccache[@]}" \
  sh -c 'cd "$HOME/pintalux" && exec "$@"' sh "$@" <&0 &
inside=$!
status=0
wait "$inside" || status=$?
inside=
[ "$status" -ne "$unreachable" ] || status=1 # that one means the mirror
exit "$status"
