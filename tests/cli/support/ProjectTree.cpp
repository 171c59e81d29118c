// What a folder holds, in a form that two moments can be compared in.
#include "ProjectTree.h"

#include "CliRun.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

QString spelt(const QByteArray &bytes)
{
    QString text;
    for (const char byte : bytes) {
        if (byte == '\n')
            text += u"\\n"_s;
        else if (byte >= ' ' && byte <= '~')
            text += QLatin1Char(byte);
        else
            text += u"\\x%1"_s.arg(uint{static_cast<uchar>(byte)}, 2, 16, QLatin1Char('0'));
    }
    return text;
}

QString describe(const QFileInfo &entry, const QString &path)
{
    if (entry.isSymLink())
        return path + " -> "_L1 + QFile::symLinkTarget(entry.filePath());
    if (entry.isDir())
        return path + u'/';
    if (!entry.isFile())
        return path + " (pipe)"_L1;
    QFile file(entry.filePath());
    if (!file.open(QIODevice::ReadOnly))
        return path + " (cannot be read)"_L1;
    return path + ": "_L1 + spelt(file.readAll());
}

} // namespace

QStringList describeTree(const QString &folder)
{
    QStringList tree;
    const auto filter = QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System;
    QDirIterator entries(folder, filter, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        const QString path = QDir(folder).relativeFilePath(entries.filePath());
        const QByteArray stable = withPlaceholders(path.toUtf8(), folder);
        tree.append(describe(entries.fileInfo(), QString::fromUtf8(stable)));
    }
    tree.sort();
    return tree;
}
