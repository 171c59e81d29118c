Waterworks shape library
SHAPE;fittings.cat.plb;catalogue page of bends and tees, not a shape of its own
REVISION;1;2015-07-01;A. Lindqvist
NOTE;catalogues are only browsed, a screen cannot be updated from one

ID;1;Line;Bend
LIB;fittings.cat.plb;1;Lib/Bend;Lib/Bend
PSDV;0;0;39;39;1;1;0;0;3;0;1;0
PNT;3;0;0;0;39;0;39;39
