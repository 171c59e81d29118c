// Where the versions of a project's screens lie while it is recovered.
#pragma once

#include "RootFolder.h"

#include <QString>
#include <QStringList>

#include <memory>

/// Names screens by their paths below "scr", and tells where their versions lie.
class ScreenPlaces final
{
public:
    explicit ScreenPlaces(QString projectDir)
        : m_projectDir(std::move(projectDir))
        , m_root(std::make_shared<const RootFolder>(m_projectDir))
    {
    }

    const QString &projectDir() const { return m_projectDir; }
    /// The project's folder, below which all that is done to it is done.
    const RootFolder &root() const { return *m_root; }

    QString inPlace(const QString &screen) const;   ///< below "scr"
    QString backup(const QString &screen) const;    ///< below "scr_bak"
    QString converted(const QString &screen) const; ///< below "scr_temp"
    /// Below the "scr" that an entry of the history holds.
    QString kept(const QString &entry, const QString &screen) const;

    /// The screens of which a version lies below such a folder. Clears `isWhole` where not all
    /// of it could be read.
    QStringList screensInPlace(bool &isWhole) const;
    QStringList screensInBackup(bool &isWhole) const;
    QStringList screensConverted(bool &isWhole) const;

    QString folder(const QString &name) const { return m_projectDir + u'/' + name; }

    /// Why an entry of the history is not used, as a sentence without a full stop; empty where it can be,
    /// or is not there. What a link in its place leads to is not the project's.
    QString obstacleTo(const QString &entry) const;

    /// Those that can be read below the "scr" that an entry of the history holds.
    QStringList screensKept(const QString &entry) const;

private:
    QString place(const QString &folder, const QString &screen) const;
    QStringList screensIn(const QString &folder, bool &isWhole) const;

    QString m_projectDir;
    std::shared_ptr<const RootFolder> m_root;
};
