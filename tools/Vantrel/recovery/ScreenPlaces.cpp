// Where the versions of a project's screens lie while it is recovered.
#include "ScreenPlaces.h"

#include "ImageFileSearch.h"

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

QString ScreenPlaces::setAside(const QString &screen) const
{
    return m_projectDir + "/scr_undone/"_L1 + screen;
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
