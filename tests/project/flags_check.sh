# flags_check.sh COMPILE_COMMANDS: every source is compiled with the checks that leave no
# trace in a program that happens not to need them.
source "$(dirname -- "$0")/check.sh"

commands=$(grep '"command":' "$1")
expect "there are commands" 1 $(($(echo "$commands" | wc -l) > 20))
for flag in -D_FORTIFY_SOURCE=2 -D_GLIBCXX_ASSERTIONS -fstack-protector-strong -Werror; do
    expect "all with $flag" "" "$(echo "$commands" | grep -v -e " $flag " |
        grep -oE '[^ ]+\.cpp"' | xargs)"
done
finish
