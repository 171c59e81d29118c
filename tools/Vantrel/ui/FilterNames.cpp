// The names of the shape files that a project's screens refer to.
#include "FilterNames.h"

#include "RecordFields.h"

#include <QFile>

void collectFilterNames(const QString &path, QSet<QString> *names)
{
    // Not in text mode: that drops carriage returns inside lines; those at line ends are trimmed.
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;

    // Not until atEnd(): a file that can no longer be read never reaches its end.
    for (QByteArray bytes = file.readLine(); !bytes.isEmpty(); bytes = file.readLine()) {
        bytes = bytes.trimmed();
        if (!bytes.startsWith("LIB"))
            continue;
        const QString line = QString::fromLatin1(bytes);
        const QStringView name = fieldAt(line, 1);
        if (!name.isEmpty())
            names->insert(name.toString());
    }
}
