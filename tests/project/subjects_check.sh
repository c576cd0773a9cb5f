# subjects_check.sh ROOT: the subjects of the commits since this check was added.
source "$(dirname -- "$0")/check.sh"
need git awk
cd -- "$1" || exit 1
git rev-parse --is-inside-work-tree >/dev/null 2>&1 || { echo "no history here"; exit 77; }

added=$(git log --diff-filter=A --format=%H -- tests/project/subjects_check.sh | tail -1)
[ -n "$added" ] || { echo "not committed yet"; exit 77; }
subjects=$(git log --no-merges --format=%s "$added^..HEAD" 2>/dev/null ||
    git log --no-merges --format=%s "$added..HEAD")
expect "subjects of at most 72 characters" "" "$(echo "$subjects" | awk 'length > 72')"
expect "subjects that name a room" "" "$(echo "$subjects" | grep -vE '^[[:alnum:]., /-]+: ')"
finish
