# Frames of the show, for the tests and for whoever renews the references.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
references=$root/Tests/Picture/references

# Seconds into the show: two or three of each scene.
moments=(1 4.5 7 9.6 14 24.3 30 41 52 55.3 61.2 66.5 74 83 88.5 95)

# record_stills FOLDER DATA SIZE SECONDS...: writes FOLDER/SECONDS.png for each moment.
record_stills() {
    local folder=$1 data=$2 size=$3 moment
    local -a stills=()
    shift 3
    mkdir -p "$folder"
    for moment; do stills+=(--still "$moment" "$folder/$moment.png"); done
    (cd "$root" && "${QUELAR_BUILD:-$root/build}/bin/quelar-record" --seed 42 --data "$data" --size "$size" "${stills[@]}")
}

# ring_profile FILE...: how the light falls off in pictures of one size, as the program of that name tells it.
ring_profile() {
    # shellcheck disable=SC2046 # two words
    convert "$@" -alpha off -depth 8 rgb:- |
        "${QUELAR_BUILD:-$root/build}/bin/ring_profile" $(identify -format '%w %h' "$1")
}
