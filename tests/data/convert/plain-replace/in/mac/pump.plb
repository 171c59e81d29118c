Shape library 3.1
ID;1;Shape
LIB;pump.plb;7;std;OBJ:pump
PSDV;0;0;49;49;0;1;0;0;0;0;9;x
PNT;2;0;0;0;49;49
IVG;OBJ:pump/run.val
IX1;OBJ:pump/level.val;;;10;20
ITX2;OBJ:pump/a;System:OBJ:pump/b;other/c;OBJ:pump;OBJ:pumps;e
