#pragma once

#include "model/objectmidi.h"

#include <QString>

/// The crossfader's control as the settings and the mixer file hold it: "channel/controller", the channel
/// counted from 0. What isn't there or is no whole number counts as 0. The fader of the result stands in the
/// middle.
inline ObjectMidi learnedControl(const QString& text) {
    return ObjectMidi(text.section(u'/', 0, 0).toInt(), text.section(u'/', 1, 1).toInt());
}
