// A project folder of a test's own.
#include "TestProject.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include <sys/fsuid.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

bool hasNoMeaning(const QString &path)
{
    const bool plain = !path.contains("/scr"_L1) && !path.contains("/bmp"_L1) && !path.contains(".psc"_L1) &&
                       !path.contains(".cat"_L1);
    return plain && path == path.toLower();
}

/// The user's folder for temporary files, or the system's where that one would mean something.
QString temporaryFolder()
{
    for (const QString &candidate : {QDir::tempPath(), u"/tmp"_s, u"/var/tmp"_s}) {
        const QString path = QDir(candidate).canonicalPath();
        if (!path.isEmpty() && hasNoMeaning(path) && QFileInfo(path).isWritable())
            return path;
    }
    qFatal("no folder for temporary files without upper-case letters");
}

/// Removes a folder with all in it: also names that are no UTF-8, which Qt does not see, and
/// folders that a test left without permissions. Links are not followed.
void removeTree(const std::filesystem::path &folder)
{
    namespace fs = std::filesystem;
    std::error_code ignored;
    fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, ignored);
    for (fs::directory_iterator entry(folder, ignored); entry != fs::directory_iterator();
         entry.increment(ignored)) {
        if (entry->symlink_status(ignored).type() == fs::file_type::directory)
            removeTree(entry->path());
    }
    fs::remove_all(folder, ignored);
}

void require(bool done, const char *what, const QString &path)
{
    if (!done)
        qFatal("cannot %s %s", what, qUtf8Printable(path));
}

/// The system opens files for the one user that is set here, and tells for the other what may be
/// opened. Only this thread changes: the library's own setresuid() would take all of them along.
void become(unsigned user)
{
    constexpr unsigned unchanged = 0xffffffff;
    ::syscall(SYS_setresuid, user, unchanged, unchanged);
    ::setfsuid(user);
}

} // namespace

TestProject::TestProject(QString name)
    : m_root(temporaryFolder() + "/vantrel-"_L1 + QUuid::createUuid().toString(QUuid::Id128))
    , m_name(std::move(name))
{
    require(QDir().mkpath(dir()), "make", dir());
}

TestProject::~TestProject()
{
    removeTree(QFile::encodeName(m_root).toStdString());
}

void TestProject::write(const QString &relative, const QByteArray &bytes) const
{
    const QFileInfo info(path(relative));
    require(QDir().mkpath(info.absolutePath()), "make", info.absolutePath());
    QFile file(info.absoluteFilePath());
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush(), "write",
            file.fileName());
}

void TestProject::writeLines(const QString &relative, const QList<QByteArray> &lines) const
{
    QByteArray bytes;
    for (const QByteArray &line : lines)
        bytes += line + '\n';
    write(relative, bytes);
}

void TestProject::makeFolder(const QString &relative) const
{
    require(QDir().mkpath(path(relative)), "make", path(relative));
}

void TestProject::link(const QString &target, const QString &relative) const
{
    require(::symlink(qPrintable(target), qPrintable(path(relative))) == 0, "link", path(relative));
}

void TestProject::remove(const QString &relative) const
{
    const QFileInfo info(path(relative));
    const bool folder = info.isDir() && !info.isSymLink();
    require(folder ? QDir(path(relative)).removeRecursively() : QFile::remove(path(relative)), "remove",
            path(relative));
}

QByteArray TestProject::read(const QString &relative) const
{
    QFile file(path(relative));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool TestProject::exists(const QString &relative) const
{
    return QFileInfo::exists(path(relative));
}

QStringList TestProject::files(const QString &relative) const
{
    QStringList files = filesBelow(path(relative));
    files.removeIf([](const QString &file) { return file.startsWith(".vantrel.history/"_L1); });
    return files;
}

QStringList TestProject::keptFiles() const
{
    QStringList kept;
    for (const QString &file : filesBelow(path(QStringLiteral(".vantrel.history")))) {
        if (const QString name = file.section(QLatin1Char('/'), 1); name != "run.json"_L1)
            kept.append(name);
    }
    return kept;
}

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    const auto filter = QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System;
    QDirIterator entries(folder, filter, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        const QFileInfo info = entries.fileInfo();
        if (info.isSymLink() || !info.isDir())
            files.append(QDir(folder).relativeFilePath(info.filePath()));
    }
    std::sort(files.begin(), files.end());
    return files;
}

void copyFolder(const QString &from, const QString &to)
{
    require(QDir().mkpath(to), "make", to);
    for (const QString &file : filesBelow(from)) {
        const QString target = to + u'/' + file;
        const QString parent = QFileInfo(target).absolutePath();
        require(QDir().mkpath(parent), "make", parent);
        require(QFile::copy(from + u'/' + file, target), "copy to", target);
    }
}

void makeMaze(const TestProject &project, const QString &folder, const QByteArray &screen)
{
    constexpr int folders = 7;
    for (int from = 1; from <= folders; ++from) {
        const QString inside = u"%1/%2/"_s.arg(folder).arg(from);
        project.write(inside + "a.psc"_L1, screen);
        for (int to = 1; to <= folders; ++to) {
            if (to != from)
                project.link(u"../%1"_s.arg(to), inside + QString::number(to));
        }
    }
}

OrdinaryUser::OrdinaryUser()
    : m_user(::geteuid())
{
    constexpr unsigned nobody = 65534;
    if (m_user == 0)
        become(nobody);
}

OrdinaryUser::~OrdinaryUser()
{
    become(m_user);
}
