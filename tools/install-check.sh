#!/usr/bin/env bash
# Installs a configured and built tree to a temporary prefix and checks the
# installation as an embedder meets it: the tool starts and decodes a sample
# with no library path set, every installed program and library finds the
# package's libraries through its RUNPATH, only the public headers are there
# and each one compiles on its own, the pkg-config files point into the
# prefix, and the man page is installed. With --consumer it also builds
# examples/consumer with find_package against the prefix and runs it.
#   tools/install-check.sh [--consumer] BUILD_DIR
set -euo pipefail
cd "$(dirname "$0")/.."

consumer=0
if [ "${1:-}" = "--consumer" ]; then consumer=1; shift; fi
build=${1:?usage: install-check.sh [--consumer] BUILD_DIR}
unset LD_LIBRARY_PATH

prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
fail() { echo "install-check: $*" >&2; exit 1; }

cmake --install "$build" --prefix "$prefix" >/dev/null

# The tool runs from the prefix as it is.
"$prefix/bin/pimtlv" --version >/dev/null || fail "installed pimtlv does not start"
"$prefix/bin/pimtlv" decode samples/sms.tlv | grep -q '"ok":true' ||
  fail "installed pimtlv does not decode samples/sms.tlv"

# Every installed program and library: RUNPATH relative to itself, nothing
# missing.
libdir=$(dirname "$(find "$prefix" -name 'libpimtlv.so' | head -1)")
[ -n "$libdir" ] || fail "libpimtlv.so not installed"
for elf in "$prefix/bin/pimtlv" "$libdir"/libpimtlv*.so.*.*; do
  readelf -d "$elf" | grep -q 'RUNPATH.*\$ORIGIN' || fail "$elf has no \$ORIGIN RUNPATH"
  if ldd "$elf" | grep -q 'not found'; then fail "$elf: $(ldd "$elf" | grep 'not found')"; fi
done

# Public headers only, each complete on its own.
include="$prefix/include"
[ -d "$include/pimtlv" ] || fail "no headers under include/pimtlv"
internal=$(find "$prefix" -name '*.h' | grep -E '/private/|TLVWalk|FamilyParser|MessageParser|Layout' || true)
[ -z "$internal" ] || fail "internal headers installed: $internal"
while read -r header; do
  echo "#include <${header#"$include"/}>" |
    ${CXX:-c++} -std=c++17 -fsyntax-only -Wall -Werror -I"$include" -x c++ - ||
    fail "$header does not compile on its own"
done < <(find "$include" -name '*.h' | sort)

# pkg-config: flags that name the prefix, whatever it is.
export PKG_CONFIG_PATH="$libdir/pkgconfig"
for pc in "$libdir"/pkgconfig/*.pc; do
  name=$(basename "$pc" .pc)
  flags=$(pkg-config --cflags --libs "$name") || fail "pkg-config $name"
  cflag=$(echo "$flags" | grep -o -- '-I[^ ]*' | head -1)
  [ "$(realpath "${cflag#-I}")" = "$(realpath "$include")" ] ||
    fail "$name.pc: include directory $cflag is not $include"
  lflag=$(echo "$flags" | grep -o -- '-L[^ ]*' | head -1)
  [ -z "$lflag" ] || [ "$(realpath "${lflag#-L}")" = "$(realpath "$libdir")" ] ||
    fail "$name.pc: library directory $lflag is not $libdir"
done

# The man page: installed, for this version, naming every command the tool has.
man="$prefix/share/man/man1/pimtlv.1"
[ -f "$man" ] || fail "man page not installed"
version=$("$prefix/bin/pimtlv" --version | grep -o '[0-9][0-9.]*' | head -1)
grep -q "^\.TH PIMTLV 1 .*pimtlv $version" "$man" || fail "man page is not for version $version"
for command in $("$prefix/bin/pimtlv" --help | sed -n '/^Subcommands:/,/^$/p' | awk 'NR > 1 && NF {print $1}'); do
  grep -q "^\.B pimtlv $command" "$man" || fail "man page does not show 'pimtlv $command'"
done
if command -v groff >/dev/null; then
  [ -z "$(groff -man -ww -z "$man" 2>&1)" ] || fail "man page: $(groff -man -ww -z "$man" 2>&1 | head -1)"
fi

if [ "$consumer" = 1 ]; then
  cmake -S examples/consumer -B "$prefix/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
  cmake --build "$prefix/consumer" >/dev/null
  "$prefix/consumer/c" || fail "the consumer built against the prefix failed"
fi
echo "install-check: ok ($prefix)"
