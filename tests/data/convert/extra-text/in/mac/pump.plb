ID;1;Shape
LIB;any.plb;1;x;OBJ:new
PSDV;0;0;9;9;0;1;0;0;0;0;0;s;drop;drop
ID;2;Icon
PSDV;1;1;2;2;0;1;0;0;0;0;0;
