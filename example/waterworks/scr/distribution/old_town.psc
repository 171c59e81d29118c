SCREEN;old_town;Distribution - pumping station Old Town
SIZE;1280;800;grid;2
DRAWN;2013-09-19;A. Lindqvist
NOTE;oldest screen of the plant, partly drawn from a library that is gone

ID;1;Rect;TitleBar
PSDV;0;0;1279;47;2;1;1;0;1;0;0;0
ID;2;Text;Title
PSDV;20;12;488;34;0;1;15;15;1;0;0;0
TXT;Distribution - pumping station Old Town;3;15
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
ID;12;Rect;ButtonNetwork
PSDV;700;756;850;788;2;1;7;0;1;0;0;0
JMP;distribution/network_map.psc
ID;13;Text;CaptionNetwork
PSDV;710;764;766;778;0;1;15;0;1;0;0;0
TXT;Network;2;0

ID;14;Rect;StationWall
PSDV;120;160;1160;640;2;1;7;8;2;0;0;0
ID;15;Poly;StationRoof
PSDV;100;80;1180;160;2;1;4;0;1;0;0;0
PNT;4;1;100;160;640;80;1180;160;100;160
ID;16;Line;TownMainIn
PSDV;20;440;260;440;1;1;1;1;4;0;0;0
PNT;2;0;20;440;260;440
ID;17;Line;MainToPump
PSDV;340;440;500;440;1;1;1;1;4;0;0;0
PNT;2;0;340;440;500;440
ID;18;Line;PumpToBend
PSDV;580;440;760;440;1;1;1;1;4;0;0;0
PNT;2;0;580;440;760;440
ID;19;Line;BendUp
PSDV;798;280;1260;400;1;1;1;1;4;0;0;0
PNT;3;0;798;400;798;280;1260;280

ID;20;Rect;FT601_VenturiTube
LIB;venturi.plb;1;OldTown/FT601;Obj/FT601_VenturiTube
PSDV;260;420;339;459;0;1;15;8;1;0;1;0
ID;21;Poly;FT601_Throat
PSDV;260;424;339;456;2;0;7;0;1;0;1;0
PNT;9;1;260;424;290;436;310;436;339;424;339;456;310;444;290;444;260;456;260;424
ITC;OldTown/FT601/Value:Colour
ID;22;Text;FT601_Label
PSDV;260;462;355;476;0;0;15;0;1;0;1;0
TXT;FT601;1;0

ID;23;Rect;P601_BoosterPump
LIB;pump.plb;1;OldTown/P601;Obj/P601_BoosterPump
PSDV;500;410;579;469;2;1;15;8;1;0;2;0
IVG;OldTown/P601/State:Shown
IBG;OldTown/P601/State:FrameColour
ID;24;Poly;P601_Casing
PSDV;512;414;555;457;2;0;7;0;2;0;2;0
PNT;9;1;524;414;543;414;555;426;555;445;543;457;524;457;512;445;512;426;524;414
IBG;OldTown/P601/State:CasingColour
ISB;OldTown/P601/Command:Panel;popup;640;400
ID;25;Poly;P601_Impeller
PSDV;521;420;554;451;2;0;8;0;1;0;2;0
PNT;4;1;521;420;554;435;521;451;521;420
ID;26;Rect;P601_Base
PSDV;508;458;559;464;2;0;8;0;1;0;2;0
ID;27;Text;P601_Label
PSDV;500;472;579;486;0;0;15;0;1;0;2;0
TXT;P601;2;0
ITA;OldTown/P601/Name:Text
IIK1;OldTown/P601/Command:Start
IDMS;System:Messages;pump

ID;28;Line;B601_PipeBend
LIB;fittings.cat.plb;1;OldTown/B601;Obj/B601_PipeBend
PSDV;760;400;799;439;1;1;0;0;3;0;3;0
PNT;3;0;760;400;799;400;799;439

ID;29;Rect;V601_HandValve
LIB;valve.plb;1;;Obj/V601_HandValve
PSDV;900;256;947;303;0;1;15;8;1;0;4;0
IVG;Valve/State:Shown
ID;30;Poly;V601_BowTie
PSDV;902;274;945;298;2;0;10;0;1;0;4;0
PNT;5;1;902;274;945;298;945;274;902;298;902;274
ITC;Valve/State:Colour
IVGN;3;Valve/State:Position;closed;between;open
ID;31;Line;V601_Stem
PSDV;923;270;924;286;1;0;0;0;2;0;4;0
PNT;2;0;924;270;924;286
ID;32;Rect;V601_Actuator
PSDV;914;258;933;270;2;0;7;0;1;0;4;0
ISB;Valve/Command:Panel;popup;640;420
IIK2;Valve/Command:Open;Valve/Command:Close
ID;33;Text;V601_Label
PSDV;900;306;963;320;0;0;15;0;1;0;4;0
TXT;V601;1;0
ITA;Valve/Name:Text

ID;34;Rect;V602_OutletValve
LIB;valve.plb;2;OldTown/V602;Obj/V602_OutletValve
PSDV;1040;256;1087;303;0;1;15;8;1;0;5;0
IVG;OldTown/V602/State:Shown
ID;35;Poly;V602_BowTie
PSDV;1042;274;1085;298;2;0;10;0;1;0;5;0
PNT;5;1;1042;274;1085;298;1085;274;1042;298;1042;274
ITC;OldTown/V602/State:Colour
IVGN;3;OldTown/V602/State:Position;closed;between;open
ID;36;Line;V602_Stem
PSDV;1063;270;1064;286;1;0;0;0;2;0;5;0
PNT;2;0;1064;270;1064;286
ID;37;Rect;V602_Actuator
PSDV;1054;258;1073;270;2;0;7;0;1;0;5;0
ISB;OldTown/V602/Command:Panel;popup;640;420
IIK2;OldTown/V602/Command:Open;OldTown/V602/Command:Close
ID;38;Text;V602_Label
PSDV;1040;306;1103;320;0;0;15;0;1;0;5;0
TXT;V602;1;0
ITA;OldTown/V602/Name:Text

ID;39;Text;StationName
PSDV;560;600;640;614;0;1;15;0;1;0;0;0
TXT;Built 1928;2;0
