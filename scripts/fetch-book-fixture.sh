#!/bin/sh
# Fetches pychess_book.bin, a real Polyglot book, for the book tests.
# The Debian package is only downloaded and unpacked, never installed or run.
# Usage: scripts/fetch-book-fixture.sh [target folder]   (default: fixtures)
set -eu

target=${1:-fixtures}
mkdir -p "$target"
target=$(cd "$target" && pwd)
if [ -f "$target/pychess_book.bin" ]; then
  echo "book fixture already present: $target/pychess_book.bin"
  exit 0
fi

work=$(mktemp -d)
chmod a+rwx "$work"  # apt-get downloads as its own user
trap 'rm -rf "$work"' EXIT
cd "$work"
apt-get download pychess || { apt-get update && apt-get download pychess; }
# Only the book leaves the package: its path inside the data archive is looked up, and tar
# extracts that one member.
book=$(dpkg-deb --fsys-tarfile pychess_*.deb | tar -t | grep '/pychess_book\.bin$' | head -n 1)
if [ -z "$book" ]; then
  echo "pychess_book.bin not found in the pychess package" >&2
  exit 1
fi
dpkg-deb --fsys-tarfile pychess_*.deb | tar -xO "$book" > "$target/pychess_book.bin"
echo "book fixture: $target/pychess_book.bin"
