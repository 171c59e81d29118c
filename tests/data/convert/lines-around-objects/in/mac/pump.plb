ID;1;Shape
LIB;any.plb;1;x;OBJ:new
PSDV;0;0;9;9;0;1;0;0;0;0;0;0
