Shape;Tank;2
ID;1;Rect;Body
LIB;tank.plb;2;Lib/Tank;Lib/Tank
PSDV;0;0;49;49;2;1;7;0;2;0;0;0
IVG;Lib/Tank/State:Shown
ID;2;Poly;Level
PSDV;10;10;39;39;2;0;7;0;2;0;0;0
PNT;3;1;10;10;39;25;10;39
