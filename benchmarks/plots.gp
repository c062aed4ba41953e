# Draws the plots of docs/performance.md and docs/polling.md. Called by scripts/bench --plots, which sets `results` and `plots`.
set terminal svg size 800,480 font "sans,14" background "white"
set key above vertical maxrows 3
set grid
set logscale x

set output plots."/lists.svg"
set logscale y
set xrange [800:1250000]
set format x "10^{%T}"
set xlabel "entries of the list"
set ylabel "time of reading (ms)"
plot results."/lists.dat" index 0 using 1:2 with linespoints lw 2 title "library, into records", \
     "" index 1 using 1:2 with linespoints lw 2 title "QJsonDocument alone", \
     "" index 2 using 1:2 with linespoints lw 2 title "nlohmann-json, into plain structures"

set output plots."/calls.svg"
unset logscale y
set format x "%g"
set xrange [0.8:6250]
set yrange [0:*]
set xlabel "calls in flight"
set ylabel "calls a second"
plot results."/calls.dat" index 0 using 1:2 with linespoints lw 2 title "library, into records", \
     "" index 1 using 1:2 with linespoints lw 2 title "libcurl multi loop, QJsonDocument", \
     "" index 2 using 1:2 with linespoints lw 2 title "Qt's access manager, QJsonDocument"

set output plots."/outage.svg"
unset logscale x
set logscale y
set xrange [-2:20]
set yrange [0.05:100]
set xtics 2
set xlabel "minutes since the service went away, for ten minutes"
set ylabel "requests a second over the steady load"
plot results."/outage.dat" index 2 using 1:2 with lines lw 2 lc 3 title "again after 1 s", \
     "" index 1 using 1:2 with lines lw 2 lc 2 title "fixed interval", \
     "" index 0 using 1:2 with lines lw 2 lc 1 title "RequestPoller"
