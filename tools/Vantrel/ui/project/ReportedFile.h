// The file that a row of the table of replaced shapes is about.
#pragma once

#include <QString>

/// The path of a screen that the table shows from its project's image folder on; of a run over
/// `projectDir`. Other texts are paths already.
///     "<proj>/scr/a/b.psc", "/plants/north"  ->  "/plants/north/scr/a/b.psc"
QString reportedFile(const QString &shownFile, const QString &projectDir);
