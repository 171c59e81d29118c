ID;1;A
LIB;pump.plb;1;p1;OBJ:one
ITA;between
PSDV;0;0;9;9;0;1;0;0;0;0;1
ID;2;B
LIB;pump.plb;1;p2;OBJ:two
ITA;between
PSDV;20;20;29;29;0;1;0;0;0;0;2
