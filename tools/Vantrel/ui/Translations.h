// The language of the program.
#pragma once

#include <QStringList>
#include <QTranslator>

/// While it lives, the program speaks the first of the user's languages that it knows, and English
/// where it knows none. What is logged and written to files stays as it is.
class Translations final
{
public:
    Translations();
    /// Takes languages as QLocale::uiLanguages() gives them, the preferred one first.
    explicit Translations(const QStringList &languages);

private:
    QTranslator m_program;
    QTranslator m_qt; ///< the buttons and dialogs of Qt, where its translations are installed
};
