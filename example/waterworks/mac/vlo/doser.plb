Waterworks shape library
SHAPE;doser.plb;dosing pump with stroke indicator
REVISION;3;2023-02-20;A. Lindqvist

ID;1;Rect;Frame
LIB;doser.plb;3;Lib/Doser;Lib/Doser
PSDV;0;0;79;59;2;1;15;0;1;0;1;0
IVG;Lib/Doser/State:Shown
ISB;Lib/Doser/Command:Panel;popup;560;320
ID;2;Rect;Cylinder
PSDV;8;20;45;41;2;0;7;0;1;0;1;0
IX2;Lib/Doser/Stroke:Limit;0;Lib/Doser/Stroke:Max;8;45
ID;3;Rect;Piston
PSDV;14;22;22;39;2;0;1;0;1;0;1;0
IX1;Lib/Doser/Stroke:Value;0;Lib/Doser/Stroke:Max;8;40
ID;4;Poly;Head
PSDV;46;14;72;48;2;0;14;0;1;0;1;0
PNT;5;1;46;20;72;14;72;48;46;41;46;20
IBG;Lib/Doser/State:HeadColour
IIKN;2;Lib/Doser/Command:Mode;off;dose
ID;5;Icon;StateLamp
PSDV;4;2;19;17;0;0;15;0;0;0;1;0
DIV;0;stopped;pump_off.bmp
DIV;1;dosing;pump_on.bmp
ID;6;Text;Rate
PSDV;8;43;79;57;0;0;15;0;1;0;1;0
TXT;## l/h;1;0
ITX1;Lib/Doser/Rate:Value;Lib/Doser/Rate:Unit;System:DecimalPoint
ID;7;Text;Label
PSDV;0;62;95;76;0;0;15;0;1;0;1;0
TXT;Doser;1;0
ITA;Lib/Doser/Name:Text
