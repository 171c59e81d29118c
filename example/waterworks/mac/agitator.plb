Waterworks shape library
SHAPE;agitator.plb;slow paddle agitator
REVISION;2;2024-02-29;J. Órla
NOTE;not usable as it stands: the PSDV lines lack their last field, the export stopped half-way

ID;1;Rect;Frame
LIB;agitator.plb;2;Lib/Agitator;Lib/Agitator
PSDV;0;0;59;119;0;1;15;8;1;0;1
IVG;Lib/Agitator/State:Shown
ID;2;Line;Shaft
PSDV;29;10;30;110;1;0;0;0;3;0;1
PNT;2;0;30;10;30;110
ID;3;Poly;Paddle
PSDV;8;84;52;110;2;0;8;0;1;0;1
PNT;5;1;8;84;52;110;52;84;8;110;8;84
