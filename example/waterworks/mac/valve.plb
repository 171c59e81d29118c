Waterworks shape library
SHAPE;valve.plb;motor valve, bow tie with actuator
REVISION;3;2023-05-17;A. Lindqvist

ID;1;Rect;Frame
LIB;valve.plb;3;Lib/Valve;Lib/Valve
PSDV;0;0;47;47;0;1;15;8;1;0;1;0
IVG;Lib/Valve/State:Shown
ID;2;Poly;BowTie
PSDV;2;18;45;42;2;0;10;0;1;0;1;0
PNT;5;1;2;18;45;42;45;18;2;42;2;18
ITC;Lib/Valve/State:Colour
IVGN;3;Lib/Valve/State:Position;closed;between;open
ID;3;Line;Stem
PSDV;23;14;24;30;1;0;0;0;2;0;1;0
PNT;2;0;24;14;24;30
ID;4;Rect;Actuator
PSDV;14;2;33;14;2;0;7;0;1;0;1;0
ISB;Lib/Valve/Command:Panel;popup;640;420
IIK2;Lib/Valve/Command:Open;Lib/Valve/Command:Close
ID;5;Icon;Interlock
PSDV;36;0;47;11;0;0;15;0;0;0;1;0
DIV;0;free;valve_free.bmp
DIV;1;locked;valve_locked.bmp
ID;6;Text;Label
PSDV;0;50;63;64;0;0;15;0;1;0;1;0
TXT;Valve;1;0
ITA;Lib/Valve/Name:Text
