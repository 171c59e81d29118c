// What a user may have meant by a word that nobody knows.
#include "NearestWord.h"

#include <QList>

#include <algorithm>
#include <numeric>

namespace {

/// How many letters must be put in, left out or exchanged to get from one word to the other.
qsizetype editDistance(const QString &from, const QString &to)
{
    QList<qsizetype> row(to.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 0; i < from.size(); ++i) {
        qsizetype diagonal = std::exchange(row[0], i + 1);
        for (qsizetype j = 0; j < to.size(); ++j) {
            const qsizetype exchanged = diagonal + (from.at(i) == to.at(j) ? 0 : 1);
            diagonal = row.at(j + 1);
            row[j + 1] = std::min({exchanged, diagonal + 1, row.at(j) + 1});
        }
    }
    return row.last();
}

} // namespace

QString nearestWord(const QString &word, const QStringList &known)
{
    constexpr qsizetype farthest = 3;
    QString nearest;
    qsizetype distance = std::min(farthest, word.size() / 2) + 1;
    for (const QString &candidate : known) {
        const qsizetype candidateDistance = editDistance(word, candidate);
        if (candidateDistance < distance) {
            distance = candidateDistance;
            nearest = candidate;
        }
    }
    return nearest;
}
