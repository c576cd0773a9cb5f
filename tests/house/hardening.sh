# hardening.sh PROGRAM: what a built program brings against damage to its memory.
source "$(dirname -- "$0")/check.sh"
need readelf
export LC_ALL=C

headers=$(readelf -hlW "$1")
dynamic=$(readelf -dW "$1")
symbols=$(readelf --dyn-syms -W "$1")

expect_in "loads anywhere" "DYN (Position-Independent Executable file)" "$headers"
expect_in "says so" " PIE" "$(echo "$dynamic" | grep FLAGS_1)"
expect_in "relocations are read-only" "GNU_RELRO" "$headers"
expect_in "all of them, from the start" " NOW" "$(echo "$dynamic" | grep FLAGS_1)"
expect_in "no code on the stack" " RW " "$(echo "$headers" | grep GNU_STACK)"
expect_in "the stack is guarded" "__stack_chk_fail" "$symbols"
# quelmar-cli copies nothing into a room of known size, so nothing of it needs this.
if [ "$(basename -- "$1")" != quelmar-cli ]; then
    expect_in "lengths are checked" "_chk@" "${symbols//__stack_chk_fail@/}"
fi
expect "no search path of the build" "" "$(echo "$dynamic" | grep -E 'RPATH|RUNPATH')"
finish
