#!/usr/bin/env bash
# Fails when a program holds copies of data of Qt. Qt compares the addresses of its meta objects, and takes a widget for
# what it is no longer where the linker has copied one into the program. Usage: copy_relocations.sh PROGRAM
set -euo pipefail

relocations=$(LC_ALL=C readelf --relocs --wide "$1")
if ! grep -q 'staticMetaObject.*@Qt_' <<<"$relocations"; then
  echo "$1 refers to no meta object of Qt, so there is nothing to tell." >&2
  exit 1
fi
if copied=$(grep '_COPY .*@Qt_' <<<"$relocations"); then
  printf 'Copied into %s:\n%s\n' "$1" "$copied" >&2
  exit 1
fi
