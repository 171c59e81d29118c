// Words of a command that is offered to a user.
#include "ShellWord.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

QString quotedForShell(QString word)
{
    static const QRegularExpression plainWord(u"\\A[A-Za-z0-9_./:=+-]+\\z"_s);
    if (plainWord.match(word).hasMatch())
        return word;
    return u'\'' + word.replace(u'\'', u"'\\''"_s) + u'\'';
}
