Waterworks shape library
SHAPE;sampler.plb;automatic water sampler with twelve bottles
REVISION;1;2021-06-08;J. Órla

ID;1;Rect;Case
LIB;sampler.plb;1;Lib/Sampler;Lib/Sampler
PSDV;0;0;59;79;2;1;15;0;1;0;1;0
ISB;Lib/Sampler/Command:Panel;popup;300;500
ID;2;Poly;Bottle
PSDV;16;20;43;72;2;0;11;0;1;0;1;0
PNT;9;1;24;20;35;20;35;32;43;42;43;72;16;72;16;42;24;32;24;20
ID;3;Text;Label
PSDV;0;82;79;96;0;0;15;0;1;0;1;0
TXT;Sampler;1;0
ITA;Lib/Sampler/Name:Text
