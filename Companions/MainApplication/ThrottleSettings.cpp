#include "Companions/MainApplication/ThrottleSettings.h"

#include "Companions/Common/PropertyList.h"

using namespace Qt::StringLiterals;

namespace
{
const QString AutoPauseKey = u"EnableBandwidthThrottleKey"_s;

QVariantMap firstSettings()
{
    return {{AutoPauseKey, false},
            {u"BandwidthThrottleKey"_s, u"75"_s},
            {u"BandwidthThrottleAutoPauseKey"_s, u"50"_s},
            {u"BandwidthThrottleForIdleKey"_s, u"100"_s},
            // Of no concern to anyone but the application.
            {u"KeptVersionsKey"_s, 30},
            {u"IgnoredExtensionsKey"_s, QVariantList{u"tmp"_s, u"part"_s}}};
}

bool isAutoPause(const QVariantMap &settings)
{
    const QVariant value = settings.value(AutoPauseKey);
    return value.typeId() == QMetaType::Bool ? value.toBool()
                                             : value.typeId() == QMetaType::QString && value == u"1"_s;
}

QString valueText(const QVariant &value)
{
    return value.typeId() == QMetaType::QVariantList ? value.toStringList().join(u',') : value.toString();
}
} // namespace

ThrottleSettings::ThrottleSettings(QString path) : m_path(std::move(path))
{
}

bool ThrottleSettings::fillIn(const QString &account)
{
    QVariantMap settings = firstSettings();
    settings.insert(settingsOf(account));
    QVariantMap all = readPropertyList(m_path).toMap();
    all.insert(account, settings);
    return writePropertyList(m_path, all);
}

bool ThrottleSettings::setBandwidth(const QString &account, int percent)
{
    const QString key =
        isAutoPause(settingsOf(account)) ? u"BandwidthThrottleAutoPauseKey"_s : u"BandwidthThrottleKey"_s;
    return change(account, key, QString::number(percent));
}

bool ThrottleSettings::setAutoPause(const QString &account, bool on)
{
    return change(account, AutoPauseKey, on);
}

QString ThrottleSettings::describe(const QString &account) const
{
    const QVariantMap settings = settingsOf(account);
    QStringList parts;
    for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting)
        parts.append(setting.key() + u'=' + valueText(setting.value()));
    return parts.join(u' ');
}

QVariantMap ThrottleSettings::settingsOf(const QString &account) const
{
    return readPropertyList(m_path).toMap().value(account).toMap();
}

bool ThrottleSettings::change(const QString &account, const QString &key, const QVariant &value)
{
    QVariantMap all = readPropertyList(m_path).toMap();
    QVariantMap settings = all.value(account).toMap();
    if (settings.isEmpty())
        return false;
    settings.insert(key, value);
    all.insert(account, settings);
    return writePropertyList(m_path, all);
}
