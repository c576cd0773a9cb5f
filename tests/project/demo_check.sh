# demo_check.sh QUELMAR QUELMAR-CLI SAMPLES: the demonstration on a display in memory opens
# the sample film, places three titles by key, saves them and leaves pictures.
source "$(dirname -- "$0")/check.sh"
need xvfb-run ffmpeg
temporary_folder
cli=$2
samples=$3
export XDG_CONFIG_HOME=$folder/config XDG_STATE_HOME=$folder/state

xvfb-run --auto-servernum --server-args='-screen 0 1280x1024x24' \
    "$1" --demo "$folder/demo" >"$folder/output" 2>&1
expect "it ends well" 0 $?
saved=$(find "$folder/demo" -name '*.srt')
if [ ! -f "$saved" ]; then
    cat "$folder/output"
    exit 1
fi

# times FILE: start and end of each title, one a line.
times() { tr -d '\r' <"$1" | grep -e '-->'; }
words() { tr -d '\r' <"$1" | grep -v -e '-->'; }

"$cli" convert "$saved" "$folder/again.srt"
expect "the saved file is sound" 0 $?
expect "all titles are in it" 14 "$(times "$saved" | wc -l)"
expect "with their words" "$(words "$samples/sample-late.srt")" "$(words "$saved")"
expect "three are placed, the others as they were" "1 2 3" \
    "$(awk 'NR == FNR { was[NR] = $0; next } was[FNR] != $0 { print FNR }' \
        <(times "$samples/sample-late.srt") <(times "$saved") | xargs)"

pictures=("$folder"/demo/*.png)
expect "there are pictures" 1 $((${#pictures[@]} > 3))
# A window of one colour is not drawn: its brightest and darkest point are the same.
for picture in "${pictures[@]}"; do
    range=$(ffmpeg -v error -i "$picture" -vf signalstats,metadata=print:file=- -f null - |
        grep -oE 'Y(MIN|MAX)=[0-9]+' | cut -d= -f2 | xargs)
    expect "$(basename -- "$picture") shows something" 1 $((${range##* } - ${range%% *} > 60))
done

[ "$failures" = 0 ] || cat "$folder/output"
finish
