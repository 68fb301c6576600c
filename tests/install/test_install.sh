#!/bin/sh
# Installs the build into a temporary prefix and checks that the installed
# program finds its demo store and its help there, not in the source tree.
#
#   test_install.sh BUILD_DIR
set -eu
build=$1
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" >/dev/null

fail() {
    echo "test_install: $*" >&2
    exit 1
}
for f in bin/sorrelin bin/sorrelin-store bin/sorrelin-driver share/sorrelin/demo.json \
    share/sorrelin/help/contents.html share/sorrelin/help/index.html share/sorrelin/help/topic-3.html \
    share/applications/sorrelin.desktop share/icons/hicolor/16x16/apps/sorrelin.png \
    share/icons/hicolor/48x48/apps/sorrelin.png share/icons/hicolor/256x256/apps/sorrelin.png \
    share/icons/hicolor/scalable/apps/sorrelin.svg; do
    [ -s "$prefix/$f" ] || fail "$f is not installed"
done
grep -q '^Exec=sorrelin$' "$prefix/share/applications/sorrelin.desktop" || fail "the desktop entry runs something else"

# The store's command line runs on servers without a display: no widgets,
# windows or printing among its libraries.
gui=$(ldd "$prefix/bin/sorrelin-store" | grep -E 'libQt6(Widgets|Gui|PrintSupport|DBus)' || true)
[ -z "$gui" ] || fail "sorrelin-store loads $gui"

# The installed demo names another user, so the window's caption tells which
# fixture the first start used.
sed -i 's/"user": "[^"]*"/"user": "Installed Admin"/' "$prefix/share/sorrelin/demo.json"
answers=$(printf 'start\nstate\nquit\n' | QT_QPA_PLATFORM=offscreen "$prefix/bin/sorrelin-driver" 2>/dev/null)
state=$(printf '%s\n' "$answers" | sed -n 2p)
case $state in
*'Installed Admin - Sorrelin"'*) ;;
*) fail "the installed program did not start on the installed demo: $(printf '%.300s' "$state")" ;;
esac
case $state in
*"\"helpFile\":\"$prefix/share/sorrelin/help/contents.html\""*) ;;
*) fail "the installed program looks for its help elsewhere: $(printf '%s' "$state" | grep -o '"helpFile":"[^"]*"')" ;;
esac

# Without the help pages there is no help file, and the Help menu says so.
rm -r "$prefix/share/sorrelin/help"
answers=$(printf 'start\nstate\nanswer OK\nmenu mnuHelpContents\nanswer OK\nmenu mnuHelpSearch\nstate\nquit\n' |
    QT_QPA_PLATFORM=offscreen "$prefix/bin/sorrelin-driver" 2>/dev/null)
state=$(printf '%s\n' "$answers" | sed -n 7p)
for expected in '"helpFile":""' \
    '"icon":"information","kind":"msgbox","text":"Unable to display Help Contents. There is no Help associated with this project.","title":"Current User: Installed Admin - Sorrelin"' \
    '"text":"Unable to display Help Index. There is no Help associated with this project."'; do
    case $state in
    *"$expected"*) ;;
    *) fail "without help pages, no $expected in $(printf '%s' "$state" | grep -o '"prompts":.*')" ;;
    esac
done
echo "installed and found in $prefix"
