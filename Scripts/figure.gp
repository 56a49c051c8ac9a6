# What the pictures of measurements share: colours, the axis of the show's time, its scenes and shots. Read by gnuplot
# with the variables "folder" (of the numbers, "scenes" among them) and "picture" (the file to write).
set terminal pngcairo size 1500, HEIGHT background "#0d0f14" font "DejaVu Sans,11"
set output picture

QUIET = "#8b93a3"
LIGHT = "#dfe4ee"
LINE = "#5fb4ff"
WARM = "#ff9d4d"

set border 3 linecolor rgb QUIET
set tics nomirror textcolor rgb QUIET
set title textcolor rgb LIGHT left offset 0, -0.4
set ylabel textcolor rgb QUIET
set xlabel textcolor rgb QUIET
set key off
END = system("awk 'END { print $2 }' " . folder . "/scenes") + 0
set xrange [0:END]
set xtics 10

# Where a scene starts, a strong line; where a shot does, a weak one.
SCENES = folder . "/scenes"
scenes(first) = sprintf("< awk '$4 == %d && $1 > 0' %s", first, SCENES)
# Where a scene starts, its number, its class.
NAMES = sprintf("< awk '$4 { print $1, $3, $5 }' %s", SCENES)
