head
ID;1;Note
ITA;no rectangle
ID;2;Frame
PSDV;0;0;9;9;0;1;0;0;0;0;0
ID;3;Loose end
ID;1;B
LIB;pump.plb;1;p;OBJ:b
PSDV;0;0;9;9;0;1;0;0;0;0;1
ID;2;Loose end
ITA;end
