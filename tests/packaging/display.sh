# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# A private X server for scripts, and waiting. Sourced.

# wait_until COMMAND...: until it succeeds; fails after half a minute.
wait_until() {
    local deadline=$((SECONDS + 30))
    until "$@"; do
        ((SECONDS < deadline)) || return 1
        sleep 0.1
    done
}

# start_display FOLDER: an X server that is found by DISPLAY and that keeps its files in FOLDER.
# shellcheck disable=SC2034  # display_pid is for those who source this file
start_display() {
    # It would begin anew whenever its last client leaves, and break off who comes in that moment.
    Xvfb -displayfd 3 -noreset -screen 0 1280x800x24 -nolisten tcp 3>"$1/display" \
        &>"$1/Xvfb.log" &
    display_pid=$!
    if ! wait_until test -s "$1/display"; then
        cat "$1/Xvfb.log" >&2
        return 1
    fi
    DISPLAY=:$(<"$1/display")
    export DISPLAY
}

# has_windows TITLE...: whether the program has windows with all of these titles.
has_windows() {
    local title tree
    tree=$(xwininfo -root -tree) || return
    for title in "$@"; do
        [[ $tree == *"\"$title\": (\"glimmerpane\" "* ]] || return
    done
}
