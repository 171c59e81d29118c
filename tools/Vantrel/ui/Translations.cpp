// The language of the program.
#include "Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

using namespace Qt::StringLiterals;

Translations::Translations()
    : Translations(QLocale::system().uiLanguages())
{
}

Translations::Translations(const QStringList &languages)
{
    for (const QString &language : languages) {
        const QLocale locale(language);
        // The texts in the sources are English: a language after it in the list is not wanted.
        if (locale.language() == QLocale::English || locale.language() == QLocale::C)
            return;
        const QString code = QLocale::languageToCode(locale.language());
        if (!m_program.load(":/i18n/vantrel_"_L1 + code))
            continue;
        QCoreApplication::installTranslator(&m_program);
        if (m_qt.load("qtbase_"_L1 + code, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
            QCoreApplication::installTranslator(&m_qt);
        return;
    }
}
