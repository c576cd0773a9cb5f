# needed_check.sh QUELMAR-CLI [QUELMAR]: which libraries a program cannot start without.
source "$(dirname -- "$0")/check.sh"
need readelf

needed() {
    readelf -dW "$1" | awk '/\(NEEDED\)/ { print $NF }'
}

expect_in "the list can be read" "libc.so" "$(needed "$1")"
expect "the core needs no windows and no player" "" "$(needed "$1" | grep -iE 'qt|mpv')"
expect "films are opened by libraries that are loaded later" "" "$(needed "$1" | grep -E 'libav|libsw')"
if [ $# -gt 1 ]; then
    expect_in "the windows do" "libQt6Widgets" "$(needed "$2")"
    expect "the player is loaded when the window is up" "" "$(needed "$2" | grep -E 'mpv|libav|libsw')"
fi
finish
