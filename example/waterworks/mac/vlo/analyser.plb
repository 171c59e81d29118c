Waterworks shape library
SHAPE;analyser.plb;analyser box for turbidity, chlorine or pH
REVISION;2;2021-12-13;J. Órla

ID;1;Rect;Case
LIB;analyser.plb;2;Lib/Analyser;Lib/Analyser
PSDV;0;0;79;49;2;1;15;0;1;0;1;0
ISB;Lib/Analyser/Command:Panel;popup;420;260
ID;2;Rect;Display
PSDV;6;6;73;27;2;0;10;0;1;0;1;0
ISA;Lib/Analyser/Value:Reading;Lib/Analyser/Value:Unit;40;Lib/Analyser/Value:Min;1;Lib/Analyser/Value:Max;1;Lib/Analyser/Limit:High;1;linear;2;0;0;Lib/Analyser/Limit:Low;15;7;1;0;0;Lib/Analyser/Value:Span
ID;3;Line;Probe
PSDV;38;49;42;66;1;0;0;0;2;0;1;0
PNT;4;0;40;49;40;62;38;66;42;66
ID;4;Icon;Service
PSDV;60;31;75;46;0;0;15;0;0;0;1;0
DIV;0;measuring;lamp_green.bmp
DIV;1;service;hand.bmp
ID;5;Icon;Alarm
PSDV;42;31;57;46;0;0;15;0;0;0;1;0
DIV;0;normal;lamp_grey.bmp
DIV;1;alarm;lamp_red.bmp
IDMS;Lib/Analyser/Limit:Alarm
ID;6;Icon;Calibration
PSDV;24;31;39;46;0;0;15;0;0;0;1;0
DIV;0;valid;lamp_green.bmp
DIV;1;due;lamp_yellow.bmp
ID;7;Text;Reading
PSDV;8;8;71;24;0;0;15;0;1;0;1;0
TXT;##.##;2;0
ITX1;Lib/Analyser/Value:Reading;Lib/Analyser/Value:Unit;System:DecimalPoint
ID;8;Text;Label
PSDV;0;68;95;82;0;0;15;0;1;0;1;0
TXT;Analyser;1;0
ITA;Lib/Analyser/Name:Text
