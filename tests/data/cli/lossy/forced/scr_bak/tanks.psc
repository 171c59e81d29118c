ID;1;Rect;T1_FeedTank
LIB;tank.plb;1;Boiler/T1;Obj/T1_FeedTank
PSDV;40;60;99
ID;2;Poly;T1_Cover
PSDV;40;50;99;60;2;0;7;0;1;0;1;0
PNT;3;1;40;60;70;50;99;60
