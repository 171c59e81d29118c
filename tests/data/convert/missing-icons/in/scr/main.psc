ID;1;Valve
LIB;valve.plb;1;v1;OBJ:valve
PSDV;10;10;29;29;0;1;0;0;0;0;2
ID;2;Plain
PSDV;0;0;9;9;0;1;0;0;0;0;0
