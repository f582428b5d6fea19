# Shared by the scripts in the root. Not run by itself: it is read by bash after `set -euo pipefail`, with
# the checkout's root as the working directory.
# shellcheck shell=bash

# With which root's scripts go on as an ordinary user.
ordinary_path=/usr/local/bin:/usr/bin:/bin

source scripts/packages.sh

say() {
    printf '==> %s\n' "$*" >&2
}

# as_root COMMAND [ARGUMENT ...]
as_root() {
    if ((EUID == 0)); then
        "$@"
    else
        sudo "$@"
    fi
}

is_installed() {
    [[ $(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

# ensure_packages PACKAGE ...: installs what is missing; asks the network for nothing if nothing is.
ensure_packages() {
    local package missing=()
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    if ((${#missing[@]} == 0)); then
        return
    fi
    say "Installing ${missing[*]}"
    as_root apt-get update --quiet
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install --quiet --yes --no-install-recommends "${missing[@]}"
}

# build PRESET [CMAKE ARGUMENT ...]
build() {
    local preset=$1 launcher=()
    shift
    if command -v ccache >/dev/null; then
        launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    fi
    say "Building ($preset)"
    cmake --preset "$preset" "${launcher[@]}" "$@"
    cmake --build --preset "$preset"
}

# mirror_checkout FOLDER USER: makes FOLDER hold the checkout's files, all of them USER's. Only what differs is
# written, and gets the time of now: a build there does what has become necessary since the last one, also
# when a file was edited while that one ran.
mirror_checkout() {
    local folder=$1 user=$2 wanted file
    wanted=$(mktemp)
    git -c safe.directory='*' ls-files -z --cached --others --exclude-standard |
        while IFS= read -r -d '' file; do
            if [[ -f $file ]]; then
                printf './%s\0' "$file"
            fi
        done | LC_ALL=C sort -z >"$wanted"
    (cd "$folder" && find . -path ./build -prune -o -type f -print0) |
        LC_ALL=C sort -z | LC_ALL=C comm -z -13 "$wanted" - | (cd "$folder" && xargs -0 -r rm --)
    while IFS= read -r -d '' file; do
        if ! cmp --quiet "$file" "$folder/$file" || [[ -x $file && ! -x $folder/$file ]]; then
            printf '%s\0' "$file"
        fi
    done <"$wanted" |
        tar --create --null --no-recursion --files-from=- --owner="$user" --group="$user" |
        tar --extract --touch --same-owner --directory="$folder"
    rm -- "$wanted"
    chown --recursive "$user:$user" "$folder"
}

# become_ordinary_user SCRIPT [ARGUMENT ...]: returns at once for an ordinary user. For root, runs the script
# as `nobody` in a copy of the checkout, brings its pictures back and ends with its status: as root nothing
# is ever forbidden, so half of what is tested would not be.
become_ordinary_user() {
    local user=65534 place status=0
    if ((EUID != 0)); then
        return
    fi
    place=/var/tmp/deskbroom-$(pwd -P | cksum | cut -d ' ' -f 1)
    mkdir -p "$place"
    if [[ $(stat --format=%u "$place") != 0 ]]; then
        say "$place belongs to somebody else"
        exit 1
    fi
    install -d -o "$user" -g "$user" "$place/checkout" "$place/home"
    mirror_checkout "$place/checkout" "$user"
    say "Going on as an ordinary user in $place/checkout"
    (
        cd "$place/checkout"
        env -i PATH="$ordinary_path" LANG=C.UTF-8 HOME="$place/home" \
            setpriv --reuid="$user" --regid="$user" --clear-groups --no-new-privs "$@"
    ) || status=$?
    if [[ -d $place/checkout/build/pictures ]]; then
        mkdir -p build
        rm -rf build/pictures
        cp -r "$place/checkout/build/pictures" build/pictures
    fi
    exit "$status"
}
