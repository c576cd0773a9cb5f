# rooms_check.sh FOLDER: the rooms include what docs/architecture.md says that they know.
source "$(dirname -- "$0")/check.sh"
cd -- "$1" || exit 1

# drawn: "room: the rooms that it knows", one a line, from the table.
drawn() {
    sed -nE 's/^\| `([a-z]+)` \|([^|]*)\|.*/\1:\2/p' docs/architecture.md | tr -d '`' | tr -s ' ' |
        sed 's/ *$//'
}

# built: the same from the sources.
built() {
    local room
    for room in $(drawn | cut -d: -f1); do
        printf '%s: %s\n' "$room" "$(grep -rhoE '^#include "[a-z]+/' "$room" --include='*.h' \
            --include='*.cpp' | sed 's/.*"//; s#/##' | sort -u | grep -vx "$room" | xargs)" |
            sed 's/ *$//'
    done
}

expect "the table has rooms" yes "$([ "$(drawn | wc -l)" -gt 5 ] && echo yes)"
expect "what the rooms know" "$(drawn)" "$(built)"
finish
