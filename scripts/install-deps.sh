#!/usr/bin/env bash
# Installs the Debian packages that are missing: install-deps.sh LIST...
#   build   to build and run the application and its tools
#   demo    to show the demonstration where there is no display
#   test    to build and run the tests and the benchmarks
#   check   to check the sources' form
#   addon   to pack the add-on for sites that hand out add-ons
#   release to make all packages of a release
#   icons   to draw the application's icon anew
set -euo pipefail

build=(cmake g++ libcli11-dev libg810-led-dev libgif-dev libhidapi-dev libpng-dev libxcb-dpms0-dev libxcb-randr0-dev libxcb-screensaver0-dev
    libxcb1-dev ninja-build nlohmann-json3-dev pkg-config qt6-base-dev)
demo=(lua5.1 netpbm xvfb)
test=(appstream at-spi2-core dbus desktop-file-utils fakeroot libbenchmark-dev libgmock-dev libgtest-dev lintian lua-check lua5.1 man-db openbox
    python3-dbusmock python3-pyatspi rpm unzip weston x11-xserver-utils xauth xdotool xvfb xwayland zip)
check=(clang clang-format clang-tidy libclang-rt-dev)
addon=(zip)
release=(dpkg-dev rpm unzip)
icons=(librsvg2-bin)

wanted=()
for list in "$@"; do
    case $list in
        build) wanted+=("${build[@]}") ;;
        demo) wanted+=("${demo[@]}") ;;
        test) wanted+=("${test[@]}") ;;
        check) wanted+=("${check[@]}") ;;
        addon) wanted+=("${addon[@]}") ;;
        release) wanted+=("${release[@]}") ;;
        icons) wanted+=("${icons[@]}") ;;
        *)
            echo "install-deps.sh: there is no list \"$list\"" >&2
            exit 2
            ;;
    esac
done

if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    echo "Not a Debian system; what these packages hold has to be there already: ${wanted[*]}" >&2
    exit 0
fi

missing=()
for package in "${wanted[@]}"; do
    status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "These packages are missing, and only root can install them: ${missing[*]}" >&2
        exit 1
    fi
    as_root=(sudo)
fi

apt() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o Dpkg::Use-Pty=0 "$@" >/dev/null
}

echo "Installing: ${missing[*]}"
# The package lists may be old or missing; if they cannot be updated, the present ones may be enough.
apt update || echo "The package lists could not be renewed." >&2
apt install -y --no-install-recommends "${missing[@]}"
