#!/usr/bin/env bash
# Builds the Debian package from a finished build, checks what it holds and how it is
# described, unpacks it into a scratch root and runs the engine and the manual page from
# there. Exits 77 (skipped) where the machine has no cpack or dpkg.
# Usage: package_test.sh BUILD_DIR CPACK VERSION
set -uo pipefail
build=$1 cpack=$2 version=$3
for tool in "$cpack" dpkg-deb dpkg; do
  command -v "$tool" > /dev/null || { echo "skipped: no $tool"; exit 77; }
done

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failures=0
fail() { echo "FAILED: $*"; failures=$((failures + 1)); }

"$cpack" -G DEB --config "$build/CPackConfig.cmake" -B "$scratch/out" > "$scratch/cpack.log" 2>&1 \
  || { cat "$scratch/cpack.log"; echo "FAILED: cpack"; exit 1; }
deb="$scratch/out/torvy_${version}_amd64.deb"
[ -f "$deb" ] || { ls "$scratch/out"; echo "FAILED: no $deb"; exit 1; }

# Exactly these files, so that nothing a test, benchmark or tool installs slips in.
dpkg-deb -c "$deb" | awk '$1 !~ /^d/ {print $6}' | sort > "$scratch/files"
sort > "$scratch/expected" <<'EOF'
./usr/games/torvy
./usr/share/doc/torvy/README.md
./usr/share/doc/torvy/changelog.gz
./usr/share/doc/torvy/copyright
./usr/share/doc/torvy/torvy.ini
./usr/share/games/plugins/logos/torvy.png
./usr/share/games/plugins/xboard/torvy.eng
./usr/share/man/man6/torvy.6.gz
EOF
diff -u "$scratch/expected" "$scratch/files" || fail "file list"
dpkg-deb -c "$deb" | awk '$1 !~ /^(-rw-r--r--|-rwxr-xr-x|drwxr-xr-x)$/ || $2 != "root/root"' \
  | grep . && fail "owners or modes"

field() { dpkg-deb -f "$deb" "$1"; }
[ "$(field Package) $(field Version) $(field Section)" = "torvy $version games" ] || fail "control fields"
for library in zlib1g liblzma5 liblzf1; do
  field Depends | grep -q "\b$library\b" || fail "no dependency on $library: $(field Depends)"
done
[ "$(field Description | wc -l)" -gt 3 ] || fail "no long description"
dpkg-deb -I "$deb" postinst | grep -q 'touch /usr/share/games/plugins/xboard/torvy.eng' || fail "postinst"

root="$scratch/root"
dpkg -x "$deb" "$root"
engine="$root/usr/games/torvy"
# xboard's engine list reads the plugin file as it stands in the source tree.
cmp -s "$root/usr/share/games/plugins/xboard/torvy.eng" "$(dirname "$0")/../../packaging/torvy.eng" || fail "plugin file"
[ "$(head -c 8 "$root/usr/share/games/plugins/logos/torvy.png" | od -An -tx1 | tr -d ' \n')" = 89504e470d0a1a0a ] \
  || fail "logo is no PNG"

# The installed engine, started from an empty folder as a front end would start it.
mkdir "$scratch/run"
out=$(cd "$scratch/run" && printf 'xboard\nprotover 2\nping 1\nperft 3\nquit\n' | timeout 60 "$engine")
status=$?
[ $status -eq 0 ] || fail "engine exit status $status"
for line in 'feature done=1' "feature myname=\"Torvy $version\"" 'pong 1' '# Total leaves: 8902'; do
  grep -qxF "$line" <<< "$out" || fail "engine output lacks: $line"
done

if command -v man > /dev/null; then
  page="$root/usr/share/man/man6/torvy.6.gz"
  warnings=$(LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>&1 > /dev/null)
  [ -z "$warnings" ] || fail "manual page warnings: $warnings"
  MANWIDTH=80 man -l "$page" 2> /dev/null | grep -q 'perft' || fail "manual page does not render"
else
  echo "no man: manual page not rendered"
fi

if command -v lintian > /dev/null; then
  lintian --fail-on error,warning "$deb" > "$scratch/lintian" 2>&1 || { cat "$scratch/lintian"; fail "lintian"; }
else
  echo "no lintian: package not linted"
fi

[ $failures -eq 0 ] && echo "package: all checks passed"
exit $((failures > 0))
