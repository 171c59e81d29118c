// Answers that are asked for once.
#pragma once

#include <QHash>

/// The answer that `answers` holds for `key`; asks for it the first time. The reference is valid
/// until the next answer is put in.
template <typename Answer, typename Ask>
const Answer &remembered(QHash<QString, Answer> &answers, const QString &key, Ask ask)
{
    auto answer = answers.find(key);
    if (answer == answers.end())
        answer = answers.insert(key, ask());
    return *answer;
}
