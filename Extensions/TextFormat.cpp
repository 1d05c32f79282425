#include "Extensions/TextFormat.h"

#include <algorithm>

QString formatted(const QString &format, const QStringList &arguments)
{
    QString result;
    result.reserve(format.size() + 32);
    qsizetype next = 0;
    for (qsizetype i = 0; i < format.size(); ++i) {
        const QStringView rest = QStringView(format).mid(i);
        if (rest.startsWith(u"%%")) {
            result += u'%';
            i += 1;
        } else if (rest.startsWith(u"%@") && next < arguments.size()) {
            result += arguments.at(next++);
            i += 1;
        } else if (rest.size() >= 4 && rest[0] == u'%' && rest[1] >= u'1' && rest[1] <= u'9' &&
                   rest[2] == u'$' && rest[3] == u'@' && rest[1].digitValue() <= arguments.size()) {
            const int number = rest[1].digitValue();
            result += arguments.at(number - 1);
            next = std::max<qsizetype>(next, number);
            i += 3;
        } else {
            result += rest[0];
        }
    }
    return result;
}
