// What the user is told of a recovery.
#include "Story.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFontMetrics>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// What a message box on a small screen has room for.
constexpr int widest = 420; // pixels

QString elided(const QString &text, int width)
{
    return QFontMetrics(QApplication::font("QMessageBox")).elidedText(text, Qt::ElideMiddle, width);
}

/// A path that does not fit into one line may be broken behind each folder.
QString brokenWhereNeeded(const QString &word)
{
    constexpr int mostLines = 5;
    if (elided(word, widest) == word)
        return word;
    constexpr QChar breakHere(0x200b);
    QStringList folders = elided(word, mostLines * widest).split(u'/');
    for (QString &folder : folders)
        folder = elided(folder, widest);
    return folders.join(u'/' + QString(breakHere));
}

/// A file's name may hold line ends, and characters that turn round what stands behind them.
QString asText(QString value)
{
    for (QChar &character : value) {
        if (character.category() == QChar::Other_Control || character.category() == QChar::Other_Format)
            character = QChar::ReplacementCharacter;
    }
    return value;
}

QString filled(const QString &text, const QStringList &values)
{
    switch (values.size()) {
    case 0:
        return text;
    case 1:
        return text.arg(asText(values.first()));
    default:
        // At once: a value may look like a place for the other one.
        return text.arg(asText(values.at(0)), asText(values.at(1)));
    }
}

/// A message box breaks lines at spaces only.
QString withBreaks(const QString &text)
{
    QStringList words = text.split(u' ');
    std::transform(words.cbegin(), words.cend(), words.begin(), brokenWhereNeeded);
    return words.join(u' ');
}

} // namespace

void Story::say(const char *source, const QStringList &values)
{
    const QString separator = m_beginsLine ? u""_s : u" "_s;
    append(separator, withBreaks(filled(QCoreApplication::translate("Story", source), values)),
           filled(QString::fromUtf8(source), values));
}

void Story::beginParagraph()
{
    beginLine();
    beginLine();
}

void Story::beginLine()
{
    m_shown += u'\n';
    m_beginsLine = true;
}

void Story::list(const QStringList &names)
{
    const qsizetype told = std::min(names.size(), m_namesToCome);
    for (const QString &name : names.first(told))
        append(u"\n"_s, elided(asText(name), widest), asText(name));
    m_namesToCome -= told;
    if (told == names.size())
        return;
    beginLine();
    say(QT_TRANSLATE_NOOP("Story", "and %1 more"), {QString::number(names.size() - told)});
}

void Story::append(const QString &separator, const QString &shown, const QString &logged)
{
    m_shown += separator + shown;
    m_logged += (m_logged.isEmpty() ? u""_s : u" "_s) + logged;
    m_beginsLine = false;
}
