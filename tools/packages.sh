# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# The Debian packages needed to build, demonstrate and test this project, and their installation.
# Sourced by ./run, ./test and the scripts in tools/.

# shellcheck disable=SC2034  # used by those who source this file
build_packages=(
    g++ cmake ninja-build pkg-config
    qt6-base-dev qt6-tools-dev qt6-l10n-tools qcoro-qt6-dev nlohmann-json3-dev
    libxcb1-dev libxcb-shm0-dev libxcb-composite0-dev libxcb-damage0-dev libxcb-xfixes0-dev
    libxcb-render0-dev libxcb-render-util0-dev libxcb-randr0-dev libxcb-xinput-dev
    libxcb-cursor-dev libxcb-record0-dev libxcb-dri3-dev libxcb-xtest0-dev libxcb-res0-dev libegl-dev libgl-dev
    libpipewire-0.3-dev
    libwayland-dev libwayland-bin wayland-protocols plasma-wayland-protocols
)
# shellcheck disable=SC2034
demo_packages=(xvfb openbox fonts-dejavu-core)
# Private GNOME, sway, KWin and Weston sessions on Wayland.
# shellcheck disable=SC2034
wayland_packages=(
    gnome-shell xwayland pipewire wireplumber xdg-desktop-portal xdg-desktop-portal-gnome
    sway grim kwin-wayland kwin-common weston
)
# shellcheck disable=SC2034
test_packages=(
    "${demo_packages[@]}" "${wayland_packages[@]}"
    xfwm4 metacity i3-wm icewm fluxbox
    picom x11-xserver-utils dbus at-spi2-core locales openssl chromium chromium-driver
    firefox-esr clang-format-19 clang-tidy-19
    x11-utils binutils desktop-file-utils appstream librsvg2-bin file man-db groff-base zsh
)
# KDE's portal and what its dialog needs, where KWin can record the screen without hardware.
if dpkg --compare-versions "$(cat /etc/debian_version)" ge 13; then
    test_packages+=(xdg-desktop-portal-kde plasma-workspace qt6-wayland)
fi
# shellcheck disable=SC2034
debian_packages=(debootstrap debian-archive-keyring util-linux)
# shellcheck disable=SC2034
package_packages=("${debian_packages[@]}" dpkg-dev file lintian xvfb x11-utils)
# For bench/run: the tools that it compares the program with.
# shellcheck disable=SC2034
bench_packages=(
    gstreamer1.0-tools gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-x
    gstreamer1.0-pipewire ffmpeg obs-studio gnuplot-nox
)
# For tools/pictures.
# shellcheck disable=SC2034
picture_packages=(
    "${demo_packages[@]}" "${wayland_packages[@]}"
    dbus chromium chromium-driver ffmpeg fonts-inter adwaita-icon-theme
)
# shellcheck disable=SC2034
fuzz_packages=(clang-19 libclang-rt-19-dev)

# shellcheck disable=SC2034
manager_packages=(mutter kwin-x11 marco mate-settings-daemon-common)

is_installed() {
    [[ "$(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null)" == installed ]]
}

as_root() {
    if ((EUID == 0)); then
        "$@"
    else
        sudo "$@"
    fi
}

# install_packages NAME...: installs missing ones without asking. Reports what it does on
# standard error, because standard output may be in use for data.
install_packages() {
    local package missing=()
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    ((${#missing[@]})) || return 0
    printf 'Installing with apt: %s\n' "${missing[*]}" >&2
    as_root env DEBIAN_FRONTEND=noninteractive apt-get update -qq >&2
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}
