SCREEN;network_map;Distribution - street mains
SIZE;1280;800;grid;2
DRAWN;2020-10-12;J. Órla
NOTE;symbols were detached from the library, their level is 0

ID;1;Rect;TitleBar
PSDV;0;0;1279;47;2;1;1;0;1;0;0;0
ID;2;Text;Title
PSDV;20;12;344;34;0;1;15;15;1;0;0;0
TXT;Distribution - street mains;3;15
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
ID;12;Rect;ButtonOldTown
PSDV;700;756;850;788;2;1;7;0;1;0;0;0
JMP;distribution/old_town.psc
ID;13;Text;CaptionOldTown
PSDV;710;764;774;778;0;1;15;0;1;0;0;0
TXT;Old Town;2;0
ID;14;Rect;ButtonTrends
PSDV;870;756;1020;788;2;1;7;0;1;0;0;0
JMP;distribution/trends.psc
ID;15;Text;CaptionTrends
PSDV;880;764;928;778;0;1;15;0;1;0;0;0
TXT;Trends;2;0

ID;16;Rect;Park
PSDV;700;420;960;640;2;1;10;2;1;0;0;0
ID;17;Text;ParkName
PSDV;790;520;862;534;0;1;15;0;1;0;0;0
TXT;Mill Park;2;0
ID;18;Poly;MarketBlock
PSDV;320;160;560;320;2;1;7;0;1;0;0;0
PNT;5;1;320;180;520;160;560;300;340;320;320;180
ID;19;Poly;ChurchBlock
PSDV;600;150;820;300;2;1;7;0;1;0;0;0
PNT;5;1;600;150;820;150;820;280;620;300;600;150
ID;20;Poly;HarbourBlock
PSDV;140;360;440;620;2;1;7;0;1;0;0;0
PNT;5;1;140;380;420;360;440;600;160;620;140;380
ID;21;Line;RingMain
PSDV;120;300;1000;690;1;1;1;1;4;0;0;0
PNT;10;0;120;340;320;340;570;320;860;300;1000;380;1000;660;660;690;460;640;120;650;120;340
ID;22;Line;MarketBranch
PSDV;540;120;560;325;1;1;9;9;3;0;0;0
PNT;2;0;540;325;560;120
ID;23;Line;ParkBranch
PSDV;680;400;920;688;1;1;9;9;3;0;0;0
PNT;3;0;680;688;680;410;920;400
ID;24;Line;HarbourBranch
PSDV;450;330;450;640;1;1;9;9;3;0;0;0
PNT;2;0;450;640;450;330
ID;25;Text;RingMainName
PSDV;1010;500;1138;514;0;1;15;0;1;0;0;0
TXT;Ring main DN 300;2;0

ID;26;Rect;V501_MarketValve
LIB;valve.plb;1;Network/V501;Obj/V501_MarketValve
PSDV;520;302;567;349;0;1;15;8;1;0;0;0
IVG;Network/V501/State:Shown
ID;27;Poly;V501_BowTie
PSDV;522;320;565;344;2;0;10;0;1;0;0;0
PNT;5;1;522;320;565;344;565;320;522;344;522;320
ITC;Network/V501/State:Colour
IVGN;3;Network/V501/State:Position;closed;between;open
ID;28;Line;V501_Stem
PSDV;543;316;544;332;1;0;0;0;2;0;0;0
PNT;2;0;544;316;544;332
ID;29;Rect;V501_Actuator
PSDV;534;304;553;316;2;0;7;0;1;0;0;0
ISB;Network/V501/Command:Panel;popup;640;420
IIK2;Network/V501/Command:Open;Network/V501/Command:Close
ID;30;Text;V501_Label
PSDV;520;352;583;366;0;0;15;0;1;0;0;0
TXT;V501;1;0
ITA;Network/V501/Name:Text

ID;31;Rect;V502_ParkValve
LIB;valve.plb;1;Network/V502;Obj/V502_ParkValve
PSDV;656;560;703;607;0;1;15;8;1;0;0;0
IVG;Network/V502/State:Shown
ID;32;Poly;V502_BowTie
PSDV;658;578;701;602;2;0;10;0;1;0;0;0
PNT;5;1;658;578;701;602;701;578;658;602;658;578
ITC;Network/V502/State:Colour
IVGN;3;Network/V502/State:Position;closed;between;open
ID;33;Line;V502_Stem
PSDV;679;574;680;590;1;0;0;0;2;0;0;0
PNT;2;0;680;574;680;590
ID;34;Rect;V502_Actuator
PSDV;670;562;689;574;2;0;7;0;1;0;0;0
ISB;Network/V502/Command:Panel;popup;640;420
IIK2;Network/V502/Command:Open;Network/V502/Command:Close
ID;35;Text;V502_Label
PSDV;656;610;719;624;0;0;15;0;1;0;0;0
TXT;V502;1;0
ITA;Network/V502/Name:Text

ID;36;Rect;V503_HarbourValve
LIB;valve.plb;1;Network/V503;Obj/V503_HarbourValve
PSDV;426;470;473;517;0;1;15;8;1;0;0;0
IVG;Network/V503/State:Shown
ID;37;Poly;V503_BowTie
PSDV;428;488;471;512;2;0;10;0;1;0;0;0
PNT;5;1;428;488;471;512;471;488;428;512;428;488
ITC;Network/V503/State:Colour
IVGN;3;Network/V503/State:Position;closed;between;open
ID;38;Line;V503_Stem
PSDV;449;484;450;500;1;0;0;0;2;0;0;0
PNT;2;0;450;484;450;500
ID;39;Rect;V503_Actuator
PSDV;440;472;459;484;2;0;7;0;1;0;0;0
ISB;Network/V503/Command:Panel;popup;640;420
IIK2;Network/V503/Command:Open;Network/V503/Command:Close
ID;40;Text;V503_Label
PSDV;426;520;489;534;0;0;15;0;1;0;0;0
TXT;V503;1;0
ITA;Network/V503/Name:Text

ID;41;Text;MapScale
PSDV;1080;700;1144;714;0;1;15;0;1;0;0;0
TXT;1 : 5000;2;0
