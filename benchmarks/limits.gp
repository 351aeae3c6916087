# Draws what `scripts/limits` has measured: gnuplot -e "data='FILE'; out='FILE'" limits.gp
set terminal svg size 960,720 font "sans,12" background "white"
set output out
series(name) = "< sed -n 's/^" . name . " //p' " . data
set multiplot layout 2,3
set logscale xy
set format "10^{%T}"
set mxtics 1
set mytics 1
set key below
set grid
set style data linespoints

set title "SubRip: text lines in a row"
set xlabel "lines"
plot series("text-lines") using 1:2 title "Open, ms", "" using 1:3 title "memory, MB"
set title "ASS: an event of tags made for it"
set xlabel "characters"
plot series("tags") using 1:2 title "Open, ms", "" using 1:3 title "memory, MB"
set title "SubRip: one line"
set xlabel "million characters"
plot series("long-line") using 1:2 title "Open, ms", "" using 1:3 title "memory, MB", \
     series("long-wide-line") using 1:2 title "wide: Open, ms", "" using 1:3 title "wide: memory, MB"
set title "ASS without events: DurationTime()"
set xlabel "calls"
plot series("durations") using 1:2 title "all calls, ms", "" using 1:3 title "memory, MB"
set title "Query after a record was handed out"
set xlabel "records"
plot series("scan") using 1:2 title "one query, ms"
set title "VobSub: GetFilePos() of each line"
set xlabel "lines"
plot series("entries") using 1:2 title "all calls, ms", "" using 1:3 title "memory, MB"
