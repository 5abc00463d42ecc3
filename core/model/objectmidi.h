#pragma once

#include "modelcrossfader.h"

#include <QMetaType>
#include <QString>

/// One crossfader reading, passed by value in signals.
class ObjectMidi {
public:
    /// `kind` is carried along unchanged. The time is the wall clock now.
    explicit ObjectMidi(int channel = 0, int controller = 0, int kind = 0);

    int channel() const { return m_channel; }       ///< 0 to 15
    int controller() const { return m_controller; } ///< 0 to 127
    int kind() const { return m_kind; }
    int time() const { return m_time; } ///< milliseconds since midnight at construction, 0 if invalid
    const QString& name() const { return m_name; }
    int crossFaderLeft() const { return m_crossFaderLeft; }   ///< at or below: left end
    int crossFaderRight() const { return m_crossFaderRight; } ///< at or above: right end
    int value() const { return m_value; }                     ///< 0 to 127; 63 is the centre

    void setName(const QString& name) { m_name = name; }
    void setValue(int value) { m_value = value; }
    void setCrossFaderLeft(int value) { m_crossFaderLeft = value; }
    void setCrossFaderRight(int value) { m_crossFaderRight = value; }

    /// The right test comes first, so crossed limits give RIGHT or LEFT and never MIDDLE.
    ModelCrossFader::EnumCrossFader crossFader() const;

private:
    int m_channel;
    int m_controller;
    int m_kind;
    int m_time;
    QString m_name;
    int m_crossFaderLeft = 0;
    int m_crossFaderRight = 127;
    int m_value = 63;
};

Q_DECLARE_METATYPE(ObjectMidi)
