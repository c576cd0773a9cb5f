# install_packages_check.sh ROOT: asks apt for what is missing and for nothing else.
source "$(dirname -- "$0")/check.sh"
temporary_folder

mkdir "$folder/packaging"
cp -- "$1/packaging/install-packages" "$folder/packaging/"
cat >"$folder/packaging/debian-packages" <<'LIST'
# a comment
run    alpha  the first
run    beta   the second
build  gamma  the third
LIST

stub "$folder/bin/dpkg-query" <<'STUB'
grep -qx -- "${@: -1}" "$HAVE" && printf installed
STUB
stub "$folder/bin/apt-get" <<'STUB'
echo "apt-get $*" >>"$LOG"
STUB
stub "$folder/bin/sudo" <<'STUB'
echo "sudo" >>"$LOG"
exec "$@"
STUB
stub "$folder/bin/id" <<'STUB'
echo "$USER_ID"
STUB

export HAVE=$folder/have LOG=$folder/log PATH=$folder/bin:$PATH USER_ID=0

# install INSTALLED... -- GROUP...: what was asked of the system.
install() {
    : >"$HAVE"
    : >"$LOG"
    while [ "$1" != -- ]; do
        echo "$1" >>"$HAVE"
        shift
    done
    shift
    "$folder/packaging/install-packages" "$@" >/dev/null 2>"$folder/errors"
    status=$?
}

install alpha beta gamma -- run build
expect "nothing is missing: no call" "" "$(cat "$LOG")"
expect "nothing is missing: well" 0 "$status"

install alpha -- run
expect "one list update, one install" 2 "$(wc -l <"$LOG")"
expect_in "what is missing is installed" " beta" "$(tail -1 "$LOG")"
expect_in "and nothing that comes along" "--no-install-recommends" "$(tail -1 "$LOG")"
expect "what is there is not" "" "$(grep -w alpha "$LOG")"
expect "other groups are left alone" "" "$(grep -w gamma "$LOG")"
expect "root needs no sudo" "" "$(grep sudo "$LOG")"

USER_ID=1000
install alpha beta -- run
expect "no sudo when nothing is missing" "" "$(cat "$LOG")"
install alpha -- run build
expect "sudo otherwise" 2 "$(grep -c sudo "$LOG")"
expect_in "both groups" " beta gamma" "$(tail -1 "$LOG")"

rm "$folder/bin/sudo"
ln -s "$(command -v bash)" "$(command -v dirname)" "$(command -v env)" "$(command -v grep)" \
    "$folder/bin/"
PATH=$folder/bin install alpha -- run
expect "without sudo it fails" 1 "$status"
expect_in "and says what to install" "beta" "$(cat "$folder/errors")"
expect "and does nothing" "" "$(cat "$LOG")"
finish
