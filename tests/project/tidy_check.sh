# tidy_check.sh ROOT: clang-tidy reads every header of the product.
source "$(dirname -- "$0")/check.sh"
need sed find
cd -- "$1" || exit 1

filter=$(sed -n "s/^HeaderFilterRegex: '\(.*\)'$/\1/p" .clang-tidy)
expect_in "there is a filter" "h\$" "$filter"
headers=$(find "$PWD"/*/ -name '*.h' -not -path "$PWD/build*" -not -path "$PWD/tests/*" \
    -not -path "$PWD/benchmarks/*" -not -path "$PWD/fuzz/*")
expect "no header is left out" "" "$(echo "$headers" | grep -vE -- "$filter")"
finish
