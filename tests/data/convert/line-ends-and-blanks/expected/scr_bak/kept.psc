  ID;1;A  
PSDV;0;0;9;9;0;1;0;0;0;0;0

	last without end