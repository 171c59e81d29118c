// Names of shapes as users give them, among those that objects refer to.
#include "ShapeNames.h"

#include "NearestWord.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

template <typename Names>
QSet<QString> inLowerCase(const Names &names)
{
    QSet<QString> lowerNames;
    for (const QString &name : names)
        lowerNames.insert(name.toLower());
    return lowerNames;
}

} // namespace

ShapeNames::ShapeNames(const QSet<QString> &names)
    : m_names(names)
    , m_lowerNames(inLowerCase(names))
{
}

QSet<QString> ShapeNames::matching(const QStringList &given) const
{
    const QSet<QString> wanted = inLowerCase(given);
    QSet<QString> matching;
    for (const QString &name : m_names) {
        if (wanted.contains(name.toLower()))
            matching.insert(name);
    }
    return matching;
}

QStringList ShapeNames::unmatched(const QStringList &given) const
{
    QStringList unmatched;
    std::copy_if(given.cbegin(), given.cend(), std::back_inserter(unmatched),
                 [this](const QString &name) { return !m_lowerNames.contains(name.toLower()); });
    return unmatched;
}

QString ShapeNames::nearestTo(const QString &given) const
{
    QStringList known(m_lowerNames.cbegin(), m_lowerNames.cend());
    known.sort();
    QString meant = given.toLower();
    meant.replace(".lib"_L1, ".plb"_L1);
    return nearestWord(meant, known);
}
