# Sourced by the checks: counts what fails and ends with it.
failures=0

# expect WHAT EXPECTED ACTUAL
expect() {
    if [ "$2" != "$3" ]; then
        printf '%s\n  expected: %s\n  actual:   %s\n' "$1" "$2" "$3"
        failures=$((failures + 1))
    fi
}

# expect_in WHAT PART WHOLE
expect_in() {
    case $3 in
        *"$2"*) ;;
        *)
            printf '%s\n  missing: %s\n  in:      %s\n' "$1" "$2" "$3"
            failures=$((failures + 1))
            ;;
    esac
}

need() {
    for tool in "$@"; do
        command -v "$tool" >/dev/null || { echo "no $tool here"; exit 77; }
    done
}

# stub FILE: makes an executable of what comes in.
stub() {
    mkdir -p -- "$(dirname -- "$1")"
    { echo '#!/bin/bash'; cat; } >"$1"
    chmod +x -- "$1"
}

temporary_folder() {
    folder=$(mktemp -d)
    trap 'rm -rf -- "$folder"' EXIT
}

finish() {
    [ "$failures" = 0 ] || { echo "$failures failed"; exit 1; }
}
