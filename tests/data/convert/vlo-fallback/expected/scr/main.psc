ID;1;Shape
LIB;any.plb;1;t1;OBJ:vlo-tank
PSDV;0;0;9;9;0;1;0;0;0;0;1;0
ID;1;Shape
LIB;any.plb;1;b1;OBJ:mac-both
PSDV;20;0;29;9;0;1;0;0;0;0;2;0
