#!/usr/bin/env bash
# Makes a release: release.sh VERSION [--no-checks] [FOLDER]
# Checks the tree, runs all tests, and puts into FOLDER (default: build/release-VERSION) the Debian package, the RPM,
# the add-on, the sources, Arch's PKGBUILD for them, and the checksums of all. Twice gives the same bytes.
# --no-checks leaves the tests out, to try the rest.
set -euo pipefail
cd "$(dirname "$0")/.."

refuse() {
    echo "release.sh: $1" >&2
    exit 1
}
version= checks=yes folder=
for word in "$@"; do
    case $word in
        --no-checks) checks=no ;;
        *) if [ -z "$version" ]; then version=$word; else folder=$word; fi ;;
    esac
done
[[ $version =~ ^[0-9]+\.[0-9]+\.[0-9]+$ ]] || refuse "name a version of three numbers, as in release.sh 0.2.0"
folder=${folder:-build/release-$version}

[ -z "$(git status --porcelain)" ] || refuse "the tree has changes that are in no commit; commit or drop them first"
# A tag at this very commit is this release, made again.
if tagged=$(git rev-parse --quiet --verify "refs/tags/v$version^{commit}"); then
    [ "$tagged" = "$(git rev-parse HEAD)" ] || refuse "there is a version $version already, at another commit"
fi
stated=$(sed -nE 's/^project\(glimra VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
[ "$stated" = "$version" ] || refuse "CMakeLists.txt says $stated; change it to $version"
date=$(sed -nE "s/^## $version \(([0-9]{4}-[0-9]{2}-[0-9]{2})\)$/\1/p" CHANGELOG.md)
[ -n "$date" ] || refuse "CHANGELOG.md has no heading \"## $version (YYYY-MM-DD)\""
[ "$(grep -m 1 '^## ' CHANGELOG.md)" = "## $version ($date)" ] || refuse "the newest heading of CHANGELOG.md is not $version"
! [ -e "$folder" ] || refuse "$folder is there already; remove it first"

scripts/install-deps.sh build addon release
[ "$checks" = no ] || scripts/test.sh

build=$(mktemp -d)
trap 'rm -rf "$build"' EXIT
name=glimra-$version
mkdir "$build/files"
git archive --format=tar --prefix="$name/" HEAD | gzip -9n >"$build/files/$name.tar.gz"
# Built from the archive: what is in no commit is in no package.
tar -xzf "$build/files/$name.tar.gz" -C "$build"
cmake -S "$build/$name" -B "$build/build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DGLIMRA_TESTS=OFF -DGLIMRA_BENCH=OFF >/dev/null
cmake --build "$build/build" --target all addon
for generator in DEB RPM; do
    (cd "$build/build" && cpack -G "$generator" --config CPackConfig.cmake >/dev/null)
done
cp "$build"/build/glimra[_-]*.{deb,rpm} "$build"/build/glimraxmit-*.zip "$build/files"
sed -e "s/@VERSION@/$version/" -e "s/@SHA256@/$(sha256sum <"$build/files/$name.tar.gz" | cut -d ' ' -f 1)/" \
    packaging/arch/PKGBUILD.in >"$build/files/PKGBUILD"
[ "$(unzip -p "$build"/files/glimraxmit-*.zip Glimraxmit/Glimraxmit.toc | sed -n 's/^## Version: //p' | tr -d '\r')" = "$version" ] ||
    refuse "the add-on does not say that it is $version"
zcat "$build/build/packaging/glimra/glimra.1.gz" | grep -q "$version" || refuse "the manual page does not say $version"
(cd "$build/files" && sha256sum -- * >SHA256SUMS)
mkdir -p "$(dirname "$folder")"
mv "$build/files" "$folder"
ls "$folder"
