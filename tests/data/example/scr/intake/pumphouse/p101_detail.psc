ID;1;Rect;TitleBar
PSDV;0;0;1279;47;2;1;1;0;1;0;0;0
ID;2;Text;Title
PSDV;20;12;248;34;0;1;15;15;1;0;0;0
TXT;Pump P101 - details;3;15
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
ID;8;Rect;ButtonPumpHouse
PSDV;360;756;510;788;2;1;7;0;1;0;0;0
JMP;intake/pumphouse/00_pumphouse.psc
ID;9;Text;CaptionPumpHouse
PSDV;370;764;450;778;0;1;15;0;1;0;0;0
TXT;Pump house;2;0

ID;10;Rect;DataCard
PSDV;640;120;1220;700;2;1;15;8;1;0;0;0
ID;11;Text;Caption1
PSDV;670;150;774;164;0;1;15;0;1;0;0;0
TXT;Motor current;2;0
ID;12;Rect;Field1
PSDV;920;144;1080;170;1;1;15;8;1;0;0;0
ID;13;Text;Value1
PSDV;930;150;970;164;0;1;15;1;1;0;0;0
TXT;### A;2;1
ITX1;Intake/P101:Detail1;Intake/P101:Unit1;System:DecimalPoint
ID;14;Text;Caption2
PSDV;670;220;710;234;0;1;15;0;1;0;0;0
TXT;Speed;2;0
ID;15;Rect;Field2
PSDV;920;214;1080;240;1;1;15;8;1;0;0;0
ID;16;Text;Value2
PSDV;930;220;1010;234;0;1;15;1;1;0;0;0
TXT;#### 1/min;2;1
ITX1;Intake/P101:Detail2;Intake/P101:Unit2;System:DecimalPoint
ID;17;Text;Caption3
PSDV;670;290;822;304;0;1;15;0;1;0;0;0
TXT;Bearing, drive side;2;0
ID;18;Rect;Field3
PSDV;920;284;1080;310;1;1;15;8;1;0;0;0
ID;19;Text;Value3
PSDV;930;290;970;304;0;1;15;1;1;0;0;0
TXT;## °C;2;1
ITX1;Intake/P101:Detail3;Intake/P101:Unit3;System:DecimalPoint
ID;20;Text;Caption4
PSDV;670;360;806;374;0;1;15;0;1;0;0;0
TXT;Bearing, far side;2;0
ID;21;Rect;Field4
PSDV;920;354;1080;380;1;1;15;8;1;0;0;0
ID;22;Text;Value4
PSDV;930;360;970;374;0;1;15;1;1;0;0;0
TXT;## °C;2;1
ITX1;Intake/P101:Detail4;Intake/P101:Unit4;System:DecimalPoint
ID;23;Text;Caption5
PSDV;670;430;742;444;0;1;15;0;1;0;0;0
TXT;Vibration;2;0
ID;24;Rect;Field5
PSDV;920;424;1080;450;1;1;15;8;1;0;0;0
ID;25;Text;Value5
PSDV;930;430;994;444;0;1;15;1;1;0;0;0
TXT;#.# mm/s;2;1
ITX1;Intake/P101:Detail5;Intake/P101:Unit5;System:DecimalPoint
ID;26;Text;Caption6
PSDV;670;500;774;514;0;1;15;0;1;0;0;0
TXT;Running hours;2;0
ID;27;Rect;Field6
PSDV;920;494;1080;520;1;1;15;8;1;0;0;0
ID;28;Text;Value6
PSDV;930;500;986;514;0;1;15;1;1;0;0;0
TXT;##### h;2;1
ITX1;Intake/P101:Detail6;Intake/P101:Unit6;System:DecimalPoint
ID;29;Text;Caption7
PSDV;670;570;718;584;0;1;15;0;1;0;0;0
TXT;Starts;2;0
ID;30;Rect;Field7
PSDV;920;564;1080;590;1;1;15;8;1;0;0;0
ID;31;Text;Value7
PSDV;930;570;970;584;0;1;15;1;1;0;0;0
TXT;#####;2;1
ITX1;Intake/P101:Detail7;Intake/P101:Unit7;System:DecimalPoint

ID;1;Rect;Frame
LIB;trendbox.plb;3;Intake/P101Trend;Lib/Trend
PSDV;120;440;519;639;2;1;15;8;1;0;2;0
ISA;Intake/P101Trend/Pen1:Value;Intake/P101Trend/Pen2:Value;60;Intake/P101Trend/Pen1:Min;1;Intake/P101Trend/Pen1:Max;1;Intake/P101Trend/Pen2:Min;1;linear;5;0;0;Intake/P101Trend/Pen2:Max;15;7;1;0;0;Intake/P101Trend/Axis:Span;hh:mm;0;0;10;10;8;0;0;Intake/P101Trend/Axis:Start
ID;2;Line;Grid
PSDV;160;460;509;610;1;0;7;7;1;0;2;0
PNT;12;0;160;460;509;460;509;510;160;510;160;560;509;560;509;610;270;610;270;460;390;460;390;610;160;610
ID;3;Line;Axes
PSDV;160;450;509;610;1;0;0;0;2;0;2;0
PNT;3;0;160;450;160;610;509;610
IX1;Intake/P101Trend/Axis:Cursor;0;Intake/P101Trend/Axis:Span;160;509
ID;4;Line;SampleCurve
PSDV;160;480;509;580;1;0;1;1;2;0;2;0
PNT;9;0;160;560;200;550;240;568;285;510;330;500;375;532;420;524;465;488;509;494
ID;5;Text;PenNames
PSDV;170;616;509;632;0;0;15;0;1;0;2;0
TXT;pen 1 / pen 2;1;0
ITXN;2;Intake/P101Trend/Axis:Title;1;left;Intake/P101Trend/Pen1:Name;2;right;Intake/P101Trend/Pen2:Name
ITX1;Intake/P101Trend/Axis:Begin;Intake/P101Trend/Axis:End;System:Clock
ID;6;Icon;Freeze
PSDV;490;442;505;457;0;0;15;0;0;0;2;0
DIV;0;live;lamp_green.bmp
DIV;1;frozen;lamp_blue.bmp
ID;37;Line;SuctionPipe
PSDV;60;260;240;260;1;1;9;9;4;0;0;0
PNT;2;0;60;260;240;260
ID;38;Line;PressurePipe
PSDV;319;260;560;260;1;1;9;9;4;0;0;0
PNT;2;0;319;260;560;260

ID;1;Rect;Frame
LIB;pump.plb;4;Intake/P101;Lib/Pump
PSDV;240;230;319;289;2;1;15;8;1;0;1;0;Rohwasserpumpe 1;operator
IVG;Intake/P101/State:Shown
IBG;Intake/P101/State:FrameColour
ID;2;Poly;Casing
PSDV;252;234;295;277;2;0;7;0;2;0;1;0;Rohwasserpumpe 1;operator
PNT;9;1;264;234;283;234;295;246;295;265;283;277;264;277;252;265;252;246;264;234
IBG;Intake/P101/State:CasingColour
ISB;Intake/P101/Command:Panel;popup;640;400
ID;3;Poly;Impeller
PSDV;261;240;294;271;2;0;8;0;1;0;1;0;Rohwasserpumpe 1;operator
PNT;4;1;261;240;294;255;261;271;261;240
ID;4;Rect;Base
PSDV;248;278;299;284;2;0;8;0;1;0;1;0;Rohwasserpumpe 1;operator
ID;5;Icon;StateLamp
PSDV;300;234;315;249;0;0;15;0;0;0;1;0;Rohwasserpumpe 1;operator
DIV;0;stopped;pump_off.bmp
DIV;1;running;pump_on.bmp
DIV;2;tripped;pump_fault.bmp
IBW;0;3;16;16;0;0;Intake/P101/State:Run
ID;6;Icon;ModeLamp
PSDV;300;254;315;269;0;0;15;0;0;0;1;0;Rohwasserpumpe 1;operator
DIV;0;manual;hand.bmp
DIV;1;automatic;auto.bmp
IBW;0;2;16;16;0;0;Intake/P101/Mode:Auto
ID;7;Text;Label
PSDV;240;292;319;306;0;0;15;0;1;0;1;0;Rohwasserpumpe 1;operator
TXT;Pump;2;0
ITA;Intake/P101/Name:Text
IIK1;Intake/P101/Command:Start
IDMS;System:Messages;pump
