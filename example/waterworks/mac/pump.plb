Waterworks shape library
SHAPE;pump.plb;centrifugal pump with state lamp and name
REVISION;4;2023-11-06;M. Færber

ID;1;Rect;Frame
LIB;pump.plb;4;Lib/Pump;Lib/Pump
PSDV;10;10;89;69;2;1;15;8;1;0;1;0
IVG;Lib/Pump/State:Shown
IBG;Lib/Pump/State:FrameColour
ID;2;Poly;Casing
PSDV;22;14;65;57;2;0;7;0;2;0;1;0
PNT;9;1;34;14;53;14;65;26;65;45;53;57;34;57;22;45;22;26;34;14
IBG;Lib/Pump/State:CasingColour
ISB;Lib/Pump/Command:Panel;popup;640;400
ID;3;Poly;Impeller
PSDV;31;20;64;51;2;0;8;0;1;0;1;0
PNT;4;1;31;20;64;35;31;51;31;20
ID;4;Rect;Base
PSDV;18;58;69;64;2;0;8;0;1;0;1;0
ID;5;Icon;StateLamp
PSDV;70;14;85;29;0;0;15;0;0;0;1;0
DIV;0;stopped;pump_off.bmp
DIV;1;running;pump_on.bmp
DIV;2;tripped;pump_fault.bmp
IBW;0;3;16;16;0;0;Lib/Pump/State:Run
ID;6;Icon;ModeLamp
PSDV;70;34;85;49;0;0;15;0;0;0;1;0
DIV;0;manual;hand.bmp
DIV;1;automatic;auto.bmp
IBW;0;2;16;16;0;0;Lib/Pump/Mode:Auto
ID;7;Text;Label
PSDV;10;72;89;86;0;0;15;0;1;0;1;0
TXT;Pump;2;0
ITA;Lib/Pump/Name:Text
IIK1;Lib/Pump/Command:Start
IDMS;System:Messages;pump
