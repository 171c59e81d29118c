// The text of small screens and shapes.
#pragma once

#include "TestProject.h"

#include <QByteArray>

namespace SmallPlant {

/// A screen of plain drawing: nothing in it can be replaced.
QByteArray plainScreen();
/// A screen with one object that was placed from the shape file.
QByteArray screenWith(const QByteArray &shapeFile, const QByteArray &name = "Pump");
/// The same once the object is replaced by shape(): what a run leaves.
QByteArray screenAfterUpdate(const QByteArray &name = "Pump");
/// A screen with a line that is too short, so that it cannot be converted.
QByteArray invalidScreen();
QByteArray shape();

/// A project with "scr/a.psc", one object in it, its shape "mac/pump.plb", and a folder "log".
void makeIn(const TestProject &project);

} // namespace SmallPlant
