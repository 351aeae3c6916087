# Draws what `scripts/limits` has measured of the import library, of the formats that have many
# series the dearest: gnuplot -e "data='FILE'; out='FILE'" import_limits.gp
set terminal svg size 960,1440 font "sans,12" background "white"
set output out
series(name) = "< sed -n 's/^" . name . " //p' " . data
set multiplot layout 3,2
set logscale xy
set xrange [1e5:1.2e6]
set yrange [0.5:4e3]
set format "10^{%T}"
set key below
set grid
set style data linespoints
set xlabel "times in the file"
set ylabel "Open to html, ms"

set title "One thing again and again in a SubRip cue"
plot for [name in "less-than italics crossing restyled fonts alignments ampersands entities arrows digits"] \
     series(name) using 1:2 title name
set title "In the text of a script, and as cues and columns"
plot for [name in "braces drawings bold transforms columns time-lines cues-at-once"] \
     series(name) using 1:2 title name
set title "WebVTT"
plot for [name in "crossing colours classes entities ruby nested settings times regions arrows"] \
     series("vtt-" . name) using 1:2 title name
set title "SAMI"
plot for [name in "crossing comments entities attributes quotes syncs-at-once backwards paragraphs classes rules"] \
     series("smi-" . name) using 1:2 title name
set title "TTML"
plot for [name in "pieces absolute crossing errors style-chain regions languages cues-at-once spans-at-once attributes"] \
     series("tt-" . name) using 1:2 title name
set title "The formats of early players, lyrics, and text in none"
plot for [name in "dvd-codes dvd-backwards mpl2-cues-at-once tmp-tags sub-tags sbv-times sub1-times lrc-lines lrc-words mp-waits none-times"] \
     series(name) using 1:2 title name
