#!/usr/bin/env bash
# install_tests.sh SOURCES BUILD: what `cmake --install` puts into a tree is whole, sound and runs from there.
. "$(dirname "$0")/checks.sh"

root=$work/root
DESTDIR=$root succeeds "cmake --install" cmake --install "$build" --prefix /usr
usr=$root/usr
bin=$usr/bin
share=$usr/share

long_options() { grep -oE -e '(^ +|, ?)--[a-z][a-z-]*' | tr -d ' ,' | sort -u; }

programs() {
    same "the programs" "glimra glimra-replay glimra-strip" "$(cd "$bin" && echo *)"
    same "the version" "glimra $(sed -n 's/^project(glimra VERSION \([^ ]*\).*/\1/p' "$sources/CMakeLists.txt")" \
        "$("$bin/glimra" --version)"
    for program in glimra glimra-replay glimra-strip; do
        succeeds "$program --help" "$bin/$program" --help
        "$bin/$program" --no-such-option >/dev/null 2>&1
        same "$program's status after wrong usage" 2 $?
    done
}

# $1 program: its manual renders without a warning and has all its options, and no others.
manual() {
    local page=$share/man/man1/$1.1.gz
    MANROFFSEQ='' MANWIDTH=80 silent "the manual of $1" bash -c 'man --warnings -l "$1" 2>&1 >/dev/null' - "$page"
    same "options of $1 and of its manual" "$({
        "$bin/$1" --help
        [ "$1" != glimra ] || "$bin/glimra" doctor --help
    } | long_options)" "$(MANWIDTH=200 man -l "$page" | long_options)"
}

desktop_files() {
    silent "the desktop entry" desktop-file-validate "$share/applications/glimra.desktop"
    succeeds "the metadata" appstreamcli validate --no-net "$share"/metainfo/*.metainfo.xml
    local id
    id=$(grep -oP '(?<=<launchable type="desktop-id">)[^<]*' "$share"/metainfo/*.metainfo.xml)
    [ -f "$share/applications/$id" ] || fail "the metadata launches $id, which is not there"
    # Qt names the windows like the program, and desktops find the entry by that name.
    same "the entry's window class" glimra "$(sed -n 's/^StartupWMClass=//p' "$share/applications/glimra.desktop")"
}

icons() {
    silent "the pictures are drawn from the drawing (scripts/icons.sh)" \
        bash -c 'cd "$1" && sha256sum --quiet --check glimra.svg.sha256' - "$sources/resources/icons"
    local size file
    for size in 16 22 24 32 48 64 128 256 512; do
        file=$share/icons/hicolor/${size}x$size/apps/glimra.png
        # The picture's size stands in the file from byte 16 on, twice 4 bytes.
        same "the size of the icon of $size pixels" "$(printf '%08x%08x' "$size" "$size")" \
            "$(od -An -tx1 -j16 -N8 "$file" | tr -d ' \n')"
    done
    [ -f "$share/icons/hicolor/scalable/apps/glimra.svg" ] || fail "the drawing is not installed"
}

# $1 words of a command line, the last one to be completed: what bash offers.
completed() (
    PATH=$bin:$PATH
    . "$share/bash-completion/completions/${1%% *}"
    read -ra words <<<"$1"
    [ "${1: -1}" != " " ] || words+=("")
    COMPREPLY=()
    _glimra "${words[0]}" "${words[-1]}" "${words[-2]}"
    echo "${COMPREPLY[*]-}"
)

completion() {
    local words expected
    while IFS=: read -r words expected; do
        same "completion of $words" "$expected" "$(completed "$words")"
    done <<'END'
glimra --keyb:--keyboard
glimra --keyboard v:virtual
glimra d:doctor
glimra-replay --keyboard v:
glimra-strip c:calibrate
END
    same "completion of all options" "$("$bin/glimra-strip" --help | long_options | tr '\n' ' ')" \
        "$(completed "glimra-strip --" | tr ' ' '\n' | sort | tr '\n' ' ')"
}

# Every driver is explained in the manual and in the guide.
keyboards() {
    local name
    for name in $(completed "glimra --keyboard " | sed "s/^auto //"); do
        grep -q "^\.BR\? $name" "$sources/packaging/man/glimra.1.in" || fail "the manual lacks the driver $name"
        grep -q "^| \`$name\`" "$sources/docs/user-guide.md" || fail "the guide lacks the driver $name"
    done
}

# The rule and the table of the USB driver name the same keyboards.
rule() {
    local file=$usr/lib/udev/rules.d/70-glimra-keyboard.rules
    same "keyboards of the rule" \
        "$(sed -n 's/.*\.product = 0x\([0-9A-F]*\).*/\1/p' "$sources/src/keyboards/usb/usb_models.h" | tr A-F a-f | sort)" \
        "$(sed -n 's/.*idProduct}=="\([^"]*\)".*/\1/p' "$file" | tr '|' '\n' | sort)"
}

# Links between the documents lead to files that are there, in the sources and where they are installed.
documents() {
    local folder file target
    for folder in "$sources/docs" "$share/doc/glimra"; do
        for file in user-guide protocol replay; do
            grep -oP '\]\(\K[^)#:]+(?=[)#])' "$folder/$file.md" | while read -r target; do
                [ -e "$folder/$target" ] || echo "$file.md: $target"
            done
        done
    done >"$work/broken"
    same "links that lead nowhere" "" "$(cat "$work/broken")"
}

# The frames in the description of the strip say what it says they do.
worked_example() {
    local text=$share/doc/glimra/protocol.md
    local expected
    expected=$(grep '^    {"t"' "$text" | sed 's/^    //')
    [ -n "$expected" ] || fail "the description of the strip has no example"
    same "the example of the strip" "$expected" \
        "$(awk '/^    start$/ {on = 1} on && /^$/ {exit} on' "$text" | "$bin/glimra-replay" --only log - |
            tail -n "$(wc -l <<<"$expected")")"
}

# What is installed is what the list names, and the installed program finds it and puts it into a game.
addon() {
    local folder=$share/glimra/addon/Glimraxmit
    same "the add-on's files" "$({ echo Glimraxmit.toc && grep -v '^#' "$folder/Glimraxmit.toc" | tr -d '\r' | grep .; } | sort)" \
        "$(cd "$folder" && find . -type f | sed 's,^\./,,' | sort)"
    local version game=$work/game/_retail_
    version=$("$bin/glimra" --version)
    mkdir -p "$game/Interface"
    same "installing the add-on" "$game: installed ${version#glimra }" "$("$bin/glimra" --install-addon "$work/game")"
    silent "the add-on in the game" diff -r "$folder" "$game/Interface/AddOns/Glimraxmit"
}

# The same file whoever makes it and wherever, with the folder at its top and nothing else.
addon_package() {
    local zip sum
    TZ=UTC succeeds "the target addon" cmake --build "$build" --target addon
    zip=$(echo "$build"/glimraxmit-*.zip)
    sum=$(sha256sum "$zip")
    touch "$build"/addon/Glimraxmit/*
    TZ=Asia/Tokyo succeeds "the target addon" bash -c 'umask 077 && cmake --build "$1" --target addon' - "$build"
    same "the add-on's package, made once more" "$sum" "$(sha256sum "$zip")"
    unzip -q "$zip" -d "$work/unpacked"
    silent "what the package holds" diff -r "$share/glimra/addon" "$work/unpacked"
}

programs
addon
addon_package
for program in glimra glimra-replay glimra-strip; do manual "$program"; done
desktop_files
icons
completion
keyboards
rule
documents
worked_example
finish
