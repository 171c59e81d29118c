File;Boiler house;1
ID;1;Rect;Wall
PSDV;0;0;639;399;1;0;7;0;1;0;0
ID;1;Ellipse;Casing
LIB;pump.plb;2;Boiler/P1;Lib/Pump
PSDV;95;195;144;244;2;1;7;0;2;0;1;0
IVG;Boiler/P1/State:Shown
ID;2;Poly;Impeller
PSDV;105;205;134;234;2;0;7;0;2;0;1;0
PNT;3;1;110;210;139;225;110;239
ID;1;Ellipse;Casing
LIB;pump.plb;2;Boiler/P2;Lib/Pump
PSDV;195;195;244;244;2;1;7;0;2;0;2;0
IVG;Boiler/P2/State:Shown
ID;2;Poly;Impeller
PSDV;205;205;234;234;2;0;7;0;2;0;2;0
PNT;3;1;210;210;239;225;210;239
