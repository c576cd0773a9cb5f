# run_check.sh ROOT: what ./run starts, with which names, from which folder.
source "$(dirname -- "$0")/check.sh"
temporary_folder
unset DISPLAY WAYLAND_DISPLAY

root=$folder/"the root"
mkdir -p "$root/packaging" "$folder/elsewhere"
cp -- "$1/run" "$root/"
stub "$root/packaging/install-packages" <<'STUB'
echo "install $*"
STUB
stub "$root/build/release/app/quelmar" <<'STUB'
echo "in $PWD:$(printf ' <%s>' "$@")"
[ "$1" != --demo ] || touch "$2/window.png"
STUB
stub "$folder/bin/cmake" <<'STUB'
STUB
stub "$folder/bin/xvfb-run" <<'STUB'
while [ "${1#--}" != "$1" ]; do shift; done
echo "under xvfb"
exec "$@"
STUB
export PATH=$folder/bin:$PATH
cd -- "$folder/elsewhere" || exit 1

# run ARGUMENTS...
run() {
    output=$("$root/run" "$@" 2>&1)
    status=$?
}
last() { echo "${output##*$'\n'}"; }

run --help
expect "help is no failure" 0 "$status"
expect_in "it tells of the demonstration" "./run --demo [FOLDER]" "$output"
run --nonsense
expect "unknown option" 2 "$status"
run one two three
expect "too many names" 2 "$status"
run --demo one two
expect "too many folders" 2 "$status"

run "a film.avi"
expect_in "no display is said" "There is no display here" "$output"
expect_in "and a display in memory is used" "under xvfb" "$output"
expect_in "with the packages for it" "install run build display" "$output"
expect_in "the place is named" "$root/build/demo" "$output"
expect "what lies there is named" "window.png" "$(last)"

run --demo "my pictures"
expect_in "a folder named from here" "<$folder/elsewhere/my pictures>" "$output"
expect "is made here" "window.png" "$(ls "my pictures")"

export DISPLAY=:4711
run
expect "the sample that comes too late" \
    "in $PWD: <$root/samples/sample.avi> <$root/samples/sample-late.srt>" "$(last)"
expect_in "with its packages" "install run build" "$output"
run "a film.avi"
expect "a film alone" "in $PWD: <a film.avi>" "$(last)"
run "a film.avi" ../titles.srt
expect "a film and its titles" "in $PWD: <a film.avi> <../titles.srt>" "$(last)"
finish
