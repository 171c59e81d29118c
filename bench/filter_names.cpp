// Times the collection of the names that the filters dialog offers.
#include "Figures.h"
#include "FilterNames.h"
#include "updUtils.h"

#include <QCoreApplication>
#include <QElapsedTimer>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QString imageFolder = projectDirOf(argc, argv) + "/scr"_L1;

    QElapsedTimer clock;
    clock.start();
    QList<QFileInfo> imageFiles;
    updUtils::findImageFiles(imageFolder, imageFiles);
    QSet<QString> names;
    for (const QFileInfo &imageFile : std::as_const(imageFiles))
        collectFilterNames(imageFile.filePath(), &names);
    const double seconds = static_cast<double>(clock.nsecsElapsed()) * 1e-9;

    printFigures({{"seconds"_L1, seconds}, {"files"_L1, imageFiles.size()}, {"names"_L1, names.size()}});
    return 0;
}
