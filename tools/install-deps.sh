#!/usr/bin/env bash
# Installs, from Debian's packages, whatever this machine lacks to build and
# test pimtlv, the bridges' format libraries included. Quiet and quick when
# everything is already there.
set -euo pipefail

packages=(cmake ninja-build g++ clang libgtest-dev libgmock-dev libbenchmark-dev doxygen
          nlohmann-json3-dev libcli11-dev
          pkg-config libical-dev tzdata libgmime-3.0-dev
          python3-venv python3-dev python3-pip python3-setuptools python3-wheel
          pybind11-dev python3-pybind11 python3-pytest python3-hypothesis
          python3-icalendar python3-vobject)
# Optional: the benchmarks compare against Protocol Buffers and msgpack-c when
# present.
if [ "${PIMTLV_WITH_PROTOBUF:-0}" = 1 ]; then
  packages+=(libprotobuf-dev protobuf-compiler libmsgpack-cxx-dev)
fi

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "installing: ${missing[*]}" >&2
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
