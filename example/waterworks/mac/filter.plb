Waterworks shape library
SHAPE;filter.plb;open rapid filter: water, sand, gravel, floor
REVISION;2;2022-09-30;J. Órla

ID;1;Rect;Basin
LIB;filter.plb;2;Lib/Filter;Lib/Filter
PSDV;100;50;199;189;2;1;15;0;2;0;1;0;basin;operator
IVG;Lib/Filter/State:Shown
DIV;0;hatch;concrete.bmp
ID;2;Rect;Water
PSDV;103;80;196;119;2;0;11;3;1;0;1;0
IBGN;4;Lib/Filter/State:WaterColour;clear;cloudy;dirty;empty
ID;3;Rect;Sand
PSDV;103;120;196;159;2;0;14;6;1;0;1;0
ITC;Lib/Filter/State:SandColour
ID;4;Line;Gravel
PSDV;103;160;196;176;1;0;8;8;2;0;1;0
PNT;9;0;103;176;115;162;127;176;139;162;151;176;163;162;175;176;187;162;196;174
ID;5;Rect;Floor
PSDV;103;178;196;186;2;0;8;0;1;0;1;0
ID;6;Icon;Phase
PSDV;180;54;195;69;0;0;15;0;0;0;1;0
DIV;0;filtering;lamp_green.bmp
DIV;1;washing;lamp_blue.bmp
DIV;2;standby;lamp_grey.bmp
ITCN;3;Lib/Filter/State:Phase;filtering;washing;standby
ID;7;Text;HeadLoss
PSDV;106;94;193;110;0;0;15;0;1;0;1;0
TXT;## mbar ### h;1;0
ITX2;Lib/Filter/HeadLoss:Value;Lib/Filter/HeadLoss:Unit;Lib/Filter/HeadLoss:Limit;Lib/Filter/Run:Hours;System:HourUnit;Lib/Filter/Run:Limit
ID;8;Text;Label
PSDV;100;192;199;208;0;0;15;0;1;0;1;0
TXT;Filter;2;0
ITA;Lib/Filter/Name:Text
