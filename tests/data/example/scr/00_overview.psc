SCREEN;00_overview;Waterworks Birkental - Übersicht
SIZE;1280;800;grid;2
DRAWN;2019-04-02;M. Færber
NOTE;first page after log-in

ID;1;Rect;TitleBar
PSDV;0;0;1279;47;2;1;1;0;1;0;0;0
ID;2;Text;Title
PSDV;20;12;404;34;0;1;15;15;1;0;0;0
TXT;Waterworks Birkental - Übersicht;3;15
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
ID;12;Rect;ButtonAlarms
PSDV;700;756;850;788;2;1;7;0;1;0;0;0
JMP;alarms.psc
ID;13;Text;CaptionAlarms
PSDV;710;764;758;778;0;1;15;0;1;0;0;0
TXT;Alarms;2;0
ID;14;Rect;ButtonLegend
PSDV;870;756;1020;788;2;1;7;0;1;0;0;0
JMP;legend.psc
ID;15;Text;CaptionLegend
PSDV;880;764;928;778;0;1;15;0;1;0;0;0
TXT;Legend;2;0

ID;16;Rect;GlanceCard1
PSDV;60;90;320;180;2;1;15;8;1;0;0;0
ID;17;Text;GlanceCaption1
PSDV;80;104;152;118;0;1;15;0;1;0;0;0
TXT;Raw water;2;0
ID;18;Text;GlanceValue1
PSDV;80;136;188;158;0;1;15;1;1;0;0;0
TXT;#### m³/h;3;1
ITX1;Plant/FT101:Value;Plant/FT101:Unit;System:DecimalPoint
ID;19;Rect;GlanceCard2
PSDV;360;90;620;180;2;1;15;8;1;0;0;0
ID;20;Text;GlanceCaption2
PSDV;380;104;468;118;0;1;15;0;1;0;0;0
TXT;To the town;2;0
ID;21;Text;GlanceValue2
PSDV;380;136;488;158;0;1;15;1;1;0;0;0
TXT;#### m³/h;3;1
ITX1;Plant/FT401:Value;Plant/FT401:Unit;System:DecimalPoint
ID;22;Rect;GlanceCard3
PSDV;660;90;920;180;2;1;15;8;1;0;0;0
ID;23;Text;GlanceCaption3
PSDV;680;104;784;118;0;1;15;0;1;0;0;0
TXT;Tank contents;2;0
ID;24;Text;GlanceValue3
PSDV;680;136;764;158;0;1;15;1;1;0;0;0
TXT;#### m³;3;1
ITX1;Plant/T401:Value;Plant/T401:Unit;System:DecimalPoint
ID;25;Rect;GlanceCard4
PSDV;960;90;1220;180;2;1;15;8;1;0;0;0
ID;26;Text;GlanceCaption4
PSDV;980;104;1092;118;0;1;15;0;1;0;0;0
TXT;Mains pressure;2;0
ID;27;Text;GlanceValue4
PSDV;980;136;1064;158;0;1;15;1;1;0;0;0
TXT;#.# bar;3;1
ITX1;Plant/PT401:Value;Plant/PT401:Unit;System:DecimalPoint
ID;28;Line;HillLine
PSDV;0;240;1279;420;1;1;2;2;2;0;0;0
PNT;9;0;0;420;120;330;240;380;420;260;600;330;780;240;1000;310;1160;260;1279;330
ID;29;Poly;River
PSDV;0;500;260;720;2;1;9;1;1;0;0;0
PNT;7;1;0;520;90;500;180;540;260;520;260;720;0;720;0;520
ID;30;Line;RiverWave
PSDV;20;590;200;600;1;1;15;15;2;0;0;0
PNT;7;0;20;600;50;590;80;600;110;590;140;600;170;590;200;600
ID;31;Text;RiverName
PSDV;60;640;148;654;0;1;15;0;1;0;0;0
TXT;River Birka;2;0
ID;32;Rect;IntakeHouse
PSDV;280;440;400;560;2;1;7;0;1;0;0;0
ID;33;Poly;IntakeRoof
PSDV;270;390;410;440;2;1;4;0;1;0;0;0
PNT;4;1;270;440;340;390;410;440;270;440
ID;34;Text;IntakeName
PSDV;300;500;348;514;0;1;15;0;1;0;0;0
TXT;Intake;2;0
ID;35;Rect;TreatmentHall
PSDV;500;400;760;560;2;1;7;0;1;0;0;0
ID;36;Poly;TreatmentRoof
PSDV;490;350;770;400;2;1;4;0;1;0;0;0
PNT;6;1;490;400;560;350;630;400;700;350;770;400;490;400
ID;37;Text;TreatmentName
PSDV;590;480;662;494;0;1;15;0;1;0;0;0
TXT;Treatment;2;0
ID;38;Rect;HallWindow1
PSDV;520;420;555;450;2;1;11;0;1;0;0;0
ID;39;Rect;HallWindow2
PSDV;580;420;615;450;2;1;11;0;1;0;0;0
ID;40;Rect;HallWindow3
PSDV;640;420;675;450;2;1;11;0;1;0;0;0
ID;41;Rect;HallWindow4
PSDV;700;420;735;450;2;1;11;0;1;0;0;0
ID;42;Line;RawWaterMain
PSDV;180;520;500;620;1;1;9;9;4;0;0;0
PNT;6;0;180;620;340;620;340;580;460;580;460;520;500;520
ID;43;Line;CleanWaterMain
PSDV;760;480;870;520;1;1;1;1;4;0;0;0
PNT;4;0;760;520;840;520;840;480;870;480
ID;44;Line;TownMain
PSDV;992;480;1120;560;1;1;1;1;4;0;0;0
PNT;4;0;992;480;1092;480;1092;560;1120;560
ID;45;Poly;TownSilhouette
PSDV;1100;420;1260;640;2;1;8;0;1;0;0;0
PNT;13;1;1100;640;1100;520;1130;490;1160;520;1160;560;1180;560;1180;460;1200;420;1220;460;1220;560;1260;560;1260;640;1100;640
ID;46;Text;TownName
PSDV;1130;650;1194;664;0;1;15;0;1;0;0;0
TXT;Old Town;2;0

ID;1;Rect;Frame
LIB;flowmeter.plb;3;Intake/FT101;Lib/Flow
PSDV;400;560;463;603;0;1;15;8;1;0;1;0
IVG;Intake/FT101/State:Shown
ID;2;Poly;Body
PSDV;414;560;449;595;2;0;15;0;2;0;1;0
PNT;9;1;424;560;439;560;449;570;449;585;439;595;424;595;414;585;414;570;424;560
ISB;Intake/FT101/Command:Panel;popup;300;200
ID;3;Line;Arrow
PSDV;419;571;445;585;1;0;1;1;2;0;1;0
PNT;5;0;419;578;445;578;438;571;445;578;438;585
ID;4;Icon;Quality
PSDV;450;560;463;573;0;0;15;0;0;0;1;0
DIV;0;good;lamp_green.bmp
DIV;1;uncertain;lamp_yellow.bmp
IBW;0;2;14;14;0;0;Intake/FT101/Value:Quality
ID;5;Text;Reading
PSDV;400;606;479;620;0;0;15;0;1;0;1;0
TXT;#### m³/h;1;0
ITX1;Intake/FT101/Value:Reading;Intake/FT101/Value:Unit;System:DecimalPoint
IDMS;Intake/FT101/Value:Alarm
ID;6;Text;Label
PSDV;400;622;479;636;0;0;15;0;1;0;1;0
TXT;Flow;1;0
ITA;Intake/FT101/Name:Text
ID;1;Rect;Wall
LIB;tank.plb;5;Supply/T401;Lib/Tank
PSDV;872;330;991;509;2;1;15;0;2;0;2;0
IBG;Supply/T401/State:Colour
ISB;Supply/T401/Command:Panel;popup;500;300
ID;2;Poly;Roof
PSDV;872;310;991;330;2;0;7;0;2;0;2;0
PNT;5;1;872;330;912;314;951;314;991;330;872;330
ID;3;Rect;Level
PSDV;876;400;987;506;2;0;9;1;1;0;2;0
IY1;Supply/T401/Level:Value;0;Supply/T401/Level:Max;506;334
IDMS;Supply/T401/Level:Alarm
ID;4;Line;HighMark
PSDV;960;354;991;355;1;0;4;4;2;0;2;0
PNT;2;0;960;354;991;354
IY2;Supply/T401/Limit:High;;Supply/T401/Level:Max;506;334
ID;5;Line;Scale
PSDV;872;370;882;470;1;0;0;0;1;0;2;0
PNT;9;0;872;370;882;370;872;370;872;420;882;420;872;420;872;470;882;470;872;470
ID;6;Icon;Overflow
PSDV;970;334;985;349;0;0;15;0;0;0;2;0
DIV;0;normal;lamp_grey.bmp
DIV;1;overflow;lamp_red.bmp
IBW;0;2;16;16;0;0;Supply/T401/Limit:Overflow
ID;7;Text;Contents
PSDV;892;430;971;446;0;0;15;0;1;0;2;0
TXT;#### m³;2;0
ITX1;Supply/T401/Level:Volume;Supply/T401/Level:Unit;System:DecimalPoint
ID;8;Text;Label
PSDV;872;512;991;528;0;1;15;0;1;0;2;0
TXT;Tank;2;0
ITA;Supply/T401/Name:Text
ID;1;Rect;Frame
LIB;flowmeter.plb;3;Supply/FT401;Lib/Flow
PSDV;1004;462;1067;505;0;1;15;8;1;0;3;0
IVG;Supply/FT401/State:Shown
ID;2;Poly;Body
PSDV;1018;462;1053;497;2;0;15;0;2;0;3;0
PNT;9;1;1028;462;1043;462;1053;472;1053;487;1043;497;1028;497;1018;487;1018;472;1028;462
ISB;Supply/FT401/Command:Panel;popup;300;200
ID;3;Line;Arrow
PSDV;1023;473;1049;487;1;0;1;1;2;0;3;0
PNT;5;0;1023;480;1049;480;1042;473;1049;480;1042;487
ID;4;Icon;Quality
PSDV;1054;462;1067;475;0;0;15;0;0;0;3;0
DIV;0;good;lamp_green.bmp
DIV;1;uncertain;lamp_yellow.bmp
IBW;0;2;14;14;0;0;Supply/FT401/Value:Quality
ID;5;Text;Reading
PSDV;1004;508;1083;522;0;0;15;0;1;0;3;0
TXT;#### m³/h;1;0
ITX1;Supply/FT401/Value:Reading;Supply/FT401/Value:Unit;System:DecimalPoint
IDMS;Supply/FT401/Value:Alarm
ID;6;Text;Label
PSDV;1004;524;1083;538;0;0;15;0;1;0;3;0
TXT;Flow;1;0
ITA;Supply/FT401/Name:Text
ID;65;Text;DailyTotalCaption
PSDV;560;620;672;634;0;1;15;0;1;0;0;0
TXT;Produced today;2;0
ID;66;Rect;DailyTotalBox
PSDV;690;614;820;640;1;1;15;0;1;0;0;0
ID;67;Text;DailyTotal
PSDV;700;620;764;634;0;1;15;1;1;0;0;0
TXT;##### m³;2;1
ITX1;Plant/Total:Today;Plant/Total:Unit;System:DecimalPoint
