SCREEN;00_intake;Intake - raw water pumps
SIZE;1280;800;grid;2
DRAWN;2019-04-02;M. Færber
NOTE;operator texts follow the drawing data of each pump

ID;1;Rect;TitleBar
PSDV;0;0;1279;47;2;1;1;0;1;0;0;0
ID;2;Text;Title
PSDV;20;12;308;34;0;1;15;15;1;0;0;0
TXT;Intake - raw water pumps;3;15
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
ID;8;Rect;ButtonTreatment
PSDV;360;756;510;788;2;1;7;0;1;0;0;0
JMP;treatment/00_treatment.psc
ID;9;Text;CaptionTreatment
PSDV;370;764;442;778;0;1;15;0;1;0;0;0
TXT;Treatment;2;0
ID;10;Rect;ButtonDistribution
PSDV;530;756;680;788;2;1;7;0;1;0;0;0
JMP;distribution/00_distribution.psc
ID;11;Text;CaptionDistribution
PSDV;540;764;636;778;0;1;15;0;1;0;0;0
TXT;Distribution;2;0
ID;12;Rect;ButtonPumpHouse
PSDV;700;756;850;788;2;1;7;0;1;0;0;0
JMP;intake/pumphouse/00_pumphouse.psc
ID;13;Text;CaptionPumpHouse
PSDV;710;764;790;778;0;1;15;0;1;0;0;0
TXT;Pump house;2;0
ID;14;Rect;ButtonRiver
PSDV;870;756;1020;788;2;1;7;0;1;0;0;0
JMP;intake/river_gauge.psc
ID;15;Text;CaptionRiver
PSDV;880;764;920;778;0;1;15;0;1;0;0;0
TXT;River;2;0

ID;16;Poly;RiverBed
PSDV;0;280;180;640;2;1;9;1;1;0;0;0
PNT;5;1;0;300;140;280;180;620;0;640;0;300
ID;17;Line;ReedBank
PSDV;150;262;174;300;1;1;2;2;2;0;0;0
PNT;5;0;150;300;156;270;162;300;168;262;174;300
ID;18;Rect;ScreenChamber
PSDV;180;330;270;600;2;1;7;8;2;0;0;0
ID;19;Line;RakeBar1
PSDV;196;340;196;590;1;1;8;8;2;0;0;0
PNT;2;0;196;340;196;590
ID;20;Line;RakeBar2
PSDV;210;340;210;590;1;1;8;8;2;0;0;0
PNT;2;0;210;340;210;590
ID;21;Line;RakeBar3
PSDV;224;340;224;590;1;1;8;8;2;0;0;0
PNT;2;0;224;340;224;590
ID;22;Line;RakeBar4
PSDV;238;340;238;590;1;1;8;8;2;0;0;0
PNT;2;0;238;340;238;590
ID;23;Line;RakeBar5
PSDV;252;340;252;590;1;1;8;8;2;0;0;0
PNT;2;0;252;340;252;590
ID;24;Text;ChamberName
PSDV;182;606;254;620;0;1;15;0;1;0;0;0
TXT;Fine rake;2;0
ID;25;Line;SuctionHeader
PSDV;270;200;420;460;1;1;9;9;4;0;0;0
PNT;4;0;270;460;320;460;320;200;420;200
ID;26;Line;SuctionP102
PSDV;320;340;420;340;1;1;9;9;4;0;0;0
PNT;2;0;320;340;420;340
ID;27;Line;SuctionP103
PSDV;320;480;420;480;1;1;9;9;4;0;0;0
PNT;2;0;320;480;420;480
ID;28;Line;SuctionLink
PSDV;320;460;320;480;1;1;9;9;4;0;0;0
PNT;2;0;320;460;320;480
ID;29;Line;DischargeP101
PSDV;500;200;800;200;1;1;9;9;4;0;0;0
PNT;2;0;500;200;800;200
ID;30;Line;DischargeP102
PSDV;500;340;800;340;1;1;9;9;4;0;0;0
PNT;2;0;500;340;800;340
ID;31;Line;DischargeP103
PSDV;500;480;800;480;1;1;9;9;4;0;0;0
PNT;2;0;500;480;800;480
ID;32;Line;RawWaterHeader
PSDV;800;200;800;480;1;1;9;9;4;0;0;0
PNT;2;0;800;200;800;480
ID;33;Line;RawWaterMain
PSDV;800;340;1240;340;1;1;9;9;4;0;0;0
PNT;2;0;800;340;1240;340
ID;34;Text;ToTreatment
PSDV;1130;310;1226;324;0;1;15;0;1;0;0;0
TXT;to treatment;2;0

ID;1;Rect;Frame
LIB;pump.plb;4;Intake/P101;Lib/Pump
PSDV;420;170;499;229;2;1;15;8;1;0;1;0;Rohwasserpumpe 1;operator
IVG;Intake/P101/State:Shown
IBG;Intake/P101/State:FrameColour
ID;2;Poly;Casing
PSDV;432;174;475;217;2;0;7;0;2;0;1;0;Rohwasserpumpe 1;operator
PNT;9;1;444;174;463;174;475;186;475;205;463;217;444;217;432;205;432;186;444;174
IBG;Intake/P101/State:CasingColour
ISB;Intake/P101/Command:Panel;popup;640;400
ID;3;Poly;Impeller
PSDV;441;180;474;211;2;0;8;0;1;0;1;0;Rohwasserpumpe 1;operator
PNT;4;1;441;180;474;195;441;211;441;180
ID;4;Rect;Base
PSDV;428;218;479;224;2;0;8;0;1;0;1;0;Rohwasserpumpe 1;operator
ID;5;Icon;StateLamp
PSDV;480;174;495;189;0;0;15;0;0;0;1;0;Rohwasserpumpe 1;operator
DIV;0;stopped;pump_off.bmp
DIV;1;running;pump_on.bmp
DIV;2;tripped;pump_fault.bmp
IBW;0;3;16;16;0;0;Intake/P101/State:Run
ID;6;Icon;ModeLamp
PSDV;480;194;495;209;0;0;15;0;0;0;1;0;Rohwasserpumpe 1;operator
DIV;0;manual;hand.bmp
DIV;1;automatic;auto.bmp
IBW;0;2;16;16;0;0;Intake/P101/Mode:Auto
ID;7;Text;Label
PSDV;420;232;499;246;0;0;15;0;1;0;1;0;Rohwasserpumpe 1;operator
TXT;Pump;2;0
ITA;Intake/P101/Name:Text
IIK1;Intake/P101/Command:Start
IDMS;System:Messages;pump
ID;1;Rect;Frame
LIB;pump.plb;4;Intake/P102;Lib/Pump
PSDV;420;310;499;369;2;1;15;8;1;0;2;0;Rohwasserpumpe 2;operator;spare part 4711
IVG;Intake/P102/State:Shown
IBG;Intake/P102/State:FrameColour
ID;2;Poly;Casing
PSDV;432;314;475;357;2;0;7;0;2;0;2;0;Rohwasserpumpe 2;operator;spare part 4711
PNT;9;1;444;314;463;314;475;326;475;345;463;357;444;357;432;345;432;326;444;314
IBG;Intake/P102/State:CasingColour
ISB;Intake/P102/Command:Panel;popup;640;400
ID;3;Poly;Impeller
PSDV;441;320;474;351;2;0;8;0;1;0;2;0;Rohwasserpumpe 2;operator;spare part 4711
PNT;4;1;441;320;474;335;441;351;441;320
ID;4;Rect;Base
PSDV;428;358;479;364;2;0;8;0;1;0;2;0;Rohwasserpumpe 2;operator;spare part 4711
ID;5;Icon;StateLamp
PSDV;480;314;495;329;0;0;15;0;0;0;2;0;Rohwasserpumpe 2;operator;spare part 4711
DIV;0;stopped;pump_off.bmp
DIV;1;running;pump_on.bmp
DIV;2;tripped;pump_fault.bmp
IBW;0;3;16;16;0;0;Intake/P102/State:Run
ID;6;Icon;ModeLamp
PSDV;480;334;495;349;0;0;15;0;0;0;2;0;Rohwasserpumpe 2;operator;spare part 4711
DIV;0;manual;hand.bmp
DIV;1;automatic;auto.bmp
IBW;0;2;16;16;0;0;Intake/P102/Mode:Auto
ID;7;Text;Label
PSDV;420;372;499;386;0;0;15;0;1;0;2;0;Rohwasserpumpe 2;operator;spare part 4711
TXT;Pump;2;0
ITA;Intake/P102/Name:Text
IIK1;Intake/P102/Command:Start
IDMS;System:Messages;pump
ID;1;Rect;Frame
LIB;pump.plb;4;Intake/P103;Lib/Pump
PSDV;420;450;499;509;2;1;15;8;1;0;3;0;Rohwasserpumpe 3
IVG;Intake/P103/State:Shown
IBG;Intake/P103/State:FrameColour
ID;2;Poly;Casing
PSDV;432;454;475;497;2;0;7;0;2;0;3;0;Rohwasserpumpe 3
PNT;9;1;444;454;463;454;475;466;475;485;463;497;444;497;432;485;432;466;444;454
IBG;Intake/P103/State:CasingColour
ISB;Intake/P103/Command:Panel;popup;640;400
ID;3;Poly;Impeller
PSDV;441;460;474;491;2;0;8;0;1;0;3;0;Rohwasserpumpe 3
PNT;4;1;441;460;474;475;441;491;441;460
ID;4;Rect;Base
PSDV;428;498;479;504;2;0;8;0;1;0;3;0;Rohwasserpumpe 3
ID;5;Icon;StateLamp
PSDV;480;454;495;469;0;0;15;0;0;0;3;0;Rohwasserpumpe 3
DIV;0;stopped;pump_off.bmp
DIV;1;running;pump_on.bmp
DIV;2;tripped;pump_fault.bmp
IBW;0;3;16;16;0;0;Intake/P103/State:Run
ID;6;Icon;ModeLamp
PSDV;480;474;495;489;0;0;15;0;0;0;3;0;Rohwasserpumpe 3
DIV;0;manual;hand.bmp
DIV;1;automatic;auto.bmp
IBW;0;2;16;16;0;0;Intake/P103/Mode:Auto
ID;7;Text;Label
PSDV;420;512;499;526;0;0;15;0;1;0;3;0;Rohwasserpumpe 3
TXT;Pump;2;0
ITA;Intake/P103/Name:Text
IIK1;Intake/P103/Command:Start
IDMS;System:Messages;pump
ID;1;Rect;Frame
LIB;valve.plb;3;Intake/V101;Lib/Valve
PSDV;640;170;687;217;0;1;15;8;1;0;4;0
IVG;Intake/V101/State:Shown
ID;2;Poly;BowTie
PSDV;642;188;685;212;2;0;10;0;1;0;4;0
PNT;5;1;642;188;685;212;685;188;642;212;642;188
ITC;Intake/V101/State:Colour
IVGN;3;Intake/V101/State:Position;closed;between;open
ID;3;Line;Stem
PSDV;663;184;664;200;1;0;0;0;2;0;4;0
PNT;2;0;664;184;664;200
ID;4;Rect;Actuator
PSDV;654;172;673;184;2;0;7;0;1;0;4;0
ISB;Intake/V101/Command:Panel;popup;640;420
IIK2;Intake/V101/Command:Open;Intake/V101/Command:Close
ID;5;Icon;Interlock
PSDV;676;170;687;181;0;0;15;0;0;0;4;0
DIV;0;free;valve_free.bmp
DIV;1;locked;valve_locked.bmp
ID;6;Text;Label
PSDV;640;220;703;234;0;0;15;0;1;0;4;0
TXT;Valve;1;0
ITA;Intake/V101/Name:Text
ID;1;Rect;Frame
LIB;valve.plb;3;Intake/V102;Lib/Valve
PSDV;640;310;687;357;0;1;15;8;1;0;5;0
IVG;Intake/V102/State:Shown
ID;2;Poly;BowTie
PSDV;642;328;685;352;2;0;10;0;1;0;5;0
PNT;5;1;642;328;685;352;685;328;642;352;642;328
ITC;Intake/V102/State:Colour
IVGN;3;Intake/V102/State:Position;closed;between;open
ID;3;Line;Stem
PSDV;663;324;664;340;1;0;0;0;2;0;5;0
PNT;2;0;664;324;664;340
ID;4;Rect;Actuator
PSDV;654;312;673;324;2;0;7;0;1;0;5;0
ISB;Intake/V102/Command:Panel;popup;640;420
IIK2;Intake/V102/Command:Open;Intake/V102/Command:Close
ID;5;Icon;Interlock
PSDV;676;310;687;321;0;0;15;0;0;0;5;0
DIV;0;free;valve_free.bmp
DIV;1;locked;valve_locked.bmp
ID;6;Text;Label
PSDV;640;360;703;374;0;0;15;0;1;0;5;0
TXT;Valve;1;0
ITA;Intake/V102/Name:Text
ID;1;Rect;Frame
LIB;valve.plb;3;Intake/V103;Lib/Valve
PSDV;640;450;687;497;0;1;15;8;1;0;6;0;Schieber Süd
IVG;Intake/V103/State:Shown
ID;2;Poly;BowTie
PSDV;642;468;685;492;2;0;10;0;1;0;6;0;Schieber Süd
PNT;5;1;642;468;685;492;685;468;642;492;642;468
ITC;Intake/V103/State:Colour
IVGN;3;Intake/V103/State:Position;closed;between;open
ID;3;Line;Stem
PSDV;663;464;664;480;1;0;0;0;2;0;6;0;Schieber Süd
PNT;2;0;664;464;664;480
ID;4;Rect;Actuator
PSDV;654;452;673;464;2;0;7;0;1;0;6;0;Schieber Süd
ISB;Intake/V103/Command:Panel;popup;640;420
IIK2;Intake/V103/Command:Open;Intake/V103/Command:Close
ID;5;Icon;Interlock
PSDV;676;450;687;461;0;0;15;0;0;0;6;0;Schieber Süd
DIV;0;free;valve_free.bmp
DIV;1;locked;valve_locked.bmp
ID;6;Text;Label
PSDV;640;500;703;514;0;0;15;0;1;0;6;0;Schieber Süd
TXT;Valve;1;0
ITA;Intake/V103/Name:Text
ID;1;Rect;Frame
LIB;flowmeter.plb;3;Intake/FT101;Lib/Flow
PSDV;940;320;1003;363;0;1;15;8;1;0;7;0
IVG;Intake/FT101/State:Shown
ID;2;Poly;Body
PSDV;954;320;989;355;2;0;15;0;2;0;7;0
PNT;9;1;964;320;979;320;989;330;989;345;979;355;964;355;954;345;954;330;964;320
ISB;Intake/FT101/Command:Panel;popup;300;200
ID;3;Line;Arrow
PSDV;959;331;985;345;1;0;1;1;2;0;7;0
PNT;5;0;959;338;985;338;978;331;985;338;978;345
ID;4;Icon;Quality
PSDV;990;320;1003;333;0;0;15;0;0;0;7;0
DIV;0;good;lamp_green.bmp
DIV;1;uncertain;lamp_yellow.bmp
IBW;0;2;14;14;0;0;Intake/FT101/Value:Quality
ID;5;Text;Reading
PSDV;940;366;1019;380;0;0;15;0;1;0;7;0
TXT;#### m³/h;1;0
ITX1;Intake/FT101/Value:Reading;Intake/FT101/Value:Unit;System:DecimalPoint
IDMS;Intake/FT101/Value:Alarm
ID;6;Text;Label
PSDV;940;382;1019;396;0;0;15;0;1;0;7;0
TXT;Flow;1;0
ITA;Intake/FT101/Name:Text
