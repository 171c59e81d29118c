// Names of shapes as users give them, among those that objects refer to.
#include "ShapeNames.h"

QSet<QString> matchingNames(const QSet<QString> &shapeNames, const QStringList &givenNames)
{
    QSet<QString> lowerNames;
    for (const QString &name : givenNames)
        lowerNames.insert(name.toLower());
    QSet<QString> matching;
    for (const QString &name : shapeNames) {
        if (lowerNames.contains(name.toLower()))
            matching.insert(name);
    }
    return matching;
}
