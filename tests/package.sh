#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# What an installation brings: valid files, a program that starts from there, and nothing left when it is taken away.
#   tests/package.sh BUILD_FOLDER     (with the targets pintalux and desktop_files built)
set -euo pipefail
build=$(cd "$1" && pwd)
source=$(cd "$(dirname "$0")/.." && pwd)
id=io.github.pintalux.Pintalux
work=$(mktemp -d)
server=
trap '[ -z "$server" ] || kill "$server" 2>/dev/null || true; rm -rf "$work"' EXIT
fail() { echo "package.sh: $*" >&2; exit 1; }

prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null
program="$prefix/bin/pintalux"

files_are_valid() {
  desktop-file-validate "$prefix/share/applications/$id.desktop"
  appstreamcli validate --no-net --pedantic "$prefix/share/metainfo/$id.metainfo.xml" >"$work/appstream" || fail "$(<"$work/appstream")"
  local page text warnings option field fields
  fields=$(python3 -c 'import json, sys
schema = json.load(open(sys.argv[1]))
mark = schema["$defs"]["annotation"]["properties"]
print(*schema["properties"], *schema["properties"]["beautify"]["properties"], *mark, *mark["kind"]["enum"])' \
    "$prefix/share/pintalux/marcas.schema.json")
  for page in "$prefix/share/man/man1/pintalux.1.gz" "$prefix/share/man/es/man1/pintalux.1.gz"; do
    warnings=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>&1 >/dev/null)
    [ -z "$warnings" ] || fail "$page: $warnings"
    text=$(zcat "$page" | tr -d '\\')
    for option in $("$program" --help | grep -o '^  --[a-z-]*'); do
      grep -q -- "^\.B[IR]\? $option\b" <<<"$text" || fail "$page does not explain $option"
    done
    text=$(grep '^\.BR\? ' <<<"$text")
    for field in $fields; do
      grep -qwF -- "$field" <<<"$text" || fail "$page does not explain the marks' $field"
    done
  done
  local version
  version=$("$program" --version)
  grep -q "release version=\"${version#Pintalux }\"" "$prefix/share/metainfo/$id.metainfo.xml" || fail "another version"
  bash -uc 'source "$1"; [ "Pintalux $pkgver" = "$2" ]' - "$source/data/arch/PKGBUILD" "$version" || fail "another version in PKGBUILD"
  grep -qF "\"$version\"" <<<"$(zcat "$prefix/share/man/man1/pintalux.1.gz")" || fail "another version in the manual"
}

# Asks each shell what it would offer.
shells_complete() {
  local offered
  offered=$(bash -c 'source "$1"; COMP_WORDS=(pintalux --capture f) COMP_CWORD=2; _pintalux; echo "${COMPREPLY[*]}"
    COMP_WORDS=(pintalux --ann) COMP_CWORD=1; _pintalux; echo "${COMPREPLY[*]}"' - \
    "$prefix/share/bash-completion/completions/pintalux")
  [ "$offered" = $'fullScreen\n--annotate' ] || fail "bash offers: $offered"
  offered=$(fish -c 'source $argv[1]; complete -C "pintalux --capture f" | cut -f1; complete -C "pintalux --anno" | cut -f1' \
    "$prefix/share/fish/vendor_completions.d/pintalux.fish")
  [ "$offered" = $'fullScreen\n--annotate' ] || fail "fish offers: $offered"
  # zsh completes at a terminal only: it is given one, and two presses of the tabulator.
  offered=$(python3 - "$prefix/share/zsh" <<'END'
import glob, os, pty, re, select, sys, time
folder = os.path.dirname(glob.glob(sys.argv[1] + "/*/_pintalux")[0])
pid, terminal = pty.fork()
if pid == 0:
    os.execvpe("zsh", ["zsh", "-f", "-i"], {**os.environ, "PS1": "", "TERM": "dumb"})
def read(until):
    text, end = "", time.time() + 20
    while until not in text and select.select([terminal], [], [], max(0, end - time.time()))[0]:
        text = re.sub(r"\s+", " ", text + os.read(terminal, 4096).decode(errors="replace"))
    return text
os.write(terminal, f"fpath=('{folder}' $fpath); autoload -U compinit; compinit -u -D; echo li''sto\n".encode())
read("listo")
os.write(terminal, b"pintalux --capture fu\t--ann\t")
print(read("--annotate"))
os.write(terminal, b"\x03exit\n")
os.close(terminal)
END
)
  [[ $offered == *"--capture fullScreen "*"--annotate"* ]] || fail "zsh offers: $offered"
}

# The schema of marks files and the program agree about the examples.
schema_agrees() {
  convert -size 40x30 xc:white "$work/a.png"
  python3 - "$source" "$program" "$work" <<'END'
import glob, json, jsonschema, os, subprocess, sys
source, program, work = sys.argv[1:]
schema = jsonschema.Draft202012Validator(json.load(open(source + "/docs/marcas.schema.json")))
arrow = {"kind": "arrow", "start": [0, 0], "end": [9, 9], "color": "#FF0000", "lineWidth": 4}
files = [json.load(open(file)) for file in glob.glob(source + "/fuzz/corpus/marks/*.json")]
with open(source + "/docs/linea-de-ordenes.md") as page:
    files.append(json.loads(page.read().split("```json\n")[1].split("```")[0]))
assert schema.is_valid(files[-1]), "the example of the user's page"
files += [{"annotations": [{**arrow, name: value}]} for name, value in [
    ("kind", "nada"), ("start", [0]), ("end", [0, 2e6]), ("color", "rojo"), ("lineWidth", -1), ("filled", 1),
    ("arrowStyle", "double"), ("arrowStyle", "Double"), ("fontSize", None), ("number", 1.5), ("fontSize", 0), ("unknown", 1),
    ("id", "00000000-0000-0000-0000-000000000000"), ("id", "{00112233-4455-6677-8899-aabbccddeeff}"),
    ("id", "00112233-4455-6677-8899-aabbccddeeff")]]
files += [{"annotations": [{key: arrow[key] for key in arrow if key != name}]} for name in arrow]
files += [{"beautify": {"padding": 2001}}, {"beautify": {"gradient": 3}}, {"pixelScale": 17}, {"$schema": "marcas.schema.json"}, {"$schema": 1}, {"pixelScale": None},
    {"marks": []}, []]
for content in files:
    with open(work + "/marks.json", "w") as file:
        json.dump(content, file)
    run = subprocess.run([program, "--annotate", "a.png", "--marks", "marks.json", "--check"], cwd=work, capture_output=True)
    if (run.returncode == 0) != schema.is_valid(content):
        sys.exit(f"schema and program disagree about {content}: {run.stderr.decode()}")
    assert (run.returncode == 0) == run.stdout.decode().startswith("Correcto: "), run
assert not os.path.exists(work + "/out.png")
END
}

# The desktop starts the program by its name, for an action of its entry; the program answers and ends.
program_starts() {
  exec 3< <(exec Xvfb -noreset -displayfd 1 -screen 0 640x480x24 2>/dev/null)
  server=$!
  local number
  read -r number <&3
  export DISPLAY=":$number" HOME="$work/home" XDG_CONFIG_HOME= XDG_DATA_HOME= XDG_RUNTIME_DIR="$work/run"
  mkdir -p "$HOME"
  mkdir -m 700 "$XDG_RUNTIME_DIR"
  "$program" --capture fullScreen --output "$work/screen.png"
  [ "$(identify -format %wx%h "$work/screen.png")" = 640x480 ] || fail "no picture of the screen"
  sed "s|</busconfig>|<servicedir>$prefix/share/dbus-1/services</servicedir>&|" "$source/tests/data/session-bus.conf" >"$work/bus.conf"
  dbus-run-session --config-file="$work/bus.conf" -- bash -euc '
    bus() { gdbus call --session --dest org.freedesktop.DBus --object-path / --method "org.freedesktop.DBus.$@"; }
    gdbus call --session --dest '$id' --object-path /io/github/pintalux/Pintalux \
      --method org.freedesktop.Application.ActivateAction color "[]" "{}" >/dev/null
    process=$(bus GetConnectionUnixProcessID '$id' | tr -dc "0-9 " | awk "{print \$NF}")
    readlink "/proc/$process/exe"
    kill "$process"
    for _ in {1..600}; do [ -e "/proc/$process" ] || exit 0; sleep 0.05; done
    exit 1' >"$work/started" 2>"$work/bus" || fail "the desktop could not start it: $(<"$work/bus")"
  [ "$(<"$work/started")" = "$program" ] || fail "something else was started: $(<"$work/started")"
}

# Overflows end the program, its calls cannot be redirected, and it lies at another address each time.
is_hardened() {
  local headers symbols
  headers=$(readelf --wide --file-header --program-headers --dynamic "$program")
  symbols=$(nm --dynamic "$program")
  [[ $headers =~ Type:\ +DYN && $headers == *GNU_RELRO* && $headers == *BIND_NOW* ]] || fail "not hardened: $headers"
  [[ $symbols == *__stack_chk_fail* && $symbols == *_chk@* ]] || fail "not hardened: $symbols"
}

icons_have_their_sizes() {
  local icon side
  for icon in "$prefix"/share/icons/hicolor/*x*/apps/"$id.png"; do
    side=${icon#"$prefix/share/icons/hicolor/"}
    [ "$(identify -format %wx%h "$icon")" = "${side%%/*}" ] || fail "$icon has another size"
  done
  [ -e "$prefix/share/icons/hicolor/48x48/apps/$id.png" ] || fail "the icon that every theme asks for is missing"
}

nothing_is_left() {
  local left
  cmake -DMANIFEST="$build/install_manifest.txt" -P "$source/data/uninstall.cmake"
  left=$(find "$prefix" ! -type d -o -iname '*pintalux*')
  [ -z "$left" ] || fail "left after uninstalling: $left"
}

package_installs() {
  local package root left
  (cd "$build" && cpack -G DEB -B "$work/package" >/dev/null 2>"$work/cpack") || fail "$(<"$work/cpack")"
  package=$(echo "$work"/package/*.deb)
  lintian --allow-root --fail-on error,warning "$package" >"$work/lintian" 2>&1 || fail "$(<"$work/lintian")"
  root="$work/root"
  mkdir -p "$root/var/lib/dpkg/"{info,updates} && touch "$root/var/lib/dpkg/status"
  dpkg --root="$root" --log=/dev/null --force-depends --force-not-root --install "$package" >/dev/null 2>&1
  grep -q '^Exec=/usr/bin/pintalux$' "$root/usr/share/dbus-1/services/$id.service" || fail "the service names no program"
  [ "$("$root/usr/bin/pintalux" --version)" = "$("$build/pintalux" --version)" ] || fail "the packaged program does not start"
  dpkg --root="$root" --log=/dev/null --force-not-root --purge pintalux >/dev/null 2>&1
  left=$(find "$root" -path "$root/var/lib/dpkg" -prune -o ! -type d -print -o -iname '*pintalux*' -print)
  [ -z "$left" ] || fail "left after purging: $left"
}

files_are_valid
shells_complete
schema_agrees
is_hardened
icons_have_their_sizes
program_starts
nothing_is_left
package_installs
echo "paquete: correcto"
