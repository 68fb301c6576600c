#!/bin/sh
# Makes the Debian package and checks what it holds and what it depends on.
#
#   test_deb.sh BUILD_DIR
set -eu
build=$1
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
(cd "$build" && cpack -G DEB -B "$out" >/dev/null)
deb=$(ls "$out"/sorrelin_*.deb)

fail() {
    echo "test_deb: $*" >&2
    exit 1
}
files=$(dpkg-deb -c "$deb" | awk '{print $6}')
for f in ./usr/bin/sorrelin ./usr/bin/sorrelin-store ./usr/bin/sorrelin-driver ./usr/share/sorrelin/demo.json \
    ./usr/share/sorrelin/help/contents.html ./usr/share/sorrelin/help/index.html \
    ./usr/share/applications/sorrelin.desktop ./usr/share/icons/hicolor/128x128/apps/sorrelin.png; do
    printf '%s\n' "$files" | grep -qx "$f" || fail "$f is not in the package"
done
depends=$(dpkg-deb -f "$deb" Depends)
for p in libqt6widgets6 libqt6sql6 libqt6sql6-sqlite libqt6printsupport6 qt6-qpa-plugins; do
    printf '%s\n' "$depends" | grep -q "$p" || fail "the package doesn't depend on $p: $depends"
done
echo "$(basename "$deb"): $(printf '%s\n' "$files" | wc -l) entries"
