// Shapes whose icons a run would not find.
#include "HiddenIcons.h"

#include "ShapeCatalogue.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

/// The first names, and how many follow:  "fan.plb", "pump.plb" and 12 more
QString someOf(const QStringList &names)
{
    constexpr qsizetype mostNames = 3;
    const QString first = u"\"%1\""_s.arg(names.first(std::min(names.size(), mostNames)).join("\", \""_L1));
    if (names.size() <= mostNames)
        return first;
    return u"%1 and %2 more"_s.arg(first, QString::number(names.size() - mostNames));
}

} // namespace

QList<Finding> findHiddenIcons(const QString &projectDir, const QSet<QString> &shapeNames)
{
    if (projectDir == projectDir.toLower())
        return {};
    ShapeCatalogue catalogue(projectDir);
    QStringList names;
    for (const QString &name : shapeNames) {
        if (!catalogue.shape(name).record.missingIcons.isEmpty())
            names.append(name);
    }
    if (names.isEmpty())
        return {};
    names.sort();
    return {{FindingKind::PathHidesIcons, projectDir,
             u"the project's path holds upper-case letters, so that no icon is found: each one in %1 would "
             "leave the old lines of an object beside the new ones"_s.arg(someOf(names)),
             u"move or rename the project"_s}};
}
