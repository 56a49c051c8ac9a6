# Draws the pace of a show from the times that pace_probe wrote; see soak.
HEIGHT = 560
load style

set lmargin at screen 0.055
set rmargin at screen 0.985
set tmargin at screen 0.90
set bmargin at screen 0.11
FRAME_TIME = 15 # ms
stats folder."/frames" using 2 nooutput
# what is longer than the picture is high lies at its top
TOP = STATS_max < 25 ? 30 : STATS_max < 55 ? 1.15 * STATS_max : 60
set yrange [0:TOP]
set ytics 0, 5
set grid ytics linecolor rgb "#232733"
set ylabel "ms"
set xlabel "seconds of the show" offset 0, 0.4
set label 1 sprintf("Work of every frame: %.1f ms in the mean, %.1f %% of %d frames within their 15 ms", STATS_mean, \
    100 * system("awk '$2 <= 15' ".folder."/frames | wc -l") / STATS_records, STATS_records) \
    at screen 0.055, 0.95 textcolor rgb LIGHT font ",14"
clipped(time) = time < 0.92 * TOP ? time : 0.92 * TOP
plot folder."/frames" using 1:($2 > FRAME_TIME ? NaN : $2) with points pointtype 7 pointsize 0.25 linecolor rgb LINE, \
     folder."/frames" using 1:($2 > FRAME_TIME ? clipped($2) : NaN) with points pointtype 7 pointsize 0.25 linecolor rgb WARM, \
     FRAME_TIME with lines linewidth 1.5 dashtype 2 linecolor rgb WARM, \
     scenes(1) using 1:(0):(0):(TOP) with vectors nohead linewidth 1.5 linecolor rgb LIGHT, \
     scenes(0) using 1:(0):(0):(TOP) with vectors nohead dashtype 3 linecolor rgb QUIET, \
     NAMES using 1:(0.96 * TOP):2 with labels left offset 0.5, 0 font ",11" textcolor rgb LIGHT, \
     NAMES using 1:(0.96 * TOP):3 with labels left offset 1.8, 0 font ",8" textcolor rgb QUIET
