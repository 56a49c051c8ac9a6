# Frames of the show, for the tests and for whoever renews the references.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
references=$root/Tests/Picture/references

# Seconds into the show: two or three of each scene.
moments=(1 4.5 7 9.6 14 20 24.3 30 41 52 55.3 61.2 66.5 74 83 88.5 95)

# record_stills FOLDER DATA SIZE SECONDS...: writes FOLDER/SECONDS.png for each moment.
record_stills() {
    local folder=$1 data=$2 size=$3 moment
    local -a stills=()
    shift 3
    mkdir -p "$folder"
    for moment; do stills+=(--still "$moment" "$folder/$moment.png"); done
    (cd "$root" && "${QUELAR_BUILD:-$root/build}/bin/quelar-record" --seed 42 --data "$data" --size "$size" "${stills[@]}")
}

# ring_profile FILE: how light falls off in a picture: the means of its largest channel in rings around everything that
# is at least half as bright as the brightest, 2 to 6, 6 to 12 and 12 to 24 pixels off in a picture 480 high, in % of the
# brightest; then the mean of all, in %.
ring_profile() {
    local scale half from to
    local -a rings=()
    read -r scale half < <(convert "$1" -format '%[fx:h/480] %[fx:50*maxima]\n' info:)
    while read -r from to; do
        rings+=('(' mpr:far -threshold "$from" '(' mpr:far -threshold "$to" -negate ')' -compose multiply -composite
            '(' +clone mpr:light -composite ')' ')')
        # just inside, so that whole distances count the same whichever way they are rounded
    done < <(awk "BEGIN { for (r = 2; r < 24; r = to) { to = r == 2 ? 6 : 2 * r; print 500 * $scale * r - 1, 500 * $scale * to - 1 } }")
    convert "$1" -alpha off -separate -evaluate-sequence max +write mpr:light -threshold "$half%" -negate \
        -morphology Distance Euclidean:4,500 +write mpr:far -delete 0 "${rings[@]}" -format '%[fx:mean] ' info: |
        awk "{ for (i = 1; i < NF; i += 2) printf \"%6.2f \", 5000 * \$(i + 1) / \$i / $half }"
    convert "$1" -colorspace gray -format '%[fx:100*mean]\n' info:
}
