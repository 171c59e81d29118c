// The change log: one row for each report of a run, for spreadsheets.
#include "Converter.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

// The spellings are part of the file format.
constexpr QLatin1StringView header =
    "Status; Image File; Shape File; Image-Object; Replace by Shape-Object; Uminitalisation; Error\n"_L1;

/// An object's name without the four characters of its tag; a shorter one is kept whole.
QString withoutTag(const QString &object)
{
    constexpr qsizetype tagLength = 4;
    return object.right(object.size() - tagLength);
}

QString rowOf(const Converter::STBlock &block)
{
    const QString imageObject = withoutTag(block.imageObject);
    QString shapeObject = withoutTag(block.shapeObject);
    if (shapeObject == imageObject)
        shapeObject.clear();
    return u"%1;%2;%3;%4;%5;%6;%7"_s.arg(statusText(block.status))
        .arg(block.imageFile)
        .arg(block.shapeFile)
        .arg(imageObject)
        .arg(shapeObject)
        .arg(block.initText)
        .arg(block.error);
}

} // namespace

QString statusText(int status)
{
    switch (status) {
    case 1:
        return u"NO REPLACE"_s;
    case 2:
        return u"ERROR"_s;
    default:
        return u"REPLACE"_s;
    }
}

void writeChangeLog(const Converter::STBlock &block, const QString &path)
{
    const bool isNew = !QFile::exists(path);
    QFile log(path);
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
        return;
    if (isNew)
        log.write(header.data(), header.size());
    log.write(rowOf(block).toLatin1() + '\n');
}
