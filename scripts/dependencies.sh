# The one list of Debian packages that Navorin needs; run.sh, test.sh and the packages that cpack makes read it.

build_packages=(
    g++ cmake ninja-build ccache pkg-config
    qt6-base-dev qt6-declarative-dev qt6-svg-dev qt6-shadertools-dev qt6-l10n-tools qt6-tools-dev-tools
    libgl1-mesa-dev libxkbcommon-dev libvulkan-dev
    qcoro-qt6-dev libsimdjson-dev
    libgstreamer1.0-dev libgstreamer-plugins-base1.0-dev libglib2.0-dev
    libcpp-httplib-dev nlohmann-json3-dev libsodium-dev libsqlite3-dev
)

# What Navorin loads by name while it runs; what it is linked with comes with build_packages.
run_packages=(
    qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript qml6-module-qtquick qml6-module-qtquick-controls
    qml6-module-qtquick-templates qml6-module-qtmultimedia
    qt6-image-formats-plugins libgl1-mesa-dri
    gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-plugins-bad gstreamer1.0-plugins-ugly
    gstreamer1.0-libav gstreamer1.0-alsa ca-certificates xdg-utils
)

# What it loads only where an ad network is set.
ad_packages=(
    qml6-module-qtwebengine qml6-module-qtwebchannel
)

# What a desktop brings: a bus, a sound server, a keyring, a font for the emoji in titles and lyrics, and Qt's way onto
# Wayland, without which the window goes through its X server. Only Navorin's own package asks for them.
desktop_packages=(
    "default-dbus-session-bus | dbus-session-bus" "pipewire-pulse | pulseaudio"
    "gnome-keyring | libkf5wallet-bin | keepassxc" fonts-noto-color-emoji qt6-wayland
)

# What cpack makes the packages with.
packaging_packages=(dpkg-dev file)

test_packages=(
    libbenchmark-dev clang-format clang-tidy qt6-declarative-dev-tools
    python3 python3-gi gir1.2-atspi-2.0 at-spi2-core xvfb x11-xkb-utils xdotool dbus gnome-keyring libglib2.0-bin
    libsecret-tools playerctl pulseaudio pulseaudio-utils procps
    ffmpeg desktop-file-utils appstream man-db librsvg2-bin gstreamer1.0-tools
)

# install_missing PACKAGE... : asks apt only for what is not there yet.
install_missing() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || { echo "These packages are missing, and there is no sudo: ${missing[*]}" >&2; return 1; }
        as_root=(sudo)
    fi
    echo "Installing ${#missing[@]} missing packages: ${missing[*]}"
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}
