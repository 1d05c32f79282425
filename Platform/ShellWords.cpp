#include "Platform/ShellWords.h"

QString shellWord(const QString &text)
{
    QString inner = text;
    inner.remove(QChar(u'\0')).replace(u'\'', QLatin1String(R"('\'')"));
    return u'\'' + inner + u'\'';
}
