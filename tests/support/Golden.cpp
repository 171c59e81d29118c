// Comparing a folder with the one that a test expects.
#include "Golden.h"

#include "TestProject.h"

#include <QDir>
#include <QFile>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be read)");
}

bool areEqual(const QString &expected, const QString &actual)
{
    const QStringList files = filesBelow(expected);
    if (files != filesBelow(actual))
        return false;
    for (const QString &file : files) {
        if (contents(expected + u'/' + file) != contents(actual + u'/' + file))
            return false;
    }
    return true;
}

QByteArray unifiedDiff(const QString &expected, const QString &actual)
{
    QProcess diff;
    diff.start(u"diff"_s, {u"-ruaN"_s, u"--"_s, expected, actual});
    diff.waitForFinished();
    return diff.readAllStandardOutput();
}

} // namespace

QByteArray folderDifferences(const QString &expected, const QString &actual)
{
    if (areEqual(expected, actual))
        return {};
    const QByteArray lists = "expected: " + filesBelow(expected).join(u' ').toUtf8() +
                             "\nactual:   " + filesBelow(actual).join(u' ').toUtf8() + '\n';
    return lists + unifiedDiff(expected, actual);
}

QByteArray goldenDifferences(const QString &expected, const QString &actual)
{
    if (qEnvironmentVariableIntValue("VANTREL_UPDATE_GOLDEN") == 1) {
        QDir(expected).removeRecursively();
        copyFolder(actual, expected);
    }
    return folderDifferences(expected, actual);
}
