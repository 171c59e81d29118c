// What a user may have meant by a word that nobody knows.
#pragma once

#include <QString>
#include <QStringList>

/// The known word that takes the fewest changes of a letter to get to; empty where all are too
/// far away to be meant.
QString nearestWord(const QString &word, const QStringList &known);
