// Two versions of a project's screens, compared one by one.
#include "ScreenDiffs.h"

using namespace Qt::StringLiterals;

ScreenDifference ScreenDiffs::compare(const QString &shownPath, const FileVersion &before,
                                      const FileVersion &after)
{
    const FileComparison comparison = compareFiles(shownPath, before, after);
    if (!comparison.isReadable) {
        ++m_unreadableFiles;
        return {.finding = Finding{FindingKind::FileUnreadable, shownPath,
                                   u"it could not be read, so that it was not compared"_s,
                                   adviceForUnreadable({before.path, after.path})},
                .diff = {}};
    }
    if (comparison.diff) {
        ++m_changedFiles;
        m_addedLines += comparison.diff->addedLines;
        m_removedLines += comparison.diff->removedLines;
    }
    return {.finding = {}, .diff = comparison.diff};
}
