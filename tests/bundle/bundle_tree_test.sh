#!/usr/bin/env bash
# usage: bundle_tree_test.sh BUILD-FOLDER
set -euo pipefail
build=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() {
    echo "$1" >&2
    exit 1
}

check_bundle() {
    local contents=$1/Contents
    local resources=$contents/Resources
    [[ -d $contents/Frameworks ]] || fail "$contents/Frameworks is missing"
    grep -q '"SorvikSignalsAppID": ""' "$contents/Info.json" || fail "$contents/Info.json names no empty analytics id"
    ! grep -q '@' "$contents/Info.json" || fail "$contents/Info.json holds an unfilled place"
    [[ $(readlink "$resources/gs") == /usr/bin/gs ]] || fail "gs is no link to the system's"
    "$resources/gs" --version >/dev/null || fail "gs does not start"
    check_magick "$resources"
    check_delegates "$resources"
    check_drawing "$resources/sorvikdraw"
}

# With text, for which the tool needs a module that lies beside it.
check_drawing() {
    local tool=$1 work
    work=$(mktemp -d -p "$scratch")
    echo '<svg xmlns="http://www.w3.org/2000/svg" width="9" height="7"><text y="7" font-size="9">M</text></svg>' >"$work/in.svg"
    "$tool" "$work/in.svg" --format png || fail "sorvikdraw draws nothing"
    [[ $(magick identify -format '%wx%h %k' "$work/in.png") =~ ^9x7\ ([2-9]|[1-9][0-9])$ ]] || fail "the text is missing"
}

# Works with the folder as the program does: environment and working directory point to it.
magick() {
    (cd "$resources" && PATH=$resources:$PATH MAGICK_CONFIGURE_PATH=$resources "$resources/magick" "$@")
}

check_magick() {
    local resources=$1 work
    work=$(mktemp -d -p "$scratch")
    magick rose: "$work/in.png"
    magick "$work/in.png" -quality 85 "$work/out.webp"
    [[ $(magick identify "$work/out.webp") == *" WEBP 70x46 "* ]] || fail "no WebP of the right size came out"
    [[ $(magick identify -verbose "$work/out.webp") == *Geometry* ]] || fail "identify -verbose tells nothing"
    ! magick "$work/missing.png" "$work/never.png" 2>/dev/null || fail "a failure was not handed back"
}

check_delegates() {
    local resources=$1 work policies
    work=$(mktemp -d -p "$scratch")
    policies=$(magick -list policy)
    [[ $policies == *"$resources/policy.xml"* ]] || fail "our policy is not read"
    [[ $policies == *"/etc/ImageMagick"* ]] || fail "the system's policy no longer applies"

    # The system has a delegate for this ending; were it free to start, the error would be another one.
    echo hello >"$work/letter.docx"
    [[ $(magick "$work/letter.docx" "$work/letter.png" 2>&1 || true) == *"not allowed by the security policy"* ]] ||
        fail "a delegate of the system was free to start"

    echo '<svg xmlns="http://www.w3.org/2000/svg" width="9" height="7"><rect width="9" height="7"/></svg>' >"$work/box.svg"
    magick "$work/box.svg" "$work/box.png"
    [[ $(magick identify "$work/box.png") == *" PNG 9x7 "* ]] || fail "SVG is no longer read"
}

check_bundle "$build/lib/sorvik"
cmake --install "$build" --component bundle --prefix "$scratch/installed" >/dev/null
check_bundle "$scratch/installed/lib/sorvik"
