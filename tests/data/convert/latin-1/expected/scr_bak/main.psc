 head…
ID;1;Grüße
LIB;pump.plb;1;für/;OBJ:pär
PSDV;0;0;9;9;0;1;0;0;0;0;1
ITX1;ÿ;€; 
ID;2;B
PSDV;0;0;9;9;0;1;0;0;0;0;0
 
