File;Boiler house;1
ID;1;Rect;Wall
PSDV;0;0;639;399;1;0;7;0;1;0;0
ID;2;Rect;P1_FeedPump
LIB;pump.plb;1;Boiler/P1;Obj/P1_FeedPump
PSDV;100;200;139;239;2;1;15;8;1;0;1;0
IVG;Boiler/P1/State:Shown
ID;3;Rect;P2_FeedPump
LIB;pump.plb;1;Boiler/P2;Obj/P2_FeedPump
PSDV;200;200;239;239;2;1;15;8;1;0;2;0
IVG;Boiler/P2/State:Shown
