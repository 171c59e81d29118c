ID;1;Text;Pressure
PSDV;10;10;99;29;1;0;15;0;1;0;0
