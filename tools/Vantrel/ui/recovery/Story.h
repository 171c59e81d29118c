// What the user is told of a recovery.
#pragma once

#include <QString>
#include <QStringList>

/// A text that grows sentence by sentence, in the language of the window and, for the log, in
/// English. Names of files are values: whatever stands in them is shown as text on its line. What is
/// shown fits into a message box on a small screen.
///     story.say(QT_TRANSLATE_NOOP("Story", "The project is in use by %1."), {holder});
class Story final
{
public:
    /// A sentence of the context "Story", with up to two values for %1 and %2.
    void say(const char *source, const QStringList &values = {});
    void beginParagraph();
    void beginLine();
    /// These names, each on a line of its own. Of all names in a text the first ten are told, then
    /// only how many there are besides.
    void list(const QStringList &names);

    /// In paragraphs and lines.
    const QString &shown() const { return m_shown; }
    /// On one line.
    const QString &logged() const { return m_logged; }

private:
    void append(const QString &separator, const QString &shown, const QString &logged);

    QString m_shown;
    QString m_logged;
    bool m_beginsLine = true;
    qsizetype m_namesToCome = 10;
};
