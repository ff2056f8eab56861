# shellcheck shell=bash
# What run, test and the scripts of tools/ and bench/ share; to be sourced. Works from the project's root.

SORVIK_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$SORVIK_ROOT" || exit 1

die() {
    echo "$*" >&2
    exit 1
}

# packages_for PURPOSE...: the packages that packaging/packages.txt names for these purposes, one a line.
packages_for() {
    awk -v purposes=" $* " '!/^#/ && NF { if (index(purposes, " " $2 " ")) print $1 }' packaging/packages.txt
}

# missing_packages PURPOSE...: those of them that this machine lacks.
missing_packages() {
    local package
    for package in $(packages_for "$@"); do
        [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || echo "$package"
    done
}

# install_packages PURPOSE...: says nothing and asks nobody when all are there.
install_packages() {
    local missing as_root=()
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    echo "Installing ${missing[*]}"
    if ((EUID != 0)); then
        command -v sudo >/dev/null || die "To install packages this needs to run as root or with sudo."
        as_root=(sudo)
    fi
    quietly "${as_root[@]}" apt-get -q update
    quietly "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-install-recommends "${missing[@]}"
}

# quietly COMMAND...: shows what it printed only when it fails, and ends the script then.
quietly() {
    local output status=0
    output=$(mktemp)
    "$@" >"$output" 2>&1 </dev/null || status=$?
    ((status == 0)) || cat "$output" >&2
    rm -f "$output"
    ((status == 0)) || die "Failed: $*"
}

# configure PRESET: only where it was not done or the presets changed; the build notices all other changes.
configure() {
    local folder=build/$1
    if [[ ! -f $folder/build.ninja || CMakePresets.json -nt $folder/build.ninja ]]; then
        quietly cmake --preset "$1"
    fi
}

# build PRESET [TARGET...]: configures and builds. Off a terminal only errors and one line are printed.
build() {
    local preset=$1 started=$SECONDS targets=() quiet=()
    shift
    (($# == 0)) || targets=(--target "$@")
    [[ -t 1 ]] || quiet=(-- --quiet)
    configure "$preset"
    cmake --build --preset "$preset" "${targets[@]}" "${quiet[@]}" </dev/null || die "build/$preset does not build."
    echo "build/$preset is up to date ($((SECONDS - started)) s)"
}
