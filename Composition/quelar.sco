; Quelar - the score
;
; Times are in beats; the tempo line below turns them into the seconds of the picture. Each scene has its own
; tempo so that its cuts fall on bars: 4 bars of opening, 8 of flight, 7 greetings, 4 of fountains, 6 of waves,
; 10 of descent. Beat 76, before the fountains, is no beat but a gap of 0.04 s: greetings come every 2.79 s, and
; seven of them leave that over.
;
; Tune:  voice, pattern, transposition, level in dB        (pattern language: see Tune and Beat in quelar.orc)
; Beat:  drum, pattern, level in dB, tuning, length
; Riser: amplitude, lowest and highest frequency      Air: the same, from and to      Swell: amplitude
; Open:  how far the filters are open, from and to     Depth: how far the music ducks under the drums

t 0 84.2105  16 84.2105  16 86.7600  48 86.7600  48 86.0215  76 86.0215  76 1500  77 1500  77 95.3327  93 95.3327  93 95.8084  117 95.8084  117 96  161 96

; ---------------------------------------------------------------------------------------------- the material
; The theme asks in two bars and answers in two, in threes against the beat. The answer climbs where the
; question turned back. Fifth, root, ninth: its first three notes are what all the smaller tunes are made of.

#define ASK    #"A4 . . D5 . . E5 . F5 . . E5 . . C5 . | D5 . . . . . A4 . G4 . . . . . . ."#
#define ANSWER #"A4 . . D5 . . E5 . F5 . . A5 . . G5 . | E5 . . . . . D5 . Cs5 . . . E5 . . ."#
#define LOW    #"F4 . . A4 . . C5 . D5 . . C5 . . A4 . | A4 . . . . . E4 . D4 . . . . . . ."#
#define LOWER  #"F4 . . A4 . . C5 . D5 . . E5 . . D5 . | A4 . . . . . A4 . A4 . . . Cs5 . . ."#

; Its harmony: Dm9, C6/9, Bb major seventh with the raised fourth, and A suspended, then resolved.
#define CHORDS #"D3+A3+C4+E4+F4 . | C3+G3+A3+D4+E4 . | Bb2+F3+A3+D4+E4 . | A2+E3+G3+D4+E4 A2+E3+G3+Cs4+E4"#
#define ARP1   #"D4 A4 E5 F5 A4 E5 D4 A4 C5 E5 A5 E5 C5 A4 F4 E4"#
#define ARP2   #"C4 G4 E5 D5 G4 C5 C4 G4 D5 E5 G5 E5 C5 B4 G4 E4"#
#define ARP3   #"Bb3 F4 D5 E5 Bb4 D5 Bb3 F4 A4 E5 A5 E5 Bb4 A4 F4 D4"#
#define ARP4   #"A3 E4 D5 E5 G4 D5 A3 E4 Cs5 E5 G5 E5 Cs5 A4 G4 E4"#
; The arpeggio of the descent has one direction.
#define FALL1  #"A5 F5 E5 C5 A4 F4 E4 D4 F5 E5 C5 A4 F4 E4 D4 A3"#
#define FALL2  #"G5 E5 D5 B4 A4 G4 E4 D4 E5 D5 B4 A4 G4 E4 D4 C4"#
#define FALL3  #"A5 F5 E5 D5 Bb4 A4 F4 E4 F5 E5 D5 Bb4 A4 F4 D4 Bb3"#
#define FALL4  #"G5 E5 D5 B4 A4 G4 E4 D4 G5 E5 Cs5 B4 A4 G4 E4 Cs4"#

; Short chords on the off-beats of the flight; close voicings, so every spike of the lattice gets its turn.
#define DUB1   #"- - C4+F4+A4+C5+E5 . - - - F4+A4+C5+E5 . - - - - D4+F4+A4+B4+E5 . -"#
#define DUB2   #"- - C4+E4+G4+B4+D5 . - - - E4+G4+B4+C5 . - - - - C5+G4+A4+D5 . -"#
#define DUB3   #"- - D4+F4+A4+Bb4+E5 . - - - F4+A4+Bb4+E5 . - - - - D4+F4+Bb4+E5 . -"#
#define DUB4   #"- - D4+E4+G4+B4 . - - - E4+G4+A4+D5 . - - - - Cs5+E4+G4+B4 . -"#

; ------------------------------------------------------------------------------------------------- the desk
i "Echo"   0 160.7
i "Hall"   0 160.7
i "Master" 0 160.7  -0.2 -3.2
i "Depth"  0 1    0.35

; ------------------------------------------------------------------------- scene 1: four titles out of black
; One hit a title, then nothing but a chord, and the first three notes trying to become a tune.
b 0
i "Open"   0 16   0.16 0.42
i "Air"    0 16   0.22 500 1400
i "Tune"   0 16   "Sub"    "D2 . . . | Bb1 . . . | C2 . . . | A1 . . -" 0 -27
i "Beat"   0 16   "Impact" "X X X X" -3 56 0.12
i "Beat"   0 16   "Crash"  "X x x X" -18 0.3 2.2
i "Tune"   0 16   "Pad"    "D3+A3+C4+E4+F4 | Bb2+F3+A3+D4+E4 | C3+G3+A3+D4+E4 | A2+E3+G3+D4+E4" 0 -18
i "Tune"   0 16   "Bell"   "D5+A5 | D5+A5 | E5+G5 | E5+A5" 0 -17
i "Tune"   0 4    "Bell"   "- - - - - - A4 . D5 . E5 . . . . ." 0 -13
i "Tune"   4 4    "Bell"   "- - - - - - A4 . D5 . F5 . . . E5 ." 0 -13
i "Tune"   8 4    "Bell"   "- - - - - - A4 . D5 . E5 . F5 . G5 ." 0 -13
i "Tune"  12 4    "Bell"   "- - - - E5 . D5 . G5 . E5 . A5 . . ." 0 -13
i "Tune"   8 4    "Pluck"  "D4 A4 E5 A4 D4 A4 E5 G4 C4 G4 E5 G4 C4 G4 D5 G4" 0 -24
i "Tune"  12 4    "Pluck"  "A3 E4 D5 E4 A3 E4 D5 G4 A4 E5 D5 G4 A4 E5 G5 A5" 0 -24
i "Swell"  2 2    0.08
i "Swell"  6 2    0.08
i "Swell" 10 2    0.1
i "Riser" 12 4    0.2 400 6000

; --------------------------------------------------------------------------------- scene 2: flight over spikes
; The beat arrives at double time. First the theme is only plucked, then it is sung.
b 16
i "Depth"  0 1    0.7
i "Open"   0 16   0.3 0.6
i "Open"  16 16   0.5 0.85
i "Beat"   0 2    "Crash"  "X" -11.5 0.3 2.6
i "Beat"   8 2    "Crash"  "X" -17.5 0.6 1.6
i "Beat"  16 2    "Crash"  "X" -11.5 0.3 2.6
i "Beat"  24 2    "Crash"  "X" -17.5 0.6 1.6
i "Beat"   0 4    "Impact" "X" -5 44 0.2
i "Beat"   0 16   "Kick"   "x.........x.....|x.........x.....|x..x......x.....|x.........x..x.." -2.5 52 0.06
i "Beat"  16 12   "Kick"   "x.........x.....|x.........x.....|x..x......x....." -2.5 52 0.06
i "Beat"  28 4    "Kick"   "x..x...." -2.5 52 0.06
i "Beat"   0 16   "Snare"  "....X..o.o..X...|....X..o.o..X..o|....X..o.o..X...|....X..o.o..X.oo" -6.5 196 0.13
i "Beat"  16 12   "Snare"  "....X..o.o..X...|....X..o.o..X..o|....X..o.o..X..." -6.5 196 0.13
i "Beat"  28 4    "Snare"  "....X..oX.ox...." -6.5 196 0.13
i "Beat"   0 16   "Hat"    "x.o.x.o.x.o.x.oo|x.o.x.o.x.o.x.oo|x.o.x.o.x.o.x.oo|x.o.x.o.x.o.x.oo" -8.5 0.62 0.05
i "Beat"  16 16   "Hat"    "xoooxoooxoooxoxo|xoooxoooxoooxoxo|xoooxoooxoooxoxo|xoooxoooxoooxoxo" -8.5 0.62 0.05
i "Beat"   0 32   "Hat"    "..x...x.|..x...x.|..x...x.|..x...x.|..x...x.|..x...x.|..x...x.|..x...x." -12.5 0.35 0.2
i "Beat"  12 4    "Tom"    "..........o.x.o." -8 262 0.16
i "Beat"  12 4    "Tom"    ".............x.x" -7 190 0.18
i "Beat"  28 4    "Tom"    "..........x...x." -7 262 0.16
i "Beat"  28 4    "Tom"    "............xx.." -7 190 0.18
i "Tune"   0 8    "Growl"  "D2 . . D2 . . A2 . | C2 . . C2 . . G2 ." 0 -7.7
i "Tune"   8 8    "Growl"  "Bb1 . . Bb1 . . F2 . | A1 . . A1 - A2 E2 Cs2" 0 -7.7
i "Tune"  16 8    "Growl"  "D2 . D3 D2 . A2 . C3 | C2 . C3 C2 . G2 . Bb2" 0 -7.7
i "Tune"  24 8    "Growl"  "Bb1 . Bb2 Bb1 . F2 . A2 | A1 . A2 A1 . E2 - -" 0 -7.7
i "Tune"   0 16   "Pad"    $CHORDS 0 -19
i "Tune"  16 16   "Pad"    $CHORDS 0 -17
i "Tune"   0 4    "Pluck"  $ARP1 0 -17.5
i "Tune"   4 4    "Pluck"  $ARP2 0 -17.5
i "Tune"   8 4    "Pluck"  $ARP3 0 -17.5
i "Tune"  12 4    "Pluck"  $ARP4 0 -17.5
i "Tune"  16 4    "Pluck"  $ARP1 0 -18.5
i "Tune"  20 4    "Pluck"  $ARP2 0 -18.5
i "Tune"  24 4    "Pluck"  $ARP3 0 -18.5
i "Tune"  28 4    "Pluck"  $ARP4 0 -18.5
i "Tune"   0 4    "Keys"   $DUB1 0 -18.8
i "Tune"   4 4    "Keys"   $DUB2 0 -18.8
i "Tune"   8 4    "Keys"   $DUB3 0 -18.8
i "Tune"  12 4    "Keys"   $DUB4 0 -18.8
i "Tune"  16 4    "Keys"   $DUB1 0 -18
i "Tune"  20 4    "Keys"   $DUB2 0 -18
i "Tune"  24 4    "Keys"   $DUB3 0 -18
i "Tune"  28 4    "Keys"   $DUB4 0 -18
i "Tune"   0 8    "Bell"   $ASK 0 -9.5
i "Tune"   8 8    "Bell"   $ANSWER 0 -9.5
i "Tune"  16 8    "Lead"   $ASK 0 -11
i "Tune"  24 8    "Lead"   $ANSWER 0 -11
i "Tune"  24 8    "Pluck"  $LOWER 0 -13.5
i "Riser" 12 4    0.15 500 7000
i "Riser" 28 4    0.25 400 8000

; -------------------------------------------------------------------------- scene 3: rising over the flat grid
; A breath. One chord a greeting, its bass climbing a step each time, so the camera is not alone in rising.
b 48
i "Depth"  0 1    0.3
i "Open"   0 20   0.2 0.55
i "Open"  20 8    0.55 0.9
i "Air"    0 26   0.24 500 3000
i "Beat"   0 4    "Impact" "X" 0 52 0.12
i "Beat"   4 24   "Impact" "x x x x x X" -5 60 0.07
i "Beat"   0 2    "Crash"  "X" -11 0.3 3
i "Beat"   4 24   "Crash"  "x x x x x x" -18 0.5 1.6
i "Tune"   0 16   "Pad"    "Bb2+F3+A3+D4 | C3+G3+D4+E4 | D3+A3+E4+F4 | F3+A3+C4+G4" 0 -17.5
i "Tune"  16 12   "Pad"    "G3+Bb3+D4+A4 . | Bb3+D4+E4+A4 . | A3+D4+E4+G4 A3+Cs4+E4+G4" 0 -17.5
i "Tune"   0 28   "Voices" "D4+F4 . | E4+G4 . | F4+A4 . | G4+C5 . | Bb4+D5 . | D5+E5 . | D5+E5 Cs5+E5" 0 -18
i "Tune"   0 28   "Sub"    "Bb1 . . - | C2 . . - | D2 . . - | F1 . . - | G1 . . - | Bb1 . . - | A1 . . -" 0 -17
i "Tune"   0 28   "Bell"   "D5+A5 | E5+G5 | F5+A5 | G5+C6 | A5+D6 | A5+E6 | A5+E6" 0 -11.5
i "Tune"   0 8    "Bell"   "- - - - - - A4 D5 E5 . . . - - - - | - - - - - - G4 C5 D5 . . . - - - -" 0 -15.5
i "Tune"   8 8    "Bell"   "- - - - - - A4 D5 E5 . . . F5 . - - | - - - - - - C5 F5 G5 . . . - - - -" 0 -15.5
i "Tune"  16 8    "Bell"   "- - - - - - D5 G5 A5 . . . Bb5 . - - | - - - - - - E5 A5 D6 . . . - - - -" 0 -15.5
i "Tune"  24 4    "Bell"   "- - - - - - - - - - - - - - - -" 0 -15.5
i "Tune"  12 4    "Pluck"  "F4 C5 G5 A5 C5 G5 F4 C5 A5 G5 C5 A4 G5 C5 A4 F4" 0 -20
i "Tune"  16 4    "Pluck"  "G4 D5 A5 Bb5 D5 A5 G4 D5 Bb5 A5 D5 Bb4 A5 D5 Bb4 G4" 0 -20
i "Tune"  20 4    "Pluck"  "Bb4 D5 E5 A5 D5 E5 Bb4 D5 A5 E5 D5 Bb4 A5 E5 D5 Bb4" 0 -20
i "Tune"  24 4    "Pluck"  "A4 D5 E5 G5 D5 E5 A4 E5 G5 E5 D5 E5 A5 E5 Cs5 E5" 0 -20
i "Beat"  24 4    "Snare"  "o.o.o.o.o.o.oooooooooxoxxxxxXXXX" -13 210 0.08
i "Riser" 20 8    0.3 300 9000
i "Swell" 26 2    0.14

; ---------------------------------------------------------------------------------- scene 4: twelve fountains
; The release. The kick is tuned to the flash of the picture, short, five to a bar; the bass stays out of its
; way: Sub lies under it and Drive over it.
b 77
i "Depth"  0 1    0.6
i "Open"   0 16   0.6 0.9
i "Beat"   0 2    "Crash"  "X" -11 0.3 2.6
i "Beat"   8 2    "Crash"  "X" -12 0.3 2.6
i "Beat"   0 4    "Impact" "X" -10 40 0.2
i "Beat"   0 16   "Kick"   "X...X...X..X..X.|X...X...X..X....|X...X...X..X..X.|X...X...X...X..." -4 86 0.045
i "Beat"   0 16   "Clap"   "....X.......X...|....X.......X..x|....X.......X...|....X.......X..x" -6 0.5 0.12
i "Beat"   0 16   "Snare"  "....X.......X...|....X.......X..o|....X.......X...|....X.....o.xxxX" -6 220 0.11
i "Beat"   0 16   "Hat"    "x.oxx.oxx.oxx.ox|x.oxx.oxx.oxx.ox|x.oxx.oxx.oxx.ox|x.oxx.oxx.oxx.ox" -7 0.62 0.045
i "Beat"   0 16   "Hat"    "..x...x...x...x.|..x...x...x...x.|..x...x...x...x.|..x...x...x...x." -9 0.35 0.18
i "Tune"   0 8    "Sub"    "D1 . . - D1 . D1 . | C1 . . - C1 . C1 ." 0 -14
i "Tune"   8 8    "Sub"    "Bb0 . . - Bb0 . Bb0 . | A0 . . - A0 . A0 ." 0 -14
i "Tune"   0 4    "Drive"  "D3 - D3 D3 - D3 D4 - D3 D3 - D3 - D3 A3 C4" 0 -7.5
i "Tune"   4 4    "Drive"  "C3 - C3 C3 - C3 C4 - C3 C3 - C3 - C3 G3 A3" 0 -7.5
i "Tune"   8 4    "Drive"  "Bb2 - Bb2 Bb2 - Bb2 Bb3 - Bb2 Bb2 - Bb2 - Bb2 F3 A3" 0 -7.5
i "Tune"  12 4    "Drive"  "A2 - A2 A2 - A2 A3 - A2 A2 - A2 - Cs3 E3 G3" 0 -7.5
i "Tune"   0 4    "Stab"   "D4+F4+A4+E5 . - D4+F4+A4+E5 . - D4+F4+A4+E5 - - - - - D4+F4+A4+E5 . - -" 0 -10.5
i "Tune"   4 4    "Stab"   "C4+E4+G4+D5 . - C4+E4+G4+D5 . - C4+E4+G4+D5 - - - - - C4+E4+A4+D5 . - -" 0 -10.5
i "Tune"   8 4    "Stab"   "Bb3+D4+F4+E5 . - Bb3+D4+F4+E5 . - Bb3+D4+F4+A4 - - - - - Bb3+D4+A4+E5 . - -" 0 -10.5
i "Tune"  12 4    "Stab"   "A3+D4+E4+G4 . - A3+D4+E4+G4 . - A3+Cs4+E4+G4 - - - - - A3+Cs4+E4+G4 . - -" 0 -10.5
i "Tune"   0 16   "Pad"    $CHORDS 0 -19
i "Tune"   0 4    "Pluck"  $ARP1 12 -17.5
i "Tune"   4 4    "Pluck"  $ARP2 12 -17.5
i "Tune"   8 4    "Pluck"  $ARP3 12 -17.5
i "Tune"  12 4    "Pluck"  $ARP4 12 -17.5
i "Tune"   0 8    "Lead"   "- - - - - - - - A4 . . D5 . . E5 . | E5 . . . - - - - G4 . . C5 . . D5 ." 0 -8
i "Tune"   8 8    "Lead"   "D5 . . . - - - - A4 . . D5 . . E5 . | G5 . . . E5 . D5 . Cs5 . . E5 . . G5 ." 0 -8
i "Riser" 12 4    0.25 400 8000

; --------------------------------------------------------------------------------- scene 5: waves in the ground
; A tone higher, in E minor, the theme whole and in two voices. The low end is nothing but short knocks: each
; one fires a wave, and the ground needs a rest after each to let it run.
b 93
i "Depth"  0 1    0.5
i "Open"   0 16   0.75 0.95
i "Open"  16 8    0.95 0.6
i "Beat"   0 2    "Crash"  "X" -10.5 0.3 2.6
i "Beat"  16 2    "Crash"  "X" -11.5 0.3 2.6
i "Beat"   0 12   "Kick"   "X..X..X...X.....|X..X..X...X..X..|X..X..X...X....." -5.2 70 0.024
i "Beat"  12 12   "Kick"   "X..X..X...X.X...|X..X..X...X.....|X..X..X...X....." -5.2 70 0.024
i "Beat"   0 12   "Clap"   "....X.......X...|....X.......X..x|....X.......X..." -3 0.5 0.12
i "Beat"  12 12   "Clap"   "....X.......X..x|....X.......X...|....X.......X.xx" -3 0.5 0.12
i "Beat"   0 12   "Snare"  "....x.......x...|....x.......x...|....x.......x..." -6 420 0.1
i "Beat"  12 12   "Snare"  "....x.......x...|....x.......x...|....x.......x..." -6 420 0.1
i "Beat"   0 12   "Hat"    "x.oxx.oxx.oxx.ox|x.oxx.oxx.oxx.ox|x.oxx.oxx.oxx.ox" -7 0.62 0.045
i "Beat"  12 12   "Hat"    "x.oxx.oxx.oxx.ox|x.oxx.oxx.oxx.ox|x.oxx.oxx.oxx.ox" -7 0.62 0.045
i "Beat"   0 12   "Hat"    "..x...x...x...x.|..x...x...x...x.|..x...x...x...x." -9 0.35 0.18
i "Beat"  12 12   "Hat"    "..x...x...x...x.|..x...x...x...x.|..x...x...x...x." -9 0.35 0.18
i "Tune"   0 12   "Sub"    "E1 . . - E1 . E1 . | D1 . . - D1 . D1 . | C1 . . - C1 . C1 ." 0 -18
i "Tune"  12 12   "Sub"    "B0 . . - B0 . B0 . | C1 . . - C1 . C1 . | A0 . . - A0 . . ." 0 -18
i "Tune"   0 4    "Drive"  "E3 - E3 E3 - E3 E4 - E3 E3 - E3 - E3 B3 D4" 0 -10
i "Tune"   4 4    "Drive"  "D3 - D3 D3 - D3 D4 - D3 D3 - D3 - D3 A3 B3" 0 -10
i "Tune"   8 4    "Drive"  "C3 - C3 C3 - C3 C4 - C3 C3 - C3 - C3 G3 B3" 0 -10
i "Tune"  12 4    "Drive"  "B2 - B2 B2 - B2 B3 - B2 B2 - B2 - Ds3 Fs3 A3" 0 -10
i "Tune"  16 4    "Drive"  "C3 - C3 C3 - C3 C4 - C3 C3 - C3 - C3 G3 B3" 0 -10
i "Tune"  20 4    "Drive"  "A2 - A2 A2 - A2 A3 - A2 A2 - A2 - Cs3 E3 G3" 0 -10
i "Tune"   0 16   "Pad"    $CHORDS 2 -17
i "Tune"  16 8    "Pad"    "C3+G3+B3+E4+Fs4 . | A2+E3+G3+D4+E4 A2+E3+G3+Cs4+E4" 0 -17
i "Tune"   0 4    "Pluck"  $ARP1 14 -18.5
i "Tune"   4 4    "Pluck"  $ARP2 14 -18.5
i "Tune"   8 4    "Pluck"  $ARP3 14 -18.5
i "Tune"  12 4    "Pluck"  $ARP4 14 -18.5
i "Tune"  16 4    "Pluck"  "C5 G5 E6 Fs6 B5 E6 C5 G5 B5 Fs6 B6 Fs6 E6 B5 G5 E5" 0 -18.5
i "Tune"  20 4    "Pluck"  "A4 E5 D6 E6 G5 D6 A4 E5 Cs6 E6 G6 E6 Cs6 A5 G5 E5" 0 -18.5
i "Tune"   0 24   "Voices" "E4+B4 | D4+A4 | C5+E5 | B4+Ds5 | B4+E5 | A4+E5" 0 -22
i "Tune"   0 8    "Bell"   "- - - - - - - - - - - - - - - - | - - - - - - - - - - B5 . E6 . Fs6 ." 0 -19
i "Tune"   8 8    "Bell"   "- - - - - - - - - - - - - - - - | - - - - - - - - - - B5 . E6 . Fs6 ." 0 -19
i "Tune"  16 8    "Bell"   "- - - - - - - - B5 . E6 . Fs6 . G6 . | - - - - - - - - A5 . Cs6 . E6 . . ." 0 -19
i "Tune"   0 8    "Lead"   $ASK 2 -8
i "Tune"   8 8    "Lead"   $ANSWER 2 -8
i "Tune"   0 8    "Lead"   $LOW 2 -13
i "Tune"   8 8    "Lead"   $LOWER 2 -13
i "Tune"  16 8    "Lead"   "B4 . . E5 . . Fs5 . G5 . . Fs5 . . B5 . | A5 . . . . . G5 . E5 . . . Cs5 . E5 ." 0 -8
i "Tune"  16 8    "Lead"   "G4 . . B4 . . B4 . E5 . . E5 . . G5 . | E5 . . . . . E5 . A4 . . . A4 . A4 ." 0 -13
i "Tune"   0 4    "Stab"   "- - - - - - E4+G4+B4 . - - E4+G4+B4 . - - - -" 0 -13.5
i "Tune"   4 4    "Stab"   "- - - - - - D4+Fs4+A4 . - - D4+Fs4+A4 . - - - -" 0 -13.5
i "Tune"   8 4    "Stab"   "- - - - - - C4+E4+G4 . - - C4+E4+G4 . - - - -" 0 -13.5
i "Tune"  12 4    "Stab"   "- - - - - - B3+E4+Fs4 . - - B3+Ds4+Fs4 . - - - -" 0 -13.5
i "Tune"  16 4    "Stab"   "- - - - - - C4+E4+G4 . - - C4+E4+G4 . - - - -" 0 -13.5
i "Tune"  20 4    "Stab"   "- - - - - - A3+D4+E4 . - - A3+Cs4+E4 . - - - -" 0 -13.5
i "Riser" 20 4    0.25 400 8000

; ----------------------------------------------------------------------------------- scene 6: the long descent
; Home to D minor. The theme comes back at half speed over a bass that walks down; then the band leaves, drum
; by drum, while the picture fades, and the last chord is major.
b 117
i "Depth"  0 1    0.5
i "Open"   0 16   0.7 0.6
i "Open"  16 24   0.6 0.05
i "Beat"   0 2    "Crash"  "X" -10 0.3 3
i "Beat"  16 2    "Crash"  "X" -14 0.3 3
i "Beat"   0 4    "Impact" "X" -10 40 0.2
i "Beat"   0 16   "Kick"   "X.....X...X..X..|X.....X...X..X.X|X..X..X...X..X..|X.....X...X.X..." -4 84 0.052
i "Beat"  16 12   "Kick"   "X.....X...x.....|X.........x.....|x.........x....." -4 84 0.052
i "Beat"   0 16   "Snare"  "........X.......|........X.......|........X.......|........X.....xX" -2 200 0.16
i "Beat"  16 8    "Snare"  "........x.......|........x......." -6 200 0.16
i "Beat"   0 12   "Hat"    "x.o.x.o.x.o.x.oo|x.o.x.o.x.o.x.oo|x.o.x.o.x.o.x.oo" -9 0.62 0.05
i "Beat"  12 12   "Hat"    "x.o.x.o.x.o.x.oo|o...o...o...o...|o...o...o...o..." -9 0.62 0.05
i "Tune"   0 16   "Sub"    "D1 . . . | C1 . . . | Bb0 . . . | A0 . . ." 0 -16
i "Tune"  16 16   "Sub"    "D1 . . . | C1 . . . | Bb0 . . . | A0 . . -" 0 -16
i "Tune"   0 8    "Drive"  "D3 . . - D3 . D3 - | C3 . . - C3 . C3 -" 0 -12
i "Tune"   8 8    "Drive"  "Bb2 . . - Bb2 . Bb2 - | A2 . . - A2 . Cs3 -" 0 -12
i "Tune"   0 16   "Pad"    $CHORDS 0 -15.5
i "Tune"  16 16   "Pad"    "D3+A3+C4+E4+F4 | C3+G3+A3+D4+E4 | Bb2+F3+A3+D4+E4 | A2+E3+G3+Cs4+E4" 0 -16.5
i "Tune"  32 8    "Pad"    "D3+A3+E4+Fs4" 0 -15
i "Tune"   0 16   "Lead"   "F4 . . A4 . . C5 . D5 . . C5 . . A4 . | A4 . . . . . E4 . D4 . . . Cs4 . . ." 0 -16.5
i "Tune"   0 16   "Lead"   $ASK 0 -8.5
i "Tune"   0 4    "Pluck"  $FALL1 0 -15.5
i "Tune"   4 4    "Pluck"  $FALL2 0 -15.5
i "Tune"   8 4    "Pluck"  $FALL3 0 -15.5
i "Tune"  12 4    "Pluck"  $FALL4 0 -15.5
i "Air"   18 22   0.28 2600 350
i "Tune"  16 4    "Pluck"  "D4 A4 E5 F5 A4 E5 D4 A4 C5 E5 A5 E5 C5 A4 F4 E4" 0 -18.5
i "Tune"  20 4    "Pluck"  "C4 - E5 - G4 - C4 - D5 - G5 - D5 - G4 -" 0 -18.5
i "Tune"  16 16   "Voices" "F4+A4 | E4+G4 | D4+F4 | Cs4+E4" 0 -15.5
i "Tune"  16 16   "Bell"   $ANSWER 0 -11
i "Tune"  32 6    "Bell"   "A4 D5 E5 Fs5 . ." 0 -13
i "Tune"  32 7    "Voices" "Fs4+A4" 0 -17.5
e
