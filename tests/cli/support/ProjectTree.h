// What a folder holds, in a form that two moments can be compared in.
#pragma once

#include <QString>
#include <QStringList>

/// One text for each folder, file, link and pipe below a folder, hidden ones too, by path:
///     "scr/", "scr/a.psc: ID;1;Rect;Pump\n", "scr/b.psc -> ../b.psc", "mac/pump.plb (pipe)"
/// Control characters and bytes above 126 are spelt out. The time in the name of a change log is
/// replaced by "<time>".
QStringList describeTree(const QString &folder);
