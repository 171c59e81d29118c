ID;1;Rect;P3_OilPump
LIB;pump.plb;1;Boiler/P3;Obj/P3_OilPump
PSDV;60;120;99;159;2;1;15;8;1;0;1;0
IVG;Boiler/P3/State:Shown
