Waterworks shape library
SHAPE;blower.plb;rotary blower with two lobes
REVISION;2;2023-08-14;J. Órla
NOTE;the picture blower_fault.bmp is still to be drawn

ID;1;Rect;Frame
LIB;blower.plb;2;Lib/Blower;Lib/Blower
PSDV;0;0;99;79;2;1;7;0;2;0;1;0
IBG;Lib/Blower/State:FrameColour
ISB;Lib/Blower/Command:Panel;popup;700;400
ID;2;Poly;UpperLobe
PSDV;20;8;79;38;2;0;15;0;1;0;1;0
PNT;7;1;20;23;32;8;50;18;67;8;79;23;50;38;20;23
ID;3;Poly;LowerLobe
PSDV;20;42;79;72;2;0;15;0;1;0;1;0
PNT;7;1;20;57;50;42;79;57;67;72;50;62;32;72;20;57
IIKN;3;Lib/Blower/Command:Step;low;middle;high
ID;4;Icon;StateLamp
PSDV;82;2;97;17;0;0;15;0;0;0;1;0
DIV;0;stopped;blower_off.bmp
DIV;1;running;blower_on.bmp
DIV;2;tripped;blower_fault.bmp
IBW;0;3;16;16;0;0;Lib/Blower/State:Run
ID;5;Text;Label
PSDV;0;82;99;98;0;0;15;0;1;0;1;0
TXT;Blower;2;0
ITA;Lib/Blower/Name:Text
