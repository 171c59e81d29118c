// A project folder of a test's own.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// A project folder that goes away with this object. Its path is absolute and clean and has
/// neither upper-case letters (they hide bitmaps) nor anything else that the program reads a
/// meaning into ("/scr", "/bmp", ".psc", ".cat"), unless the test asks for that in `name`.
///     TestProject project(u"scripts/plant"_s);   // a project below a folder "scripts"
/// What cannot be set up ends the test.
class TestProject final
{
    Q_DISABLE_COPY_MOVE(TestProject)

public:
    explicit TestProject(QString name = QStringLiteral("plant"));
    ~TestProject();

    /// The project directory.
    QString dir() const { return beside(m_name); }
    /// A path below the project directory.
    QString path(const QString &relative) const { return dir() + QLatin1Char('/') + relative; }
    /// A path beside the project; what lies there goes away with the project.
    QString beside(const QString &relative) const { return m_root + QLatin1Char('/') + relative; }

    /// Writes a file below the project, byte by byte, with the folders above it.
    void write(const QString &relative, const QByteArray &bytes) const;
    /// Writes lines, each with its line end.
    void writeLines(const QString &relative, const QList<QByteArray> &lines) const;
    void makeFolder(const QString &relative) const;
    /// Makes `relative` a symbolic link to `target`, taken as it stands.
    void link(const QString &target, const QString &relative) const;
    void remove(const QString &relative) const;

    /// The bytes of a file below the project; null where there is none.
    QByteArray read(const QString &relative) const;
    bool exists(const QString &relative) const;
    /// All files below a folder of the project, hidden ones too, sorted; see filesBelow(). Without
    /// what the history of the project's runs holds.
    QStringList files(const QString &relative) const;
    /// What it holds beside "run.json", each file by its path in the entry, for all entries.
    QStringList keptFiles() const;

private:
    QString m_root;
    QString m_name;
};

/// All files and links below a folder, by their paths below it, sorted. Links are not followed.
QStringList filesBelow(const QString &folder);

/// Copies a folder with all files in it.
void copyFolder(const QString &from, const QString &to);

/// Makes seven folders "1" to "7" below a folder of the project, each with links to all others and
/// a screen "a.psc": seven screens, to which more than ten thousand paths lead.
void makeMaze(const TestProject &project, const QString &folder, const QByteArray &screen);

/// While it lives, the file system treats this thread as an ordinary user's, so that
/// permissions hold for the superuser too.
class OrdinaryUser final
{
    Q_DISABLE_COPY_MOVE(OrdinaryUser)

public:
    OrdinaryUser();
    ~OrdinaryUser();

private:
    unsigned m_user;
};
