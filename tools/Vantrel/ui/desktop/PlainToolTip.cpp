// Tool tips that show a text as it is.
#include "PlainToolTip.h"

#include <QTextDocument>

QString asToolTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}
