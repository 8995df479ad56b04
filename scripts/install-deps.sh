#!/usr/bin/env bash
# Installs, on Debian, whatever of the build and test dependencies is missing.
set -euo pipefail

packages=(g++ cmake ninja-build zlib1g-dev liblzma-dev liblzf-dev)
# dpkg-dev finds the package's library dependencies; lintian and man-db check it and its page.
if [ "${1:-}" = "--tests" ]; then
  packages+=(clang-format libgtest-dev libbenchmark-dev gaviotatb dpkg-dev lintian man-db)
fi
if [ "${1:-}" = "--package" ]; then
  packages+=(dpkg-dev)
fi

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
