Waterworks shape library
SHAPE;tank.plb;tank with level bar, limit mark and contents
REVISION;5;2024-01-22;M. Færber

ID;1;Rect;Wall
LIB;tank.plb;5;Lib/Tank;Lib/Tank
PSDV;0;20;119;199;2;1;15;0;2;0;1;0
IBG;Lib/Tank/State:Colour
ISB;Lib/Tank/Command:Panel;popup;500;300
ID;2;Poly;Roof
PSDV;0;0;119;20;2;0;7;0;2;0;1;0
PNT;5;1;0;20;40;4;79;4;119;20;0;20
ID;3;Rect;Level
PSDV;4;90;115;196;2;0;9;1;1;0;1;0
IY1;Lib/Tank/Level:Value;0;Lib/Tank/Level:Max;196;24
IDMS;Lib/Tank/Level:Alarm
ID;4;Line;HighMark
PSDV;88;44;119;45;1;0;4;4;2;0;1;0
PNT;2;0;88;44;119;44
IY2;Lib/Tank/Limit:High;;Lib/Tank/Level:Max;196;24
ID;5;Line;Scale
PSDV;0;60;10;160;1;0;0;0;1;0;1;0
PNT;9;0;0;60;10;60;0;60;0;110;10;110;0;110;0;160;10;160;0;160
ID;6;Icon;Overflow
PSDV;98;24;113;39;0;0;15;0;0;0;1;0
DIV;0;normal;lamp_grey.bmp
DIV;1;overflow;lamp_red.bmp
IBW;0;2;16;16;0;0;Lib/Tank/Limit:Overflow
ID;7;Text;Contents
PSDV;20;120;99;136;0;0;15;0;1;0;1;0
TXT;#### m³;2;0
ITX1;Lib/Tank/Level:Volume;Lib/Tank/Level:Unit;System:DecimalPoint
ID;8;Text;Label
PSDV;0;202;119;218;0;1;15;0;1;0;1;0
TXT;Tank;2;0
ITA;Lib/Tank/Name:Text
