#include "objectmididevice.h"

#include <QRegularExpression>

ObjectMidiDevice::ObjectMidiDevice(const QString& text)
    : m_pattern(QStringLiteral("(.*)"))
    , m_text(text)
    , m_name(QRegularExpression(m_pattern).match(text).captured(1)) {}
