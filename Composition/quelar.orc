; Quelar - the orchestra
;
; Three families of instruments, in the order in which a moment of sound passes through them:
;   players   read the patterns of the score and strike the voices
;   voices    make the sound: drums, basses, chords, tunes, and the noises that join the scenes
;   the desk  echo, hall, and the mastering
;
; Everything below 150 Hz is mono. The picture reacts to the low bands of the left channel, so each drum
; has its own idea of how long its low end may ring; see the notes at Kick and Sub.

sr = 44100
ksmps = 16
nchnls = 2
0dbfs = 1

seed 8421

; ------------------------------------------------------------------------------------------ shared things

; Semitones above C for the letters A to G.
giLetters ftgen 0, 0, 8, -2, 9, 11, 0, 2, 4, 5, 7

; The buses: what a kick ducks, what it does not, and the sends to hall and echoes.
gaMusicL init 0
gaMusicR init 0
gaDrumsL init 0
gaDrumsR init 0
gaHallL  init 0
gaHallR  init 0
gaEchoL  init 0
gaEchoR  init 0
gaSlowL  init 0
gaSlowR  init 0

gkStruck init 0    ; how hard a kick or snare was struck in this pass, up to 1
gkDuck   init 0    ; follows the strokes and falls to 0 after each
gkDepth  init 0.5  ; how far the music steps back for a kick
gkOpen   init 0.3  ; how far the filters of pads and arpeggios are open, 0 to 1

; ------------------------------------------------------------------------------------------ small helpers

; "D4", "Bb2" (flat) or "Cs5" (sharp) as a note number.
opcode NoteNumber, i, S
  Snote xin
  iclass table strchar(Snote, 0) - 65, giLetters
  ilast = strlen(Snote) - 1
  isign strchar Snote, 1
  ishift = 0
  if isign == 98 then
    ishift = -1
  elseif isign == 115 then
    ishift = 1
  endif
  xout iclass + ishift + 12 * (strchar(Snote, ilast) - 47)
endop

; One step of a Tune: a note or, with plus signs, a chord.
opcode Strike, 0, SSiiii
  Svoice, Sstep, istart, idur, ishift, iamp xin
  icut strindex Sstep, "+"
  while icut > 0 do
    Shead strsub Sstep, 0, icut
    schedule Svoice, istart, idur, NoteNumber(Shead) + ishift, iamp
    Sstep strsub Sstep, icut + 1, -1
    icut strindex Sstep, "+"
  od
  schedule Svoice, istart, idur, NoteNumber(Sstep) + ishift, iamp
endop

; A mono sound at a place from 0 (left) to 1 (right), at equal power.
opcode Place, aa, ai
  asound, iplace xin
  xout asound * cos(iplace * $M_PI_2), asound * sin(iplace * $M_PI_2)
endop

; To the music bus, with sends to hall and echo. From beat 76 on the echoes keep the faster time.
opcode Music, 0, aaii
  aleft, aright, ihall, iecho xin
  gaMusicL += aleft
  gaMusicR += aright
  gaHallL += aleft * ihall
  gaHallR += aright * ihall
  if times:i() < 53.0 then
    gaSlowL += aleft * iecho
    gaSlowR += aright * iecho
  else
    gaEchoL += aleft * iecho
    gaEchoR += aright * iecho
  endif
endop

opcode Drums, 0, aai
  aleft, aright, ihall xin
  gaDrumsL += aleft
  gaDrumsR += aright
  gaHallL += aleft * ihall
  gaHallR += aright * ihall
endop

; Tells the desk, once, that a drum was struck for which the music steps back.
opcode Strikes, 0, i
  ihow xin
  if timeinstk() == 1 then
    gkStruck = max(gkStruck, ihow)
  endif
endop

; ------------------------------------------------------------------------------------------------ players

; Notes. p4 voice, p5 pattern, p6 transposition in semitones, p7 level in dB.
; The pattern's steps share the duration equally: a note, a chord D4+F4+A4, "." to hold on, "-" to rest.
; A bar line "|" takes no time; it is there for the eye, and bars of unequal length are refused.
instr Tune
  Svoice strget p4
  Sline strget p5
  Sline strcat Sline, " "
  ilength strlen Sline

  isteps = 0
  ibars = 1
  ibar = 0
  iprevious = 32
  iat = 0
  while iat < ilength do
    inow strchar Sline, iat
    if inow == 124 then
      ibar = (ibars == 1 ? isteps : ibar)
      if isteps != ibars * ibar then
        goto uneven
      endif
      ibars += 1
    elseif inow != 32 && iprevious == 32 then
      isteps += 1
    endif
    iprevious = inow
    iat += 1
  od
  if ibars > 1 && isteps != ibars * ibar then
    goto uneven
  endif
  istep = p3 / isteps

  Sheld = ""
  iheld = 0
  icount = 0
  ibegin = 0
  iprevious = 32
  iat = 0
  while iat < ilength do
    inow strchar Sline, iat
    if inow != 32 && iprevious == 32 then
      ibegin = iat
    elseif inow == 32 && iprevious != 32 then
      Sword strsub Sline, ibegin, iat
      ifirst strchar Sword, 0
      if ifirst != 124 then
        if ifirst != 46 && strlen(Sheld) > 0 then
          iaccent = (iheld % 4 == 0 ? 0 : -1.5)
          Strike Svoice, Sheld, iheld * istep, (icount - iheld) * istep, p6, ampdb(p7 + iaccent)
          Sheld = ""
        endif
        if ifirst >= 65 then
          Sheld = Sword
          iheld = icount
        endif
        icount += 1
      endif
    endif
    iprevious = inow
    iat += 1
  od
  if strlen(Sheld) > 0 then
    Strike Svoice, Sheld, iheld * istep, (isteps - iheld) * istep, p6, ampdb(p7)
  endif
  turnoff
  goto played
uneven:
  prints "error: bars of unequal length: %s\n", Sline
  exitnow 1
played:
endin

; Drum patterns. p4 voice, p5 pattern, p6 level in dB, p7 and p8 the drum's own tuning and length.
; One character a step: X loud, x normal, o soft, anything else a rest; blanks and bar lines do not count.
instr Beat
  Svoice strget p4
  Sline strget p5
  ilength strlen Sline
  isteps = 0
  ibars = 1
  ibar = 0
  iat = 0
  while iat < ilength do
    inow strchar Sline, iat
    if inow == 124 then
      ibar = (ibars == 1 ? isteps : ibar)
      if isteps != ibars * ibar then
        goto uneven
      endif
      ibars += 1
    elseif inow != 32 then
      isteps += 1
    endif
    iat += 1
  od
  if ibars > 1 && isteps != ibars * ibar then
    goto uneven
  endif
  istep = p3 / isteps
  icount = 0
  iat = 0
  while iat < ilength do
    inow strchar Sline, iat
    if inow == 88 then
      schedule Svoice, icount * istep, istep, ampdb(p6), p7, p8
    elseif inow == 120 then
      schedule Svoice, icount * istep, istep, ampdb(p6 - 2.5), p7, p8
    elseif inow == 111 then
      schedule Svoice, icount * istep, istep, ampdb(p6 - 9), p7, p8
    endif
    icount += (inow == 32 || inow == 124 ? 0 : 1)
    iat += 1
  od
  turnoff
  goto played
uneven:
  prints "error: bars of unequal length: %s\n", Sline
  exitnow 1
played:
endin

; Opens or closes the filters of pads and arpeggios from p4 to p5.
instr Open
  gkOpen line p4, p3, p5
endin

; How far the music ducks under a kick from now on.
instr Depth
  gkDepth init p4
  turnoff
endin

; -------------------------------------------------------------------------------------------------- drums
; All of them: p4 amplitude, p5 tuning, p6 length.

; The kick has two parts. The punch holds the tuning p5 for about p6 seconds and is what the picture sees;
; the tail is a quiet octave below that the ear joins to it.
instr Kick
  ilong = p6 + 0.16
  p3 = ilong
  Strikes 1
  kdrop expseg 4.2, 0.012, 1.25, 0.02, 1, 1, 1
  apunch oscili linseg:a(0, 0.001, 1, p6, 0.8, p6 * 0.6, 0, 1, 0), p5 * kdrop
  atail oscili linseg:a(0, p6, 0.2, ilong - p6 - 0.01, 0, 1, 0), p5 * 0.55
  aclick butterhp noise(0.5 * expseg:a(1, 0.006, 0.001, 1, 0.001), 0), 1800
  aclick butterlp aclick, 9000
  asum = (tanh(1.4 * apunch) * 0.95 + atail + aclick * 0.5) * p4
  Drums asum, asum, 0.02
endin

; Snare: p5 the shell's pitch, p6 how long the wires rattle.
instr Snare
  p3 = p6 + 0.25
  Strikes min(0.65, p4 * 1.2)
  kdrop expseg 1.5, 0.02, 1, 1, 1
  ashell oscili expseg:a(1, 0.05, 0.05, 0.1, 0.001, 1, 0.001), p5 * kdrop
  ashell2 oscili expseg:a(0.6, 0.04, 0.05, 0.1, 0.001, 1, 0.001), p5 * 1.58 * kdrop
  aenv expseg 1, p6 * 0.5, 0.4, p6, 0.02, 0.2, 0.0001
  aleft noise 1, 0
  aright noise 1, 0
  acentre noise 1, 0
  aleft butterhp (aleft * 0.5 + acentre) * aenv, 1100
  aright butterhp (aright * 0.5 + acentre) * aenv, 1100
  aleft butterlp aleft, 11000
  aright butterlp aright, 11000
  askin butterbp noise(1, 0) * expseg:a(1, 0.06, 0.05, 0.1, 0.001, 1, 0.001), 520, 480
  ashells = (ashell + ashell2) * 0.5 + tanh(askin * 3.5) * 0.6
  Drums (tanh(aleft * 1.5) * 0.6 + ashells) * p4, (tanh(aright * 1.5) * 0.6 + ashells) * p4, 0.2
endin

; Clap: four hands, never quite together.
instr Clap
  p3 = 0.5
  ahands linseg 0, 0.001, 1, 0.008, 0.1, 0.001, 0.9, 0.009, 0.1, 0.001, 0.8, 0.007, 0.1, 0.001, 1, 0.03, 0.35, p6, 0, 1, 0
  aleft butterbp noise(1, 0) * ahands, 1500, 1300
  aright butterbp noise(1, 0) * ahands, 1700, 1500
  aleft butterhp aleft, 500
  aright butterhp aright, 500
  Drums tanh(aleft * 2.4) * p4, tanh(aright * 2.4) * p4, 0.24
endin

; Hat: noise with a little metal in it. p5 places it, p6 is short for closed and long for open.
instr Hat
  p3 = p6 + 0.05
  aenv expseg 1, p6, 0.004, 0.05, 0.0001
  ametal = vco2:a(0.25, 3170 + 40 * p5, 10) * vco2:a(1, 5417, 10) + vco2:a(0.2, 4243, 10)
  ahat butterhp (noise(0.85, 0) + ametal * 0.2) * aenv, 7200
  ahat butterlp ahat, 14500
  al, ar Place ahat * 2.6, p5
  Drums al * p4, ar * p4, 0.05
endin

; Tom for fills: p5 pitch, p6 length.
instr Tom
  p3 = p6 + 0.05
  kdrop expseg 1.9, 0.05, 1.05, p6, 0.9
  atom oscili expseg:a(1, p6 * 0.4, 0.25, p6 * 0.6, 0.002, 0.05, 0.001), p5 * kdrop
  askin butterbp noise(0.6, 0) * expseg:a(1, 0.03, 0.001, 1, 0.001), 900, 900
  iplace = 0.25 + 0.5 * ((p5 - 120) / 200)
  al, ar Place tanh(atom * 1.3) + askin, limit(iplace, 0.2, 0.8)
  Drums al * p4, ar * p4, 0.2
endin

; Crash: p5 brightness, p6 length.
instr Crash
  p3 = p6 + 0.1
  aenv expseg 0.4, 0.004, 1, p6 * 0.3, 0.28, p6 * 0.7, 0.001
  kcut expseg 13000, p6, 4500
  aleft butterhp noise(1, 0) * aenv, 2600 + 1200 * p5
  aright butterhp noise(1, 0) * aenv, 2900 + 1200 * p5
  aleft butterlp aleft, kcut
  aright butterlp aright, kcut
  Drums aleft * p4 * 1.7, aright * p4 * 1.7, 0.2
endin

; Impact: the hit under a cut. A short low knock at p5, a noise slap, and a hall full of both.
; p6 is the length of the low end.
instr Impact
  p3 = p6 * 3 + 0.3
  Strikes 1
  kdrop expseg 2.6, 0.03, 1.1, p6, 0.85, 1, 0.85
  alow oscili expseg:a(1, p6, 0.25, p6 * 2, 0.001, 1, 0.001), p5 * kdrop
  aslap noise expseg:a(1, 0.05, 0.12, 0.2, 0.001, 1, 0.001), 0
  aslap butterlp butterhp(aslap, 300), 5200
  amono = tanh(alow * 1.5) * 0.85
  gaHallL += aslap * p4 * 0.5
  gaHallR += aslap * p4 * 0.5
  Drums (amono + aslap * 0.5) * p4, (amono + aslap * 0.5) * p4, 0.06
endin

; Riser into a cut over p3: noise through a climbing band, and a tone that climbs with it.
; p4 amplitude, p5 lowest and p6 highest frequency of the band.
instr Riser
  kamp expseg 0.02, p3 * 0.6, 0.25, p3 * 0.395, 1, p3 * 0.005, 0.01
  kband expseg p5, p3, p6
  aleft butterbp noise(1, 0), kband, kband * 0.6
  aright butterbp noise(1, 0), kband * 1.06, kband * 0.6
  kshake = 0.75 + 0.25 * lfo(1, 4 + 12 * kamp, 1)
  aleft *= kamp * kshake * p4 * 2
  aright *= kamp * kshake * p4 * 2
  Music aleft, aright, 0.25, 0
endin

; A cymbal played backwards up to the next cut.
instr Swell
  aenv expseg 0.003, p3 * 0.98, 1, p3 * 0.02, 0.003
  aleft butterhp noise(1, 0) * aenv, 3000
  aright butterhp noise(1, 0) * aenv, 3300
  aleft butterlp aleft, 11000
  aright butterlp aright, 11000
  Music aleft * p4 * 2, aright * p4 * 2, 0.3, 0
endin

; Air: wind that moves from side to side over p3. p4 amplitude, p5 and p6 its band at the beginning and the end.
instr Air
  aenv linseg 0, p3 * 0.3, 1, p3 * 0.4, 1, p3 * 0.3, 0
  kband expseg p5, p3, p6
  kleft = kband * (1 + 0.3 * lfo:k(1, 0.17))
  kright = kband * (1 - 0.3 * lfo:k(1, 0.13))
  aleft butterbp noise(1, 0) * aenv, kleft, kleft * 0.35
  aright butterbp noise(1, 0) * aenv, kright, kright * 0.35
  Music aleft * p4, aright * p4, 0.4, 0
endin

; -------------------------------------------------------------------------------------------------- voices
; All of them: p4 note number, p5 amplitude.

; Sub: a plain low sine. It stays where the picture's band of 86 Hz hardly hears it.
instr Sub
  aenv linsegr 0, 0.012, 1, p3, 0.85, 0.04, 0
  asub oscili aenv * p5, cpsmidinn(p4)
  Music asub, asub, 0, 0
endin

; Growl: the bass of the second scene, two saws that beat against each other, and a sub below.
instr Growl
  icps cpsmidinn p4
  aenv linsegr 0, 0.006, 1, 0.12, 0.8, p3, 0.7, 0.05, 0
  asaw = vco2:a(0.5, icps * 1.006) + vco2:a(0.5, icps * 0.994) + vco2:a(0.35, icps * 2.003)
  kmove = 0.5 + 0.5 * lfo:k(1, 1.44)
  kcut = 340 + 1100 * kmove * (0.3 + gkOpen) + 900 * expon:k(1, 0.12, 0.05)
  asaw zdf_ladder asaw, kcut, 2.2
  asaw tanh asaw * 1.6
  asub oscili 0.55, icps
  amid butterhp asaw, 70
  agrowl = (amid * 0.8 + asub * 1.1) * aenv * p5
  Music agrowl, agrowl, 0, 0
endin

; Drive: a bass line that lives above 140 Hz and leaves the room below to kick and Sub.
instr Drive
  icps cpsmidinn p4
  aenv linsegr 0, 0.004, 1, 0.1, 0.6, 0.06, 0
  asaw = vco2:a(0.5, icps) + vco2:a(0.4, icps * 1.005) + vco2:a(0.4, icps * 2, 2, 0.4)
  kcut = 400 + 2600 * gkOpen * expsegr:k(1, 0.14, 0.2, 0.1, 0.15)
  asaw zdf_ladder asaw, kcut, 3
  asaw tanh asaw * 1.8
  asaw butterhp butterhp(asaw, 150), 150
  al, ar Place asaw, 0.5
  Music al * aenv * p5, ar * aenv * p5, 0.02, 0
endin

; Pad: detuned saws to both sides behind a filter that Open moves.
instr Pad
  icps cpsmidinn p4
  iattack = min(0.5, p3 * 0.25)
  aenv linsegr 0, iattack, 1, p3, 0.9, 0.9, 0
  kdrift = 0.0016 * lfo:k(1, 0.31 + 0.05 * (p4 % 5))
  aleft = vco2:a(0.3, icps * (1.0046 + kdrift)) + vco2:a(0.3, icps * (0.9971 - kdrift))
  aright = vco2:a(0.3, icps * (0.9953 + kdrift)) + vco2:a(0.3, icps * (1.0032 - kdrift))
  kcut = 350 * (16 ^ gkOpen)
  aleft zdf_2pole aleft, kcut, 0.8
  aright zdf_2pole aright, kcut, 0.8
  aleft butterhp aleft, 170
  aright butterhp aright, 170
  Music aleft * aenv * p5, aright * aenv * p5, 0.35, 0
endin

; Voices: saws through three formants that wander from "oo" to "ah".
instr Voices
  icps cpsmidinn p4
  aenv linsegr 0, min(0.7, p3 * 0.3), 1, p3, 0.85, 1.1, 0
  kvibrato = 1 + 0.004 * lfo:k(1, 4.7 + 0.3 * (p4 % 3))
  asource = vco2:a(0.4, icps * kvibrato) + vco2:a(0.4, icps * 1.006 * kvibrato)
  kvowel = 0.5 - 0.5 * cos(6.283 * min(1, timeinsts:k() / (p3 * 2)))
  a1 reson asource, 340 + 420 * kvowel, 90, 1
  a2 reson asource, 820 + 380 * kvowel, 110, 1
  a3 reson asource, 2450 + 250 * kvowel, 170, 1
  avoices = butterhp(a1 + a2 * 0.6 + a3 * 0.35, 220) * aenv * 2.5
  iplace = 0.2 + 0.6 * ((p4 * 7) % 10) / 9
  al, ar Place avoices, iplace
  Music al * p5, ar * p5, 0.6, 0.05
endin

; Stab: a short bright chord note.
instr Stab
  icps cpsmidinn p4
  aenv linsegr 0, 0.003, 1, 0.14, 0.6, p3, 0.3, 0.12, 0
  aleft = vco2:a(0.3, icps * 1.006) + vco2:a(0.3, icps * 0.996) + vco2:a(0.2, icps * 2.004)
  aright = vco2:a(0.3, icps * 0.994) + vco2:a(0.3, icps * 1.004) + vco2:a(0.2, icps * 1.997)
  kcut = 500 + (1500 + 5000 * gkOpen) * expsegr:k(1, 0.15, 0.25, 0.3, 0.08, 0.1, 0.06)
  aleft zdf_2pole aleft, kcut, 1.1
  aright zdf_2pole aright, kcut, 1.1
  aleft butterhp butterhp(aleft, 240), 240
  aright butterhp butterhp(aright, 240), 240
  Music aleft * aenv * p5, aright * aenv * p5, 0.22, 0.18
endin

; Keys: an electric piano, hardly more than its fundamentals, so its chords fill the spikes of the lattice and
; leave the room above to the theme.
instr Keys
  icps cpsmidinn p4
  aenv linsegr 0, 0.004, 1, 0.25, 0.66, p3, 0.3, 0.1, 0
  kindex expseg 1.1, 0.09, 0.25, 4, 0.02
  iphase = frac(p4 * 0.382)
  amod oscili kindex * icps, icps * 1.001
  aleft oscili 1, icps * 1.0012 + amod, -1, iphase
  aright oscili 1, icps * 0.9988 + amod, -1, iphase
  atine oscili 0.1 * expseg:a(1, 0.08, 0.05, 4, 0.001), icps * 7
  asway lfo 0.12, 2.9
  Music (aleft + atine) * aenv * p5 * (1 + asway), (aright + atine) * aenv * p5 * (1 - asway), 0.16, 0.1
endin

; Pluck: two-operator FM whose brightness falls with its loudness; its place depends on its note.
instr Pluck
  icps cpsmidinn p4
  p3 = max(p3, 0.1) + 0.5
  aenv expseg 0.001, 0.003, 1, 0.22, 0.2, p3 - 0.22, 0.0005
  isoft = 1 - limit((p4 - 69) / 30, 0, 0.75)   ; high notes are bright enough by themselves
  kindex expseg isoft * (1.2 + 3 * i(gkOpen)), 0.12, isoft * 0.4, p3, 0.05
  apluck foscili 1, icps, 1, 2, kindex
  apluck2 foscili 0.35, icps * 1.003, 1, 5.01, kindex * 0.35
  asum butterhp (apluck + apluck2) * aenv, 200
  al, ar Place asum, 0.66 - 0.36 * ((p4 * 5) % 12) / 11
  Music al * p5, ar * p5, 0.22, 0.28
endin

; Bell: struck glass, three partials of FM with their own decays.
instr Bell
  icps cpsmidinn p4
  p3 = max(p3, 0.4) + 2.2
  aenv expseg 0.001, 0.002, 1, 0.5, 0.3, p3 - 0.5, 0.0003
  kindex expseg 1.7, 0.16, 0.4, p3, 0.03
  a1 foscili 0.7, icps, 1, 3.507, kindex
  a2 foscili 0.35, icps * 2.002, 1, 1.41, kindex * 0.5
  a3 oscili 0.25 * expseg:a(1, 1.2, 0.1, p3, 0.001), icps * 0.5
  asum butterhp (a1 + a2 + a3) * aenv, 180
  asum butterlp asum, 7000
  al, ar Place asum, 0.25 + 0.5 * ((p4 * 3) % 7) / 6
  Music al * p5, ar * p5, 0.5, 0.3
endin

; Lead: what sings the theme. Five saws, a scoop into each note, vibrato on the long ones.
instr Lead
  icps cpsmidinn p4
  aenv linsegr 0, 0.008, 1, 0.15, 0.8, p3, 0.75, 0.14, 0
  kscoop linseg -0.35, 0.035, 0, 1, 0
  kvibrato = 0.09 * linseg:k(0, 0.22, 0, 0.3, 1, 1, 1) * lfo:k(1, 5.6)
  kcps = icps * semitone(kscoop + kvibrato)
  acentre = vco2:a(0.42, kcps)
  aleft = vco2:a(0.3, kcps * 1.0052) + vco2:a(0.24, kcps * 0.9915)
  aright = vco2:a(0.3, kcps * 0.9949) + vco2:a(0.24, kcps * 1.0081)
  kcut = 1600 + 3800 * gkOpen + 1800 * expsegr:k(1, 0.25, 0.15, 1, 0.1, 0.1, 0.1)
  aleft zdf_2pole acentre + aleft, kcut, 0.9
  aright zdf_2pole acentre + aright, kcut, 0.9
  aleft butterhp aleft, 260
  aright butterhp aright, 260
  Music aleft * aenv * p5, aright * aenv * p5, 0.2, 0.26
endin

; ------------------------------------------------------------------------------------------------ the desk

instr Echo
  ; Ping-pong, a dotted eighth a side: 0.523 s while the bars are slow, 0.47 s once they are fast.
  asl init 0
  asr init 0
  afl init 0
  afr init 0
  aslowin butterhp gaSlowL + gaSlowR, 350
  afastin butterhp gaEchoL + gaEchoR, 350
  asl delay butterlp(aslowin * 0.6 + asr * 0.52, 4200), 0.523
  asr delay butterlp(asl * 0.8, 5000), 0.523
  afl delay butterlp(afastin * 0.6 + afr * 0.52, 4200), 0.4697
  afr delay butterlp(afl * 0.8, 5000), 0.4697
  aleft = asl + afl
  aright = asr + afr
  gaMusicL += aleft
  gaMusicR += aright
  gaHallL += aleft * 0.25
  gaHallR += aright * 0.25
endin

instr Hall
  aleft delay butterhp(gaHallL, 240), 0.023
  aright delay butterhp(gaHallR, 240), 0.029
  aleft, aright reverbsc aleft, aright, 0.87, 8200, sr, 0.6
  gaMusicL += butterhp(aleft, 260) * 0.55
  gaMusicR += butterhp(aright, 260) * 0.55
endin

; Master: ducking, mono bass, gentle saturation, and a limiter.
; p4 gain in dB, p5 the limiter's ceiling in dB.
; The limiter looks 15 ms ahead. That delays the whole track by the 15 ms that pass before the show's first
; update, so a beat of the score and a cut of the picture carry the same time.
instr Master
  gkDuck = max(gkStruck, gkDuck * exp(-ksmps / (sr * 0.11)))
  gkStruck = 0
  aduck interp 1 - gkDepth * tonek(gkDuck, 80)

  ; Drums that pile up are rounded off here, so the limiter need not pull the music down with them.
  iround = 0.62
  aleft = gaMusicL * aduck + iround * tanh(gaDrumsL / iround)
  aright = gaMusicR * aduck + iround * tanh(gaDrumsR / iround)
  amid = (aleft + aright) * 0.5
  aside butterhp (aleft - aright) * 0.5, 150
  amid butterhp amid, 22
  igain = ampdb(p4)
  aleft rbjeq (amid + aside) * igain, 3000, ampdb(2), 0, 0.7, 12   ; a little more light above 3 kHz
  aright rbjeq (amid - aside) * igain, 3000, ampdb(2), 0, 0.7, 12

  ; The ceiling holds for every sample: the lowest gain wanted within the look-ahead, averaged over it.
  iblocks = 41
  iceiling = ampdb(p5)
  kwanted[] init iblocks
  kheld[] init iblocks
  kfirst init 1
  if kfirst == 1 then
    kn = 0
    while kn < iblocks do
      kwanted[kn] = 1
      kheld[kn] = 1
      kn += 1
    od
    kfirst = 0
  endif
  kpeak max_k max(abs(aleft), abs(aright)), 1, 1
  kslot init 0
  kwanted[kslot] = iceiling / max(kpeak, iceiling)
  kheld[kslot] minarray kwanted
  kgain sumarray kheld
  kslot = (kslot + 1) % iblocks
  again interp kgain / iblocks
  aout1 delay aleft, (iblocks * ksmps) / sr
  aout2 delay aright, (iblocks * ksmps) / sr

  ; The picture is black at 103.2 s: by then the hall has all but gone, and the file ends in silence.
  kfade linseg 1, 98.5, 1, 2.7, 0.6, 1.8, 0.12, 0.5, 0.03, 1, 0, 1, 0
  outs aout1 * again * kfade, aout2 * again * kfade

  clear gaMusicL, gaMusicR, gaDrumsL, gaDrumsR, gaHallL, gaHallR, gaEchoL, gaEchoR, gaSlowL, gaSlowR
endin
