// Where the versions of a project's screens lie while it is recovered.
#include "ScreenPlaces.h"

#include "ImageFileSearch.h"
#include "RunHistory.h"

#include <cerrno>

using namespace Qt::StringLiterals;

QString ScreenPlaces::inPlace(const QString &screen) const
{
    return m_projectDir + "/scr/"_L1 + screen;
}

QString ScreenPlaces::backup(const QString &screen) const
{
    return place(u"/scr_bak"_s, screen);
}

QString ScreenPlaces::converted(const QString &screen) const
{
    return place(u"/scr_temp"_s, screen);
}

QString ScreenPlaces::kept(const QString &entry, const QString &screen) const
{
    return RunHistory(m_projectDir).pathOf(entry, u"scr"_s) + u'/' + screen;
}

QStringList ScreenPlaces::screensInPlace(bool &isWhole) const
{
    return screensIn(u"/scr"_s, isWhole);
}

QStringList ScreenPlaces::screensInBackup(bool &isWhole) const
{
    return screensIn(u"/scr_bak"_s, isWhole);
}

QStringList ScreenPlaces::screensConverted(bool &isWhole) const
{
    return screensIn(u"/scr_temp"_s, isWhole);
}

QString ScreenPlaces::obstacleTo(const QString &entry) const
{
    if (entry.isEmpty())
        return {};
    const QString path = RunHistory(m_projectDir).pathOf(entry);
    const OpenFolder folder = m_root->folder(path);
    if (folder.isOpen() || folder.error() == ENOENT)
        return {};
    return u"%1 is no folder that can be opened: %2"_s.arg(path, qt_error_string(folder.error()));
}

/// They have the names that they had in "scr".
QStringList ScreenPlaces::screensKept(const QString &entry) const
{
    const QString folder = RunHistory(m_projectDir).pathOf(entry, u"scr"_s);
    QStringList screens;
    for (const QFileInfo &file : searchImageFiles(folder).files)
        screens.append(file.filePath().sliced(folder.size() + 1));
    return screens;
}

/// A run puts the folder's name in wherever "/scr" stands in a path.
QString ScreenPlaces::place(const QString &folder, const QString &screen) const
{
    QString path = "/scr/"_L1 + screen;
    return m_projectDir + path.replace("/scr"_L1, folder);
}

QStringList ScreenPlaces::screensIn(const QString &folder, bool &isWhole) const
{
    const FoundImageFiles found = searchImageFiles(m_projectDir + folder);
    isWhole = isWhole && found.isWhole();
    QStringList screens;
    for (const QFileInfo &file : found.files) {
        QString path = file.filePath().sliced(m_projectDir.size());
        screens.append(path.replace(folder, u"/scr"_s).sliced(QStringView(u"/scr/").size()));
    }
    return screens;
}
