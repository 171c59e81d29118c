// Uses one thing of each public header, with Qt's own spellings and defaults.
#include "Converter.h"
#include "Logger.h"
#include "updUtils.h"

int main()
{
    Converter converter("/nowhere");
    QStringList lines;
    QString errorText;
    QList<QFileInfo> files;
    updUtils::findImageFiles("/nowhere", files);
    QString line;
    joinFields({"IVG", "a"}, line);
    writeChangeLog(Converter::STBlock(), "/nowhere/log.csv");
    const bool isAsExpected = !converter.readImageFile("/nowhere/a.psc", lines, errorText) &&
                              errorText == "Could not open Image File" && files.isEmpty() &&
                              line == "IVG;a" && statusText(2) == "ERROR" &&
                              !Qel::Logger::getLogFilePath().isEmpty();
    return isAsExpected ? 0 : 1;
}
