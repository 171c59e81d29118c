ID;1;Tank
LIB;tank.lib;1;t1;OBJ:tank
PSDV;0;0;9;9;0;1;0;0;0;0;1
ID;2;Both
LIB;both.plb;1;b1;OBJ:both
PSDV;20;0;29;9;0;1;0;0;0;0;2
