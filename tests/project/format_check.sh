# format_check.sh ROOT: every source is laid out as .clang-format says.
source "$(dirname -- "$0")/check.sh"
need clang-format
cd -- "$1" || exit 1
find . -path './build*' -prune -o \( -name '*.cpp' -o -name '*.h' \) -print0 |
    xargs -0 clang-format --dry-run -Werror
