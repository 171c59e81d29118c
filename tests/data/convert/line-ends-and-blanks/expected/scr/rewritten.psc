ID;1;A
LIB;pump.plb;1;p1;OBJ:one
PSDV;0;0;9;9;0;1;0;0;0;0;1

a  b
cd
end
