#include "settingmixer.h"

#include "model/constants.h"
#include "pathfile.h"

namespace {

// A key without "/" is its own group and its own name.
QString groupOf(const QString& key) {
    return key.section(u'/', 0, 0);
}
QString nameOf(const QString& key) {
    return key.contains(u'/') ? key.section(u'/', 1) : QString();
}

// A value with commas that aren't quoted comes as a list; blanks behind these commas are lost.
QString textOf(const QVariant& value) {
    return value.toStringList().join(u',');
}

} // namespace

SettingMixer::SettingMixer(QObject* parent) : SettingMixer(pathInput(Constant::File::mixer), parent) {}

SettingMixer::SettingMixer(const QString& fileName, QObject* parent)
    : QObject(parent), m_settings(fileName, QSettings::IniFormat) {}

bool SettingMixer::mixerContains(const QString& deviceName) const {
    const QStringList keys = m_settings.allKeys();
    for (const QString& key : keys) {
        if (key.contains(u'/') && deviceName.contains(groupOf(key))) {
            return true;
        }
    }
    return false;
}

QString SettingMixer::findKey(const QString& keyName, const QString& deviceName) const {
    const QStringList keys = m_settings.allKeys();
    for (const QString& key : keys) {
        const QString name = nameOf(key);
        if (!name.isEmpty() && deviceName.contains(groupOf(key)) && keyName.contains(name)) {
            return key;
        }
    }
    return {};
}

bool SettingMixer::mixerKnows(const QString& keyName, const QString& deviceName) const {
    return !findKey(keyName, deviceName).isEmpty();
}

QString SettingMixer::mixerValue(const QString& keyName, const QString& deviceName) const {
    const QString key = findKey(keyName, deviceName);
    return key.isEmpty() ? QString() : textOf(m_settings.value(key));
}

QStringList SettingMixer::mixerDeviceNames() const {
    QStringList names;
    const QStringList keys = m_settings.allKeys();
    for (const QString& key : keys) {
        if (nameOf(key) == Constant::Mixer::name) {
            names << QStringLiteral("%1/%2").arg(groupOf(key), textOf(m_settings.value(key)));
        }
    }
    return names;
}
