SCREEN;legend;Legend
SIZE;1280;800;grid;2
DRAWN;2014-02-03;A. Lindqvist
NOTE;colours and line kinds used on all screens

ID;1;Rect;TitleBar
PSDV;0;0;1279;47;2;1;1;0;1;0;0
ID;2;Text;Title
PSDV;20;12;92;34;0;1;15;15;1;0;0
TXT;Legend;3;15
ID;3;Text;ClockText
PSDV;1120;16;1184;30;0;1;15;15;1;0;0
TXT;00:00:00;2;15
ITX1;System:Clock;System:Date;System:User

ID;4;Rect;ButtonOverview
PSDV;20;756;170;788;2;1;7;0;1;0;0
JMP;00_overview.psc
ID;5;Text;CaptionOverview
PSDV;30;764;94;778;0;1;15;0;1;0;0
TXT;Overview;2;0
ID;6;Rect;ButtonIntake
PSDV;190;756;340;788;2;1;7;0;1;0;0
JMP;intake/00_intake.psc
ID;7;Text;CaptionIntake
PSDV;200;764;248;778;0;1;15;0;1;0;0
TXT;Intake;2;0
ID;8;Rect;ButtonTreatment
PSDV;360;756;510;788;2;1;7;0;1;0;0
JMP;treatment/00_treatment.psc
ID;9;Text;CaptionTreatment
PSDV;370;764;442;778;0;1;15;0;1;0;0
TXT;Treatment;2;0
ID;10;Rect;ButtonDistribution
PSDV;530;756;680;788;2;1;7;0;1;0;0
JMP;distribution/00_distribution.psc
ID;11;Text;CaptionDistribution
PSDV;540;764;636;778;0;1;15;0;1;0;0
TXT;Distribution;2;0
ID;12;Rect;ButtonAlarms
PSDV;700;756;850;788;2;1;7;0;1;0;0
JMP;alarms.psc
ID;13;Text;CaptionAlarms
PSDV;710;764;758;778;0;1;15;0;1;0;0
TXT;Alarms;2;0
ID;14;Rect;ButtonLegend
PSDV;870;756;1020;788;2;1;7;0;1;0;0
JMP;legend.psc
ID;15;Text;CaptionLegend
PSDV;880;764;928;778;0;1;15;0;1;0;0
TXT;Legend;2;0

ID;16;Line;Sample1
PSDV;120;140;320;160;1;1;9;9;4;0;0
PNT;3;0;120;160;220;140;320;160
ID;17;Text;Meaning1
PSDV;360;146;432;160;0;1;15;0;1;0;0
TXT;raw water;2;0
ID;18;Line;Sample2
PSDV;120;200;320;220;1;1;1;1;4;0;0
PNT;3;0;120;220;220;200;320;220
ID;19;Text;Meaning2
PSDV;360;206;448;220;0;1;15;0;1;0;0
TXT;clear water;2;0
ID;20;Line;Sample3
PSDV;120;260;320;280;1;1;11;11;4;0;0
PNT;3;0;120;280;220;260;320;280
ID;21;Text;Meaning3
PSDV;360;266;472;280;0;1;15;0;1;0;0
TXT;backwash water;2;0
ID;22;Line;Sample4
PSDV;120;320;320;340;1;1;14;14;4;0;0
PNT;3;0;120;340;220;320;320;340
ID;23;Text;Meaning4
PSDV;360;326;432;340;0;1;15;0;1;0;0
TXT;chemicals;2;0
ID;24;Line;Sample5
PSDV;120;380;320;400;1;1;7;7;4;0;0
PNT;3;0;120;400;220;380;320;400
ID;25;Text;Meaning5
PSDV;360;386;384;400;0;1;15;0;1;0;0
TXT;air;2;0
ID;26;Rect;Colour1
PSDV;640;130;700;165;2;1;10;0;1;0;0
ID;27;Text;ColourMeaning1
PSDV;730;142;826;156;0;1;15;0;1;0;0
TXT;in operation;2;0
ID;28;Rect;Colour2
PSDV;640;190;700;225;2;1;7;0;1;0;0
ID;29;Text;ColourMeaning2
PSDV;730;202;786;216;0;1;15;0;1;0;0
TXT;stopped;2;0
ID;30;Rect;Colour3
PSDV;640;250;700;285;2;1;12;0;1;0;0
ID;31;Text;ColourMeaning3
PSDV;730;262;786;276;0;1;15;0;1;0;0
TXT;tripped;2;0
ID;32;Rect;Colour4
PSDV;640;310;700;345;2;1;14;0;1;0;0
ID;33;Text;ColourMeaning4
PSDV;730;322;778;336;0;1;15;0;1;0;0
TXT;manual;2;0
ID;34;Rect;LegendBorder
PSDV;80;100;1000;460;1;1;15;8;2;0;0
ID;35;Text;Units
PSDV;120;500;392;514;0;1;15;0;1;0;0
TXT;Units: m³/h, mbar, °C, µS/cm, mg/l;2;0
