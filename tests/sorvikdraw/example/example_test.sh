#!/usr/bin/env bash
# usage: example_test.sh PROGRAM PROJECT
# The engine's README shows the program as it is compiled, and it does what is said.
set -euo pipefail
program=$1 project=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# shellcheck disable=SC2016 # the marks of a block of code
sed -n '/^```cpp$/,/^```$/{/^```/!p}' "$project/src/sorvikdraw/README.md" |
    diff - "$project/tests/sorvikdraw/example/thumbnail.cpp"

"$program" "$project/packaging/icons/sorvik.svg" "$scratch/out.png"
# Width and height stand behind the signature and the name of the first chunk.
[[ $(od -An -t x1 -N 8 -j 16 "$scratch/out.png") == " 00 00 00 f0 00 00 00 a0" ]]
if "$program" "$scratch/none.svg" "$scratch/none.png" 2>"$scratch/error"; then
    exit 1
fi
grep -q none.svg "$scratch/error"
