#pragma once
// The automatic set-up: which of a known mixer's channels take which role.

#include <QString>
#include <QStringList>

#include <functional>

class Setting;
class SettingMixer;

/// "group/shown name" of the first mixer of the mixer file that the inputs on offer belong to; empty if there
/// is none. `inputs` is the catalogue, whose first entry is the empty one.
QString findKnownMixer(const SettingMixer& mixer, const QStringList& inputs);

/// Writes the devices of a mixer to the settings, by its "group/shown name". A role that the mixer file names
/// and the machine doesn't offer becomes none; one that it doesn't name stays. `midiInputs` is what
/// QMidiIn::devices() gives.
void applyKnownMixer(const QString& entry, const SettingMixer& mixer, const QStringList& inputs,
                     const QStringList& midiInputs, const QStringList& outputs, Setting& setting);

/// On a machine with no stored input: looks for a known mixer and applies it. True if it found one.
/// `midiInputs` is asked only then.
bool autoSetUpDevices(const std::function<QStringList()>& midiInputs);
