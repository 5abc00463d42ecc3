#pragma once

#include <QString>

/// The parse of the stored MIDI input: the whole text is the name.
class ObjectMidiDevice {
public:
    explicit ObjectMidiDevice(const QString& text);

    const QString& pattern() const { return m_pattern; }
    const QString& text() const { return m_text; }
    const QString& name() const { return m_name; }

private:
    QString m_pattern;
    QString m_text;
    QString m_name;
};
