# shellcheck shell=bash
# shellcheck disable=SC2034  # the lists are for the scripts
# Shared by the scripts of this folder; source it. Moves to the repository's root.
set -euo pipefail

# --help, wherever it stands, prints the comment at the head of the script, before anything is installed or built.
for argument in "$@"; do
    if [[ $argument =~ ^(-h|--help)$ ]]; then
        sed -n -e '1d' -e '/^# shellcheck/d' -e '/^#/!q' -e 's/^# //p' "$0"
        exit
    fi
done
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

# --qt6 comes first, in scripts that set takes_qt6=yes. Qt 6 has its own presets, and so its own folders: release-qt6.
qt_packages=(qtbase5-dev qttools5-dev qttools5-dev-tools)
# For the test of the form in Python.
python_packages=(python3-pyside2.qttest python3-pyside2.qtuitools python3-pyside2.qtwidgets)
qt_version=5
qt_suffix=
if [ "${1:-}" = --qt6 ]; then
    [ "${takes_qt6:-}" = yes ] || { printf '%s: works with Qt 5 only\n' "${0##*/}" >&2; exit 2; }
    qt_packages=(qt6-base-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools libqt6opengl6-dev)
    python_packages=()
    qt_version=6
    qt_suffix=-qt6
    shift
fi
build_packages=(cmake ninja-build g++ "${qt_packages[@]}" libassimp-dev libtinyobjloader-dev libmuparser-dev
    zlib1g-dev libgl-dev libegl-dev libgl1-mesa-dri fonts-dejavu-core)
# For the examples with engines, which are left out if these are missing. The drivers are for machines without a GPU.
vulkan_packages=(libvulkan-dev libxcb1-dev glslang-tools mesa-vulkan-drivers)
ogre_packages=(libogre-1.12-dev libxcb1-dev)
x_server_packages=(xvfb xauth)
# The sanitized build is made by clang++ with clazy, which looks for mistakes in the use of Qt.
sanitizer_packages=(clang libclang-rt-14-dev clazy)
# Reads the widgets like a screen reader, in a test.
accessibility_packages=(at-spi2-core python3-pyatspi dbus-daemon)
# QDoc reads C++ with clang's library and needs its headers, which that package does not include.
doc_packages=(qdoc-qt5 libclang-common-14-dev python3)

say() { printf '\033[1m== %s\033[0m\n' "$*" >&2; }
fail() { printf '%s: %s\n' "$(basename "$0")" "$*" >&2; exit 1; }

# apt_get ARGUMENT...: for need_packages. Says nothing unless it fails. While another apt or dpkg works, it waits for ten
# minutes; apt's own option for that knows only one of the three locks.
apt_get() {
    local errors waited
    for ((waited = 0; waited < 600; waited += 5)); do
        errors=$("${root[@]}" env LC_ALL=C DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=600 "$@" \
            </dev/null 2>&1 >/dev/null) && return
        [[ $errors == *"Could not get lock"* ]] || break
        [ $waited -gt 0 ] || say "Waiting for another installation of packages to end"
        sleep 5
    done
    printf '%s\n' "$errors" >&2
    return 1
}

# need_packages PACKAGE...: installs the Debian packages that are missing. On a system without apt it only names the Debian
# packages, and stops if the build could not even start.
need_packages() {
    local missing=() package
    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        for package in cmake ninja c++ qmake; do
            command -v "$package" >/dev/null || command -v "$package-qt5" >/dev/null || command -v "${package}6" >/dev/null \
                || missing+=("$package")
        done
        [ ${#missing[@]} -eq 0 ] || fail "missing here: ${missing[*]}. This system has no apt; install what Debian 12 calls: $*"
        return 0
    fi
    for package in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    local root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "missing packages: ${missing[*]}. Install them as root, as there is no sudo."
        root=(sudo)
    fi
    say "Installing ${missing[*]}"
    # The package lists of a fresh machine are empty, and those of an old one name packages that no longer exist.
    apt_get update || say "The package lists could not be refreshed; trying with the old ones"
    apt_get -y install --no-install-recommends "${missing[@]}" || fail "could not install: ${missing[*]}"
}

# configure_and_build PRESET [TARGET...]: builds in build/PRESET$qt_suffix; without targets, everything. Says little
# unless it fails.
configure_and_build() {
    local preset=$1$qt_suffix
    shift
    local targets=()
    [ $# -eq 0 ] || targets=(--target "$@")
    # Every time, as new tools may have been installed, and with them tests; it takes a moment.
    say "Configuring build/$preset"
    mkdir -p build
    cmake --preset "$preset" >"build/$preset-configure.log" 2>&1 || { cat "build/$preset-configure.log" >&2; fail "configuring failed"; }
    say "Building build/$preset"
    # Through the preset, which may set the compiler's environment.
    cmake --build --preset "$preset" "${targets[@]}" >&2
}

# with_display COMMAND...: runs it on the current display, or on a virtual X server that lives as long as the command.
with_display() {
    if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
        "$@"
    else
        need_packages "${x_server_packages[@]}"
        xvfb-run -a -s '-screen 0 1920x1200x24' "$@"
    fi
}
