# hardening.sh PROGRAM: what a built program brings against damage to its memory.
source "$(dirname -- "$0")/check.sh"
need readelf
export LC_ALL=C

headers=$(readelf -hlW "$1" | grep -E 'Type:|GNU_RELRO|GNU_STACK')
dynamic=$(readelf -dW "$1" | grep -E 'FLAGS_1|RPATH|RUNPATH')
guards=$(readelf --dyn-syms -W "$1" | grep -o '__stack_chk_fail')

expect_in "loads anywhere" "DYN (Position-Independent Executable file)" "$headers"
expect_in "says so" " PIE" "$dynamic"
expect_in "relocations are read-only" "GNU_RELRO" "$headers"
expect_in "all of them, from the start" " NOW" "$dynamic"
expect_in "no code on the stack" " RW " "$(echo "$headers" | grep GNU_STACK)"
expect "the stack is guarded" "__stack_chk_fail" "$guards"
if [ "$(uname -m)" = x86_64 ]; then
    need objdump
    # The C library's own start-up code may have none, so the note of the file tells nothing.
    landings=$(objdump -d --no-show-raw-insn "$1" | grep -c endbr64)
    expect "calls land only where they may" yes "$([ "$landings" -gt 100 ] && echo yes)"
fi
expect "no search path of the build" "" "$(echo "$dynamic" | grep -E 'RPATH|RUNPATH')"
finish
