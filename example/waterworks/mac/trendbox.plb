Waterworks shape library
SHAPE;trendbox.plb;trend window with two pens and time axis
REVISION;3;2024-03-11;A. Lindqvist

ID;1;Rect;Frame
LIB;trendbox.plb;3;Lib/Trend;Lib/Trend
PSDV;0;0;399;199;2;1;15;8;1;0;1;0
ISA;Lib/Trend/Pen1:Value;Lib/Trend/Pen2:Value;60;Lib/Trend/Pen1:Min;1;Lib/Trend/Pen1:Max;1;Lib/Trend/Pen2:Min;1;linear;5;0;0;Lib/Trend/Pen2:Max;15;7;1;0;0;Lib/Trend/Axis:Span;hh:mm;0;0;10;10;8;0;0;Lib/Trend/Axis:Start
ID;2;Line;Grid
PSDV;40;20;389;170;1;0;7;7;1;0;1;0
PNT;12;0;40;20;389;20;389;70;40;70;40;120;389;120;389;170;150;170;150;20;270;20;270;170;40;170
ID;3;Line;Axes
PSDV;40;10;389;170;1;0;0;0;2;0;1;0
PNT;3;0;40;10;40;170;389;170
IX1;Lib/Trend/Axis:Cursor;0;Lib/Trend/Axis:Span;40;389
ID;4;Line;SampleCurve
PSDV;40;40;389;140;1;0;1;1;2;0;1;0
PNT;9;0;40;120;80;110;120;128;165;70;210;60;255;92;300;84;345;48;389;54
ID;5;Text;PenNames
PSDV;50;176;389;192;0;0;15;0;1;0;1;0
TXT;pen 1 / pen 2;1;0
ITXN;2;Lib/Trend/Axis:Title;1;left;Lib/Trend/Pen1:Name;2;right;Lib/Trend/Pen2:Name
ITX1;Lib/Trend/Axis:Begin;Lib/Trend/Axis:End;System:Clock
ID;6;Icon;Freeze
PSDV;370;2;385;17;0;0;15;0;0;0;1;0
DIV;0;live;lamp_green.bmp
DIV;1;frozen;lamp_blue.bmp
