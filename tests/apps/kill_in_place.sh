#!/bin/bash
# Kills sorvikbatch by SIGKILL at many points of an in-place compression of 20 files. After each the next start has to
# leave every file whole: as it was or compressed.
#   kill_in_place.sh SORVIKBATCH PICTURES POINTS
set -u -o pipefail

batch=$1 pictures=$2 points=$3
folder=$(mktemp -d "${TMPDIR:-/tmp}/kill_in_place.XXXXXX") || exit 1
trap 'rm -rf "$folder"' EXIT
export XDG_STATE_HOME=$folder/state TMPDIR=$folder/tmp
mkdir -p "$folder"/{old,new,work,tmp,state}

number=0
while ((number < 20)); do
    for picture in "$pictures"/*.jpg; do
        ((number < 20)) || break
        cp "$picture" "$folder/old/$(printf %02d "$number").jpg"
        number=$((number + 1))
    done
done

now() { echo $((10#$(date +%s%N) / 1000)); } # microseconds

# What a run that is left alone makes of them, and how long it takes.
cp "$folder"/old/*.jpg "$folder/new/"
began=$(now)
"$batch" compress "$folder"/new/*.jpg >"$folder/log" 2>&1 || { cat "$folder/log"; exit 1; }
duration=$(($(now) - began))

failures=0
old=0 new=0 restored=0
for ((point = 0; point < points; point++)); do
    rm -rf "$folder/work" && cp -r "$folder/old" "$folder/work"
    "$batch" compress "$folder"/work/*.jpg >/dev/null 2>&1 &
    process=$!
    delay=$((duration * point / points))
    sleep "$((delay / 1000000)).$(printf %06d $((delay % 1000000)))"
    kill -KILL "$process" 2>/dev/null
    wait "$process" 2>/dev/null

    backups=$(find "$folder/work" -name '*.backup.*' | wc -l)
    restored=$((restored + backups))
    cp "$folder/old/00.jpg" "$folder/other.jpg"
    "$batch" compress "$folder/other.jpg" >/dev/null 2>&1 # the next start
    for file in "$folder"/old/*.jpg; do
        name=$(basename "$file")
        if cmp -s "$folder/work/$name" "$file"; then
            old=$((old + 1))
        elif cmp -s "$folder/work/$name" "$folder/new/$name"; then
            new=$((new + 1))
        else
            echo "point $point: $name is neither the old file nor the new one"
            failures=$((failures + 1))
        fi
    done
    left=$(find "$folder/work" -name '*.backup.*' -o -name '.sorvik_*')
    if [[ -n $left ]]; then
        echo "point $point: left behind: $left"
        failures=$((failures + 1))
    fi
done

echo "$points points: $old old, $new new, $restored found in their backups"
if ((points > 1 && new == 0)); then
    echo "no run came as far as replacing a file: the points prove nothing"
    failures=$((failures + 1))
fi
exit $((failures > 0))
