# paths_check.sh ROOT PROGRAM: a program does not know where it was built.
source "$(dirname -- "$0")/check.sh"
need strings

# What is loaded: the symbols for debuggers may name their sources.
expect "no path of the source tree" "" "$(strings --data "$2" | grep -F -- "$1")"
finish
