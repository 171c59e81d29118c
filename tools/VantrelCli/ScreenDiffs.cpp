// Two versions of a project's screens, compared one by one.
#include "ScreenDiffs.h"

using namespace Qt::StringLiterals;

void ScreenDiffs::compare(const QString &shownPath, const FileVersion &before, const FileVersion &after)
{
    const FileComparison comparison = compareFiles(shownPath, before, after);
    if (!comparison.isReadable) {
        ++m_unreadableFiles;
        m_presenter.showFinding({FindingKind::FileUnreadable, shownPath,
                                 u"it could not be read, so that it was not compared"_s,
                                 adviceForUnreadable({before.path, after.path})});
        return;
    }
    if (!comparison.diff)
        return;
    ++m_changedFiles;
    m_addedLines += comparison.diff->addedLines;
    m_removedLines += comparison.diff->removedLines;
    m_presenter.showDiff(*comparison.diff);
}

QList<CountValue> ScreenDiffs::counts() const
{
    return {{Count::Changed, m_changedFiles},
            {Count::LinesAdded, m_addedLines},
            {Count::LinesRemoved, m_removedLines}};
}
