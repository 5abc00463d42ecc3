#pragma once

#include <QObject>
#include <QSettings>
#include <QString>
#include <QStringList>

/// "MixerWindows.ini": known sound cards and controllers, one group each. The group's name is a text that
/// occurs in the device's name; a key's name occurs in the key asked for. All matches are case-sensitive.
/// Read, never written; with no file nothing is known. GUI thread.
class SettingMixer : public QObject {
    Q_OBJECT
public:
    explicit SettingMixer(QObject* parent = nullptr);
    /// For another file than the data folder's.
    SettingMixer(const QString& fileName, QObject* parent);

    /// True if a group occurs in `deviceName`.
    bool mixerContains(const QString& deviceName) const;
    /// True if a group occurs in `deviceName` and has a key that occurs in `keyName`.
    bool mixerKnows(const QString& keyName, const QString& deviceName) const;
    /// The value of the first such key, empty if there is none.
    QString mixerValue(const QString& keyName, const QString& deviceName) const;
    /// "group/shown name" of every device, in key order.
    QStringList mixerDeviceNames() const;

private:
    /// The whole key of the first match, empty if there is none.
    QString findKey(const QString& keyName, const QString& deviceName) const;

    QSettings m_settings;
};
