SCREEN;00_pumphouse;Pump house - ground plan
SIZE;1280;800;grid;2
DRAWN;2019-04-02;M. Færber
NOTE;labels were drawn last so that they lie above the pipes

ID;1;Rect;TitleBar
PSDV;0;0;1279;47;2;1;1;0;1;0;0;0
ID;2;Text;Title
PSDV;20;12;308;34;0;1;15;15;1;0;0;0
TXT;Pump house - ground plan;3;15
ID;3;Text;ClockText
PSDV;1120;16;1184;30;0;1;15;15;1;0;0;0
TXT;00:00:00;2;15
ITX1;System:Clock;System:Date;System:User

ID;4;Rect;ButtonOverview
PSDV;20;756;170;788;2;1;7;0;1;0;0;0
JMP;00_overview.psc
ID;5;Text;CaptionOverview
PSDV;30;764;94;778;0;1;15;0;1;0;0;0
TXT;Overview;2;0
ID;6;Rect;ButtonIntake
PSDV;190;756;340;788;2;1;7;0;1;0;0;0
JMP;intake/00_intake.psc
ID;7;Text;CaptionIntake
PSDV;200;764;248;778;0;1;15;0;1;0;0;0
TXT;Intake;2;0
ID;8;Rect;ButtonPumpP101
PSDV;360;756;510;788;2;1;7;0;1;0;0;0
JMP;intake/pumphouse/p101_detail.psc
ID;9;Text;CaptionPumpP101
PSDV;370;764;442;778;0;1;15;0;1;0;0;0
TXT;Pump P101;2;0
ID;10;Rect;ButtonRiver
PSDV;530;756;680;788;2;1;7;0;1;0;0;0
JMP;intake/river_gauge.psc
ID;11;Text;CaptionRiver
PSDV;540;764;580;778;0;1;15;0;1;0;0;0
TXT;River;2;0

ID;12;Rect;Floor
PSDV;80;120;1180;680;2;1;7;8;3;0;0;0
ID;13;Poly;DoorSwing
PSDV;560;620;640;680;2;1;15;0;1;0;0;0
PNT;4;1;560;680;640;680;620;620;560;680
ID;14;Rect;SwitchRoom
PSDV;880;140;1160;340;2;1;15;8;2;0;0;0
ID;15;Text;SwitchRoomName
PSDV;900;150;988;164;0;1;15;0;1;0;0;0
TXT;Switch room;2;0
ID;16;Rect;Cubicle1
PSDV;900;190;945;300;2;1;8;0;1;0;0;0
ID;17;Rect;Cubicle2
PSDV;960;190;1005;300;2;1;8;0;1;0;0;0
ID;18;Rect;Cubicle3
PSDV;1020;190;1065;300;2;1;8;0;1;0;0;0
ID;19;Rect;Cubicle4
PSDV;1080;190;1125;300;2;1;8;0;1;0;0;0

ID;20;Rect;P101_RawWaterPump
LIB;pump.plb;2;Intake/P101;Obj/P101_RawWaterPump
PSDV;180;380;259;439;2;1;15;8;1;0;1;0
IVG;Intake/P101/State:Shown
IBG;Intake/P101/State:FrameColour
ID;21;Poly;P101_Casing
PSDV;192;384;235;427;2;0;7;0;2;0;1;0
PNT;9;1;204;384;223;384;235;396;235;415;223;427;204;427;192;415;192;396;204;384
IBG;Intake/P101/State:CasingColour
ISB;Intake/P101/Command:Panel;popup;640;400
ID;22;Poly;P101_Impeller
PSDV;201;390;234;421;2;0;8;0;1;0;1;0
PNT;4;1;201;390;234;405;201;421;201;390
ID;23;Rect;P101_Base
PSDV;188;428;239;434;2;0;8;0;1;0;1;0

ID;25;Rect;P102_RawWaterPump
LIB;pump.plb;2;Intake/P102;Obj/P102_RawWaterPump
PSDV;420;380;499;439;2;1;15;8;1;0;2;0
IVG;Intake/P102/State:Shown
IBG;Intake/P102/State:FrameColour
ID;26;Poly;P102_Casing
PSDV;432;384;475;427;2;0;7;0;2;0;2;0
PNT;9;1;444;384;463;384;475;396;475;415;463;427;444;427;432;415;432;396;444;384
IBG;Intake/P102/State:CasingColour
ISB;Intake/P102/Command:Panel;popup;640;400
ID;28;Rect;P102_Base
PSDV;428;428;479;434;2;0;8;0;1;0;2;0

ID;30;Rect;P103_RawWaterPump
LIB;pump.plb;2;Intake/P103;Obj/P103_RawWaterPump
PSDV;660;380;739;439;2;1;15;8;1;0;3;0
IVG;Intake/P103/State:Shown
IBG;Intake/P103/State:FrameColour
ID;31;Poly;P103_Casing
PSDV;672;384;715;427;2;0;7;0;2;0;3;0
PNT;9;1;684;384;703;384;715;396;715;415;703;427;684;427;672;415;672;396;684;384
IBG;Intake/P103/State:CasingColour
ISB;Intake/P103/Command:Panel;popup;640;400
ID;32;Poly;P103_Impeller
PSDV;681;390;714;421;2;0;8;0;1;0;3;0
PNT;4;1;681;390;714;405;681;421;681;390
ID;33;Rect;P103_Base
PSDV;668;428;719;434;2;0;8;0;1;0;3;0

ID;35;Line;PressurePipe1
PSDV;220;240;220;380;1;1;9;9;4;0;0;0
PNT;2;0;220;380;220;240
ID;36;Line;PressurePipe2
PSDV;460;240;460;380;1;1;9;9;4;0;0;0
PNT;2;0;460;380;460;240
ID;37;Line;PressurePipe3
PSDV;700;240;700;380;1;1;9;9;4;0;0;0
PNT;2;0;700;380;700;240
ID;38;Line;HeaderPipe
PSDV;220;240;860;240;1;1;9;9;4;0;0;0
PNT;2;0;220;240;860;240

ID;24;Text;P101_Label
PSDV;180;442;259;456;0;0;15;0;1;0;1;0
TXT;P101;2;0
ITA;Intake/P101/Name:Text
IIK1;Intake/P101/Command:Start
IDMS;System:Messages;pump
ID;27;Poly;P102_Impeller
PSDV;441;390;474;421;2;0;8;0;1;0;2;0
PNT;4;1;441;390;474;405;441;421;441;390
ID;29;Text;P102_Label
PSDV;420;442;499;456;0;0;15;0;1;0;2;0
TXT;P102;2;0
ITA;Intake/P102/Name:Text
IIK1;Intake/P102/Command:Start
IDMS;System:Messages;pump
ID;39;Text;FloorNote
PSDV;120;640;296;654;0;1;15;0;1;0;0;0
TXT;Level ±0.00 = 212.40 m;2;0
ID;34;Text;P103_Label
PSDV;660;442;739;456;0;0;15;0;1;0;3;0
TXT;P103;2;0
ITA;Intake/P103/Name:Text
IIK1;Intake/P103/Command:Start
IDMS;System:Messages;pump
