# Draws what `scripts/limits` has measured of the import library:
# gnuplot -e "data='FILE'; out='FILE'" import_limits.gp
set terminal svg size 960,480 font "sans,12" background "white"
set output out
series(name) = "< sed -n 's/^" . name . " //p' " . data
set multiplot layout 1,2
set logscale xy
set xrange [1e5:1.2e6]
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
