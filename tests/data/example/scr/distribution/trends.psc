SCREEN;trends;Distribution - trends
SIZE;1280;800;grid;2
DRAWN;2021-03-30;M. Færber
NOTE;saved on an office computer

ID;1;Rect;TitleBar
PSDV;0;0;1279;47;2;1;1;0;1;0;0;0
ID;2;Text;Title
PSDV;20;12;272;34;0;1;15;15;1;0;0;0
TXT;Distribution - trends;3;15
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

ID;14;Rect;PaperLeft
PSDV;30;80;450;360;2;1;7;0;1;0;0;0
ID;15;Rect;PaperRight
PSDV;490;80;910;360;2;1;7;0;1;0;0;0
ID;16;Rect;PaperBelow
PSDV;30;400;910;720;2;1;7;0;1;0;0;0
ID;17;Text;TitleLeft
PSDV;50;90;234;104;0;1;15;0;1;0;0;0
TXT;Level T401 / level T402;2;0
ID;18;Text;TitleRight
PSDV;510;90;718;104;0;1;15;0;1;0;0;0
TXT;Town flow / mains pressure;2;0
ID;19;Text;TitleBelow
PSDV;50;410;282;424;0;1;15;0;1;0;0;0
TXT;Night demand of the last week;2;0

ID;1;Rect;Frame
LIB;trendbox.plb;3;Supply/Trend1;Lib/Trend
PSDV;40;120;439;319;2;1;15;8;1;0;1;0
ISA;Supply/Trend1/Pen1:Value;Supply/Trend1/Pen2:Value;60;Supply/Trend1/Pen1:Min;1;Supply/Trend1/Pen1:Max;1;Supply/Trend1/Pen2:Min;1;linear;5;0;0;Supply/Trend1/Pen2:Max;15;7;1;0;0;Supply/Trend1/Axis:Span;hh:mm;0;0;10;10;8;0;0;Supply/Trend1/Axis:Start
ID;2;Line;Grid
PSDV;80;140;429;290;1;0;7;7;1;0;1;0
PNT;12;0;80;140;429;140;429;190;80;190;80;240;429;240;429;290;190;290;190;140;310;140;310;290;80;290
ID;3;Line;Axes
PSDV;80;130;429;290;1;0;0;0;2;0;1;0
PNT;3;0;80;130;80;290;429;290
IX1;Supply/Trend1/Axis:Cursor;0;Supply/Trend1/Axis:Span;80;429
ID;4;Line;SampleCurve
PSDV;80;160;429;260;1;0;1;1;2;0;1;0
PNT;9;0;80;240;120;230;160;248;205;190;250;180;295;212;340;204;385;168;429;174
ID;5;Text;PenNames
PSDV;90;296;429;312;0;0;15;0;1;0;1;0
TXT;pen 1 / pen 2;1;0
ITXN;2;Supply/Trend1/Axis:Title;1;left;Supply/Trend1/Pen1:Name;2;right;Supply/Trend1/Pen2:Name
ITX1;Supply/Trend1/Axis:Begin;Supply/Trend1/Axis:End;System:Clock
ID;6;Icon;Freeze
PSDV;410;122;425;137;0;0;15;0;0;0;1;0
DIV;0;live;lamp_green.bmp
DIV;1;frozen;lamp_blue.bmp
ID;1;Rect;Frame
LIB;trendbox.plb;3;Supply/Trend2;Lib/Trend
PSDV;500;120;899;319;2;1;15;8;1;0;2;0
ISA;Supply/Trend2/Pen1:Value;Supply/Trend2/Pen2:Value;60;Supply/Trend2/Pen1:Min;1;Supply/Trend2/Pen1:Max;1;Supply/Trend2/Pen2:Min;1;linear;5;0;0;Supply/Trend2/Pen2:Max;15;7;1;0;0;Supply/Trend2/Axis:Span;hh:mm;0;0;10;10;8;0;0;Supply/Trend2/Axis:Start
ID;2;Line;Grid
PSDV;540;140;889;290;1;0;7;7;1;0;2;0
PNT;12;0;540;140;889;140;889;190;540;190;540;240;889;240;889;290;650;290;650;140;770;140;770;290;540;290
ID;3;Line;Axes
PSDV;540;130;889;290;1;0;0;0;2;0;2;0
PNT;3;0;540;130;540;290;889;290
IX1;Supply/Trend2/Axis:Cursor;0;Supply/Trend2/Axis:Span;540;889
ID;4;Line;SampleCurve
PSDV;540;160;889;260;1;0;1;1;2;0;2;0
PNT;9;0;540;240;580;230;620;248;665;190;710;180;755;212;800;204;845;168;889;174
ID;5;Text;PenNames
PSDV;550;296;889;312;0;0;15;0;1;0;2;0
TXT;pen 1 / pen 2;1;0
ITXN;2;Supply/Trend2/Axis:Title;1;left;Supply/Trend2/Pen1:Name;2;right;Supply/Trend2/Pen2:Name
ITX1;Supply/Trend2/Axis:Begin;Supply/Trend2/Axis:End;System:Clock
ID;6;Icon;Freeze
PSDV;870;122;885;137;0;0;15;0;0;0;2;0
DIV;0;live;lamp_green.bmp
DIV;1;frozen;lamp_blue.bmp
ID;30;Line;NightAxes
PSDV;60;450;890;690;1;1;0;0;2;0;0;0
PNT;3;0;60;450;60;690;890;690
ID;31;Rect;Night1
PSDV;100;570;160;688;2;1;9;1;1;0;0;0
ID;32;Rect;Night2
PSDV;210;600;270;688;2;1;9;1;1;0;0;0
ID;33;Rect;Night3
PSDV;320;540;380;688;2;1;9;1;1;0;0;0
ID;34;Rect;Night4
PSDV;430;610;490;688;2;1;9;1;1;0;0;0
ID;35;Rect;Night5
PSDV;540;580;600;688;2;1;9;1;1;0;0;0
ID;36;Rect;Night6
PSDV;650;520;710;688;2;1;9;1;1;0;0;0
ID;37;Rect;Night7
PSDV;760;550;820;688;2;1;9;1;1;0;0;0
ID;38;Text;NightUnit
PSDV;66;450;98;464;0;1;15;0;1;0;0;0
TXT;m³/h;2;0
