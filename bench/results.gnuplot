# SPDX-License-Identifier: MIT
# results.dat to results.svg: each figure that has a target, as a part of it.
set datafile separator "\t"
stats "results.dat" using 2 nooutput
set terminal svg size 1360, 80 + 26 * STATS_records font "DejaVu Sans,13" background "#ffffff"
set output "results.svg"
set lmargin at screen 0.45
set rmargin at screen 0.99
unset key
set xtics ("target" 1)
set tics scale 0
set border 2
set xrange [0:3.2] # with room for the values beside the longest bar
set yrange [STATS_records:-1]
set arrow from 1, graph 0 to 1, graph 1 nohead dashtype 2
set style fill solid
colour(missed) = missed > 0 ? 0xd13438 : 0x1a6fd4
plot "results.dat" using (0):0:(0):2:($0 - 0.3):($0 + 0.3):(colour($4)):ytic(1) \
         with boxxyerror linecolor rgb variable, \
     "" using (1.75):0:3 with labels left
