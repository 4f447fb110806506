# SPDX-License-Identifier: MIT
# peers.dat to peers.svg: what the tools cost, and how late they are.
set terminal svg size 1380, 440 font "DejaVu Sans,13" background "#ffffff"
set output "peers.svg"
set datafile missing "?"
set logscale y
set grid ytics
set border 3
set tics nomirror
set format y "%g"
set xrange [-0.4:*]
set offsets 0, 0.4, 0, 0
set key at screen 0.5, 0.98 top center horizontal maxrows 1
set multiplot layout 1, 3 margins 0.05, 0.99, 0.08, 0.76 spacing 0.06
array colours[4] = ["#1a6fd4", "#d9730d", "#2e8b57", "#8e3fb0"]
array titles[3] = ["Processor time per shown frame, full motion:\nms, tool and X server", \
                   "Latency of an isolated change,\nmedian, ms", \
                   "Processor time while little or nothing moves:\nms a second, 1280x720"]
do for [panel = 1:3] {
    set title titles[panel]
    if (panel > 1) { unset key }
    plot for [tool = 1:4] "peers.dat" index panel - 1 using 0:(column(tool + 1)):xtic(1) \
        with linespoints linewidth (panel < 3 ? 2 : 0) pointtype 7 linecolor rgb colours[tool] \
        title columnhead(tool + 1)
}
unset multiplot
