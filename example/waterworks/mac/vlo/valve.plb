Waterworks shape library
SHAPE;valve.plb;hand valve of the first library, no longer placed
REVISION;1;2014-02-03;A. Lindqvist
NOTE;kept for old projects; the newer valve in the folder above is found first

ID;1;Rect;Frame
LIB;valve.plb;1;Lib/Valve;Lib/Valve
PSDV;0;0;47;31;0;1;15;8;1;0;1;0
ID;2;Poly;BowTie
PSDV;2;4;45;28;2;0;10;0;1;0;1;0
PNT;5;1;2;4;45;28;45;4;2;28;2;4
ITC;Lib/Valve/State:Colour
ID;3;Text;Label
PSDV;0;34;63;48;0;0;15;0;1;0;1;0
TXT;Valve;1;0
