Waterworks shape library
SHAPE;flowmeter.plb;magnetic flow meter with value and total
REVISION;3;2022-04-04;M. Færber

ID;1;Rect;Frame
LIB;flowmeter.plb;3;Lib/Flow;Lib/Flow
PSDV;200;200;263;243;0;1;15;8;1;0;1;0
IVG;Lib/Flow/State:Shown
ID;2;Poly;Body
PSDV;214;200;249;235;2;0;15;0;2;0;1;0
PNT;9;1;224;200;239;200;249;210;249;225;239;235;224;235;214;225;214;210;224;200
ISB;Lib/Flow/Command:Panel;popup;300;200
ID;3;Line;Arrow
PSDV;219;211;245;225;1;0;1;1;2;0;1;0
PNT;5;0;219;218;245;218;238;211;245;218;238;225
ID;4;Icon;Quality
PSDV;250;200;263;213;0;0;15;0;0;0;1;0
DIV;0;good;lamp_green.bmp
DIV;1;uncertain;lamp_yellow.bmp
IBW;0;2;14;14;0;0;Lib/Flow/Value:Quality
ID;5;Text;Reading
PSDV;200;246;279;260;0;0;15;0;1;0;1;0
TXT;#### m³/h;1;0
ITX1;Lib/Flow/Value:Reading;Lib/Flow/Value:Unit;System:DecimalPoint
IDMS;Lib/Flow/Value:Alarm
ID;6;Text;Label
PSDV;200;262;279;276;0;0;15;0;1;0;1;0
TXT;Flow;1;0
ITA;Lib/Flow/Name:Text
