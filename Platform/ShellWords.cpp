#include "Platform/ShellWords.h"

using namespace Qt::StringLiterals;

QString shellWord(const QString &text)
{
    QString inner = text;
    inner.remove(QChar(u'\0')).replace(u'\'', R"('\'')"_L1);
    return u'\'' + inner + u'\'';
}
