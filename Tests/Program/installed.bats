# The show as it is installed, by a package for the system or unpacked from the archive, and moved since.

load screen

# Installs that part of the program, moves it, and goes where nothing is.
install_and_move() {
    cmake --install "${QUELAR_BUILD:-$root/build}" --prefix "$BATS_TEST_TMPDIR/first" --component "$1" >/dev/null
    mkdir "$BATS_TEST_TMPDIR/nowhere"
    cd "$BATS_TEST_TMPDIR/nowhere"
    place="$BATS_TEST_TMPDIR/another's place" && mv ../first "$place"
}

# The command plays and the other one records, here and without an environment, and all that is there stays as it is.
plays_and_records() {
    ls -lRA --full-time "$place" >"$BATS_TEST_TMPDIR/before"
    play_show "${bare[@]}" "$1"
    ran
    "${bare[@]}" "$1-record" --size 16x16 --to 0.1 - >frames
    [ "$(wc -c <frames)" -ge $((16 * 16 * 3)) ]
    [ "$(ls -A)" = frames ]
    ls -lRA --full-time "$place" | is "$BATS_TEST_TMPDIR/before"
}

@test "system: its commands play and record from anywhere" {
    install_and_move system
    plays_and_records "$place/games/quelar"
    ln -s "$place/games/quelar" ../linked
    play_show ../linked
    ran
    desktop=$place/share/applications/quelar.desktop
    [ -x "$place/games/$(sed -n 's/^Exec=//p' "$desktop")" ]
    [ -s "$place/share/icons/hicolor/scalable/apps/$(sed -n 's/^Icon=//p' "$desktop").svg" ]
    gzip -dc "$place/share/man/man6/quelar.6.gz" | grep -q '^\.SH NAME'
}

@test "archive: plays and records where it was unpacked, and names the packages that it takes" {
    install_and_move archive
    plays_and_records "$place/quelar"
    [ "$(cd "$place" && echo *)" = 'LICENSE data file_id.diz programs quelar quelar-record quelar.nfo' ]
    # a diz fits into 45 columns, a nfo into 80; nothing is left to be filled in
    run ! grep -E '@|^.{46}' "$place/file_id.diz"
    run ! grep -E '@|^.{81}' "$place/quelar.nfo"
    command -v dpkg-query >/dev/null || return 0 # nobody here knows packages
    listed() { (source "$root/Scripts/setup.sh" && packages "$@") | sort; }
    # Debian itself is not without the libraries of the language; since its times have 64 bits some have another name,
    # and provide the old one
    readelf -d "$place"/programs/* | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -v libfmodex64 | sort -u |
        while read -r library; do dpkg-query -S "*/x86_64-linux-gnu/$library"; done | cut -d : -f 1 |
        sed 's/t64$//' | sort -u | grep -vx -e libc6 -e libgcc-s1 -e libstdc++6 | is <(listed linked)
    sed -n '/apt install/,/^$/p' "$place/quelar.nfo" | tr -d '\\\n' | xargs -n 1 | tail -n +3 | sort |
        is <(listed linked recommended)
}
