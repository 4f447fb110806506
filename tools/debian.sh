# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Fresh Debian systems in folders. Sourced, by scripts that root runs.

# mirror LABEL FALLBACK: the one that this machine's apt uses for that part of Debian.
mirror() {
    local uris
    # shellcheck disable=SC2016  # apt's own kind of variable
    uris=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Origin: Debian' \
        "Label: $1")
    head -n 1 <<<"${uris:-$2}"
}

# make_debian SUITE ROOT: one without anything that it can do without. A folder at ROOT is complete.
make_debian() {
    local uri options=(--variant=minbase)
    uri=$(mirror Debian http://deb.debian.org/debian)
    [[ $uri != https:* ]] || options+=(--include=ca-certificates)
    echo "Making a Debian $1 with debootstrap ..."
    rm -rf --one-file-system "$2.new"
    if ! unshare --mount debootstrap "${options[@]}" "$1" "$2.new" "$uri" >"$2.log"; then
        tail -n 20 "$2.log" >&2
        echo 'debootstrap failed.' >&2
        return 1
    fi
    rm -f "$2.new/var/cache/apt/archives/"*.deb "$2.log"
    mv "$2.new" "$2"
}

# configure_network SUITE ROOT: names are resolved and packages fetched as on this machine.
configure_network() {
    {
        echo "deb $(mirror Debian http://deb.debian.org/debian) $1 main"
        echo "deb $(mirror Debian http://deb.debian.org/debian) $1-updates main"
        echo "deb $(mirror Debian-Security http://deb.debian.org/debian-security) $1-security main"
    } >"$2/etc/apt/sources.list"
    apt-config dump | grep -E '^Acquire::(http|https|Check-Valid-Until|Check-Date|Retries|Languages)\b' \
        >"$2/etc/apt/apt.conf.d/90this-machine" || true
    echo '127.0.0.1 localhost' >"$2/etc/hosts"
    cp /etc/resolv.conf "$2/etc/resolv.conf"
}

# with_own_mounts COMMAND...: runs it with its own mounts and processes, which end with it and with
# this script, however they end. Options of unshare may come first.
with_own_mounts() {
    local status=0
    setpriv --pdeathsig KILL unshare --mount --pid --fork --kill-child "$@" &
    unshared=$!
    wait $unshared || status=$?
    unshared=
    return $status
}

# end_own_mounts: what with_own_mounts runs, if anything. unshare itself puts off milder signals.
end_own_mounts() {
    [[ -z "${unshared:-}" ]] || kill -KILL "$unshared" 2>/dev/null || true
    wait
}
