# packages_check.sh ROOT: the README's table names what packaging/debian-packages lists.
source "$(dirname -- "$0")/check.sh"
need awk diff
cd -- "$1" || exit 1

listed=$(awk 'NF && $1 !~ /^#/ { $1 = $1; print }' packaging/debian-packages)
told=$(awk -F ' *[|] *' '/^\| `[^`]*` *\| (run|build|display|test|nightly) *\|/ {
           gsub(/`/, "", $2); print $3, $2, $4 }' README.md)
diff <(echo "$listed") <(echo "$told") || { echo "README.md and the list differ"; exit 1; }

expect "each package is listed once" "" "$(echo "$listed" | awk '{ print $2 }' | sort | uniq -d)"
expect "each package says what for" "" "$(echo "$listed" | awk 'NF < 3')"
finish
