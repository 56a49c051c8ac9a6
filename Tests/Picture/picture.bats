#!/usr/bin/env bats
# The picture: frames of every scene against references, and what must hold whatever the show looks like.

source "${BATS_TEST_DIRNAME}/frames.bash"

setup_file() {
    export frames=$BATS_FILE_TMPDIR/frames
    record_stills "$frames" data 320x240 0 "${moments[@]}" 2>&1
}

# altered NAME SED-EXPRESSION FILE...: a copy of the data whose shader files are changed.
altered() {
    local folder=$BATS_TEST_TMPDIR/$1 expression=$2 file
    shift 2
    cp -r "$root/data" "$folder"
    for file; do
        sed -i -E "$expression" "$folder/shaders/$file"
        ! cmp -s "$root/data/shaders/$file" "$folder/shaders/$file" # or the test looks at nothing
    done
    printf '%s' "$folder"
}

# still NAME [DATA [SIZE]]: records second 4.5, a text and the lattice, and prints the file's name.
still() {
    record_stills "$BATS_TEST_TMPDIR/$1.stills" "${2:-data}" "${3:-320x240}" 4.5 >/dev/null 2>&1
    printf '%s' "$BATS_TEST_TMPDIR/$1.stills/4.5.png"
}

# measure EXPRESSION FILE [OPERATOR...]: a number from ImageMagick, of the file after the operators.
measure() {
    local expression=$1 file=$2
    shift 2
    convert "$file" "$@" -format "%[fx:$expression]" info:
}

# holds EXPRESSION: whether a comparison of numbers is true.
holds() {
    echo "expected: $1"
    [[ $(awk "BEGIN { print ($1) }") == 1 ]]
}

# compared METRIC A B: how the two frames compare from afar: lines may fall a pixel aside, light and colour may not.
compared() {
    convert "$2" "$3" -resize 40x30! -metric "$1" -compare -format '%[distortion]' info:
}

@test "every scene looks like its reference" {
    local moment apart failed=0
    for moment in "${moments[@]}"; do
        apart=$(compared RMSE "$frames/$moment.png" "$references/$moment.png")
        echo "$moment s: $apart apart"
        holds "$apart < 0.02" || failed=1
    done
    ((!failed))
}

@test "the show begins in black" {
    holds "$(measure maxima "$frames/0.png") == 0"
}

@test "brightness follows the fade, down to nothing" {
    local full half none
    full=$(still full "$(altered full 's/uniform float fade;/const float fade = 1.0;/' pulse.vs)")
    half=$(still half "$(altered half 's/uniform float fade;/const float fade = 0.5;/' pulse.vs)")
    none=$(still none "$(altered none 's/uniform float fade;/const float fade = 0.0;/' pulse.vs)")
    holds "$(measure mean "$half") < 0.6 * $(measure mean "$full")"
    holds "$(measure mean "$half") > 0.3 * $(measure mean "$full")"
    holds "$(measure maxima "$none") == 0"
}

@test "a rising pulse brightens, one below zero does nothing" {
    local rest beat dip
    rest=$(still rest "$(altered rest 's/uniform float amplif;/const float amplif = 0.0;/' pulse.vs)")
    beat=$(still beat "$(altered beat 's/uniform float amplif;/const float amplif = 1.0;/' pulse.vs)")
    dip=$(still dip "$(altered dip 's/uniform float amplif;/const float amplif = -0.04;/' pulse.vs)")
    holds "$(measure mean "$beat") > 1.3 * $(measure mean "$rest")"
    cmp "$rest" "$dip"
}

@test "the glow lies outside the lines, and only near them" {
    local glowing plain halo
    glowing=$(still glowing)
    plain=$(still plain "$(altered plain 's/gl_FragColor = .*/gl_FragColor = vec4(0.0);/' vblur.ps)")
    # What the glow adds where there was no line.
    halo=$BATS_TEST_TMPDIR/halo.png
    convert "$glowing" \( "$plain" -threshold 0 -negate \) -compose multiply -composite -colorspace gray "$halo"
    holds "$(measure mean "$halo") > 0.004"
    # Beyond its reach, a fiftieth of the height, the dark stays dark.
    convert "$glowing" \( "$plain" -colorspace gray -threshold 0 -morphology dilate square:9 -negate \) \
        -compose multiply -composite "$halo"
    holds "$(measure maxima "$halo") == 0"
}

@test "light spreads both ways, and none comes round from the opposite edge" {
    local at_left at_bottom
    at_left=$(still left "$(altered left 's/gl_FrontColor =/gl_Position.x = 0.02 * gl_Position.x - 0.98 * gl_Position.w; gl_FrontColor =/' pulse.vs)")
    at_bottom=$(still bottom "$(altered bottom 's/gl_FrontColor =/gl_Position.y = 0.02 * gl_Position.y - 0.98 * gl_Position.w; gl_FrontColor =/' pulse.vs)")
    # All of the scene within 8 pixels of the edge.
    holds "$(measure maxima "$at_left" -crop 3x240+11+0) > 0"
    holds "$(measure maxima "$at_left" -gravity east -crop 8x240+0+0) == 0"
    holds "$(measure maxima "$at_bottom" -crop 320x3+0+226) > 0"
    holds "$(measure maxima "$at_bottom" -gravity north -crop 320x8+0+0) == 0"
}

@test "twice the size shows the same picture" {
    # Lines keep their width in pixels: what counts is where things are.
    holds "$(compared NCC "$(still small)" "$(still large data 640x480)") > 0.9"
}
