#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes a release of what is checked out: version, date and changelog, every test, the package, a commit and its tag.
#   tools/release.sh VERSION     (three numbers, as 1.2.0)
# Nothing leaves this machine; the last line says what is left to do. When a step fails, all is as it was before.
set -euo pipefail
cd "$(dirname "$0")/.."

fail() { echo "release.sh: $*" >&2; exit 1; }
version=${1:-}
[[ $version =~ ^[0-9]+\.[0-9]+\.[0-9]+$ ]] || fail "a version is three numbers, as 1.2.0"
[ -z "$(git status --porcelain)" ] || fail "there are changes that are not committed"
! git rev-parse -q --verify "refs/tags/v$version" >/dev/null || fail "v$version exists"
former=$(sed -n 's/^project(pintalux VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
[ "$(printf '%s\n' "$former" "$version" | sort -V | tail -n 1)" = "$version" ] || fail "$former is later than $version"
news=$(awk '/^## / { inside = ($0 == "## Sin publicar") ; next } inside && NF' CHANGELOG.md)
[ -n "$news" ] || fail "CHANGELOG.md has nothing under «Sin publicar»"

undo() { git checkout -q -- CMakeLists.txt CHANGELOG.md data/arch/PKGBUILD; }
trap undo ERR INT TERM
sed -i "s/^project(pintalux VERSION $former/project(pintalux VERSION $version/
  s/^set(PINTALUX_RELEASE_DATE [0-9-]*)/set(PINTALUX_RELEASE_DATE $(date --utc +%F))/" CMakeLists.txt
sed -i "s/^## Sin publicar\$/## $version/" CHANGELOG.md
sed -i "s/^pkgver=.*/pkgver=$version/" data/arch/PKGBUILD

./test.sh
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
"${as_root[@]}" tools/make-package.sh bookworm trixie

git commit -qam "Release $version" -m "$news"
git tag -a "v$version" -m "Pintalux $version"
trap - ERR INT TERM
echo "Pintalux $version: los paquetes están en build/packages"
echo "Falta publicarla: git push --follow-tags"
