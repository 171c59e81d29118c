 head…
ID;1;Shape
LIB;any.plb;1;für/;OBJ:über
PSDV;0;0;9;9;0;1;0;0;0;0;1;é
IVG;für/.ñ
IVG;OBJ:Ã¼ber
…
ID;2;B
PSDV;0;0;9;9;0;1;0;0;0;0;0
 
