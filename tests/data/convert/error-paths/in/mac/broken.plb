Header one
Header two
ID;1;Shape
LIB;broken.plb;1;x;OBJ:n
PNT;2;0;1;1
