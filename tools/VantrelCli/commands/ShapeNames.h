// Names of shapes as users give them, among those that objects refer to.
#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

/// Compares names as a run does, in any letter case.
class ShapeNames final
{
public:
    /// The names that objects refer to.
    explicit ShapeNames(const QSet<QString> &names);

    /// Those of the names that a user has given.
    QSet<QString> matching(const QStringList &given) const;
    /// The given names that no object refers to, in their order.
    QStringList unmatched(const QStringList &given) const;
    /// The name that a user may have meant by one that no object refers to; empty where none is near.
    QString nearestTo(const QString &given) const;

private:
    QSet<QString> m_names;
    QSet<QString> m_lowerNames;
};
