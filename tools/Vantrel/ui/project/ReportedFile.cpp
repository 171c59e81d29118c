// The file that a row of the table of replaced shapes is about.
#include "ReportedFile.h"

using namespace Qt::StringLiterals;

QString reportedFile(const QString &shownFile, const QString &projectDir)
{
    constexpr QLatin1StringView mark = "<proj>"_L1;
    if (!shownFile.startsWith(mark))
        return shownFile;
    // The mark stands for all before the first "/scr/", even where that is a part of the project's path.
    const QString imageFolder = projectDir + "/scr/"_L1;
    return imageFolder.first(imageFolder.indexOf("/scr/"_L1)) + shownFile.sliced(mark.size());
}
