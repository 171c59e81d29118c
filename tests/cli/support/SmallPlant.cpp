// The text of small screens and shapes.
#include "SmallPlant.h"

using namespace Qt::StringLiterals;

QByteArray SmallPlant::plainScreen()
{
    return "ID;1;Rect;Frame\n"
           "PSDV;0;0;99;49;2;1;15;8;1;0;0\n";
}

QByteArray SmallPlant::screenWith(const QByteArray &shapeFile, const QByteArray &name)
{
    return "ID;1;Rect;" + name +
           "\n"
           "LIB;" +
           shapeFile + ";1;Plant/" + name + ";Obj/" + name +
           "\n"
           "PSDV;10;10;29;29;2;1;15;8;1;0;1;0\n";
}

QByteArray SmallPlant::screenAfterUpdate(const QByteArray &name)
{
    return "ID;1;Ellipse;Body\n"
           "LIB;pump.plb;2;Plant/" +
           name +
           ";Lib/Pump\n"
           "PSDV;10;10;29;29;2;1;7;0;2;0;1;0\n";
}

QByteArray SmallPlant::invalidScreen()
{
    return "ID;1;Rect;Cut\n"
           "PSDV;0;0;99\n";
}

QByteArray SmallPlant::shape()
{
    return "ID;1;Ellipse;Body\n"
           "LIB;pump.plb;2;Lib/Pump;Lib/Pump\n"
           "PSDV;0;0;19;19;2;1;7;0;2;0;0;0\n";
}

void SmallPlant::makeIn(const TestProject &project)
{
    project.write(u"scr/a.psc"_s, screenWith("pump.plb"));
    project.write(u"mac/pump.plb"_s, shape());
    project.makeFolder(u"log"_s);
}
