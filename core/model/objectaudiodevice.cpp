#include "objectaudiodevice.h"

#include "constants.h"

#include <QRegularExpression>

ObjectAudioDevice::ObjectAudioDevice(const QString& text) : m_text(text) {
    static const QRegularExpression expression{QString(Constant::devicePattern)};
    const QRegularExpressionMatch match = expression.match(text);
    if (!match.hasMatch()) {
        return;
    }
    // A capture that is no 32-bit integer reads as 0.
    m_index = match.captured(1).toInt();
    m_name = match.captured(2);
    m_sampleRate = double(match.captured(3).toFloat());
    m_channelCount = match.captured(4).toInt();
    m_channelFirst = match.captured(5).toInt();
    m_hostApi = match.captured(6);
    m_label = match.captured(7);
}
