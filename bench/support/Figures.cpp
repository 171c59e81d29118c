// What the programs of the benchmark have in common.
#include "Figures.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

QString projectDirOf(int argc, char **argv)
{
    if (argc == 2)
        return QFile::decodeName(argv[1]);
    std::fprintf(stderr, "usage: %s PROJECT\n", argv[0]);
    std::exit(2);
}

QSet<QString> libraryNames(const QString &projectDir)
{
    const QStringList names = QDir(projectDir + "/mac"_L1).entryList(QDir::Files);
    return {names.cbegin(), names.cend()};
}

void printFigures(const QJsonObject &figures)
{
    std::puts(QJsonDocument(figures).toJson(QJsonDocument::Compact).constData());
}
