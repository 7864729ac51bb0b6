#!/usr/bin/env bash
# package_tests.sh SOURCES BUILD: the Debian package is well made, installs, runs and goes without a trace.
[ "$(id -u)" -eq 0 ] || [ -n "${FAKEROOTKEY:-}" ] || exec fakeroot "$0" "$@"
. "$(dirname "$0")/checks.sh"

succeeds "cpack" cpack --config "$build/CPackConfig.cmake" -B "$work"
package=$(echo "$work"/glimra_*.deb)
root=$work/root

files_of_package() { dpkg-deb --fsys-tarfile "$package" | tar -t | sed 's,^\.,,' | grep -v '/$' | sort; }
files_of_root() { (cd "$root" && find . ! -type d ! -path './var/*' | sed 's,^\.,,' | sort); }

# A tree of its own for dpkg. What the package depends on is the machine's, so only its own part is tried here.
in_root() {
    dpkg --root="$root" --log=/dev/null --force-depends --force-script-chrootless --force-not-root "$@"
}

contents() {
    # Errors fail it, and so do warnings: there are none.
    succeeds "lintian" lintian --no-cfg --fail-on error,warning --allow-root "$package"
    local depends
    depends=$(dpkg-deb --field "$package" Depends)
    for library in libc6 libqt6widgets6 libxcb1; do
        [[ $depends == *"$library "* || $depends == *"$library,"* ]] || fail "it does not depend on $library"
    done
    same "programs with symbols that nobody needs" "" \
        "$(dpkg-deb -x "$package" "$work/files" && readelf -S "$work"/files/usr/bin/* | grep -o '\.symtab')"
    for program in "$work"/files/usr/bin/*; do
        readelf --wide -h -d --dyn-syms "$program" >"$work/elf"
        for sign in 'Type: *DYN' 'NOW' '__stack_chk_fail' '_chk@'; do
            grep -q "$sign" "$work/elf" || fail "$program is not hardened: no $sign"
        done
    done
}

install_and_remove() {
    mkdir -p "$root"/var/lib/dpkg/{info,updates}
    touch "$root"/var/lib/dpkg/{status,available}
    succeeds "installing" in_root --install "$package"
    same "what is installed" "$(files_of_package)" "$(files_of_root)"
    same "the installed program" "glimra $(dpkg-deb --field "$package" Version | sed 's/-[^-]*$//')" \
        "$("$root/usr/bin/glimra" --version)"
    succeeds "installing over itself" in_root --install "$package"
    succeeds "removing" in_root --purge glimra
    same "what is left after removing" "" "$(cd "$root" && find . -mindepth 1 ! -path './var*')"
}

# $1 script, $2 its argument: it asks udev, and does not mind that it fails or is not there.
asks_udev() {
    local script=$work/control/$1
    mkdir -p "$work/bin"
    printf '#!/bin/sh\necho "$@" >>"%s"\nexit 1\n' "$work/asked" >"$work/bin/udevadm"
    chmod +x "$work/bin/udevadm"
    rm -f "$work/asked"
    PATH=$work/bin succeeds "$1 where udev fails" /bin/sh "$script" "$2"
    same "what $1 asks udev" "control --reload
trigger --action=change --subsystem-match=hidraw" "$(cat "$work/asked")"
    PATH=$work/nowhere succeeds "$1 without udev" /bin/sh "$script" "$2"
}

# The other package has the same files, but for those that each kind has in its own form or place.
rpm_is_the_same() {
    succeeds "cpack for an RPM" cpack -G RPM --config "$build/CPackConfig.cmake" -B "$work"
    local own='/share/doc/glimra/|/zsh/'
    same "what the RPM has" "$(files_of_package | grep -vE "$own")" \
        "$(rpm -qp --qf '[%{FILEMODES:perms} %{FILENAMES}\n]' "$work"/glimra-*.rpm | sed -n 's/^-[^ ]* //p' | grep -vE "$own" | sort)"
}

contents
install_and_remove
rpm_is_the_same
dpkg-deb -e "$package" "$work/control"
asks_udev postinst configure
asks_udev postrm remove
finish
