# figures: the table of bench_growth; picture: the file that is drawn
set terminal png size 1000,700 font "sans,10"
set output picture
set logscale x
set xlabel "Size of the file, MB"
set xrange [0.8:1250]
set xtics (1, 10, 100, 1000)
set grid
set key left top
set offsets 0, 0, graph 0.3, 0
set multiplot layout 2,2

# described and cold pick the lines
row(d, c, column) = sprintf("< awk '$2==%d && $3==%d {print $1, $%d}' %s", d, c, column, figures)

set title "Open: kind and a first length known, ms"
set yrange [0:*]
plot row(1,0,4) with linespoints title "described, warm", \
     row(0,0,4) with linespoints title "plain, warm", \
     row(1,1,4) with linespoints title "described, cold", \
     row(0,1,4) with linespoints title "plain, cold"

set title "All frames seen (in the background), ms"
set logscale y
set yrange [*:*]
plot row(1,0,5) with linespoints title "described, warm", \
     row(0,0,5) with linespoints title "plain, warm", \
     row(1,1,5) with linespoints title "described, cold", \
     row(0,1,5) with linespoints title "plain, cold"
unset logscale y

set title "From a seek to nine tenths to the first samples, ms"
set yrange [0:*]
plot row(1,0,6) with linespoints title "described, warm", \
     row(0,0,6) with linespoints title "plain, warm", \
     row(1,1,6) with linespoints title "described, cold", \
     row(0,1,6) with linespoints title "plain, cold"

set title "Memory that the file takes, kB"
set yrange [0:*]
kilobytes(d, c) = sprintf("< awk '$2==%d && $3==%d {print $1, $7/1024}' %s", d, c, figures)
plot kilobytes(1,0) with linespoints title "described", \
     kilobytes(0,0) with linespoints title "plain"
unset multiplot
