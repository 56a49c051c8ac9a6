# Draws the track from the numbers that spectra and the decoder wrote; see check.
HEIGHT = 900
load style

set multiplot
set lmargin at screen 0.055
set rmargin at screen 0.985

# ---- the waveform, with the names of the scenes on top of all
set tmargin at screen 0.93
set bmargin at screen 0.72
set yrange [-1:1.5]
set ytics ("-1" -1, "0" 0, "1" 1)
set format x ""
set ylabel "wave"
set label 1 "The track as the scenes hear it" at screen 0.055, 0.975 textcolor rgb LIGHT font ",14"
plot folder."/wave" using 1:2:3 with filledcurves linecolor rgb LINE, \
     scenes(1) using 1:(-1):(0):(2.5) with vectors nohead linewidth 1.5 linecolor rgb LIGHT, \
     scenes(0) using 1:(-1):(0):(2.5) with vectors nohead dashtype 3 linecolor rgb QUIET, \
     NAMES using 1:(1.28):2 with labels left offset 0.5, 0 font ",11" textcolor rgb LIGHT, \
     NAMES using 1:(1.28):3 with labels left offset 1.8, 0 font ",8" textcolor rgb QUIET
unset label 1

# ---- the lowest bands, one a row
set tmargin at screen 0.70
set bmargin at screen 0.24
set yrange [-0.5:15.5]
set ytics 0, 1, 15
set ylabel "band"
set cbrange [0:0.5]
set palette defined (0 "#0d0f14", 0.03 "#12234a", 0.14 "#2a5fa8", 0.4 "#5fb4ff", 0.6 "#ffd08a", 1 "#fff6e6") maxcolors 24
set colorbox horizontal user origin screen 0.865, 0.967 size screen 0.12, 0.012 noborder
set cbtics 0, 0.25, 0.5 textcolor rgb QUIET offset 0, 0.4 scale 0
set label 2 "magnitude" at screen 0.855, 0.973 right textcolor rgb QUIET
plot folder."/bands" using 1:2:3 with image, \
     scenes(1) using 1:(-0.5):(0):(16) with vectors nohead linewidth 1.5 linecolor rgb LIGHT, \
     scenes(0) using 1:(-0.5):(0):(16) with vectors nohead dashtype 3 linecolor rgb QUIET

unset label 2
# ---- what the scenes make of them
set tmargin at screen 0.22
set bmargin at screen 0.07
set yrange [3.6:0.4]
set ytics ("beat" 1, "wave" 2, "launch" 3)
unset ylabel
set format x "%g"
set xlabel "seconds of the show" offset 0, 0.4
unset colorbox
plot folder."/heard" using 1:($2 - 0.32):(0):(0.64) with vectors nohead linecolor rgb WARM, \
     scenes(1) using 1:(0.4):(0):(3.2) with vectors nohead linewidth 1.5 linecolor rgb LIGHT, \
     scenes(0) using 1:(0.4):(0):(3.2) with vectors nohead dashtype 3 linecolor rgb QUIET
unset multiplot
