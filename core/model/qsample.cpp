#include "qsample.h"

#include "uniquestamp.h"

#include <list>

QSample::QSample(ModelGraph::EnumGraph name)
    : QSample(name, -1, QString(), Constant::Audio::defaultSampleRate, Constant::Audio::defaultChannels, 0) {}

QSample::QSample(ModelGraph::EnumGraph name, int deviceIndex, const QString& deviceName, double sampleRate,
                 int channelCount, int channelFirst)
    : m_name(name)
    , m_deviceIndex(deviceIndex)
    , m_deviceName(deviceName)
    , m_sampleRate(sampleRate)
    , m_channelCount(channelCount)
    , m_channelFirst(channelFirst)
    , m_channelDeckA(channelFirst)
    , m_channelDeckB(channelFirst)
    , m_samplesPerMinute(60 * sampleRate)
    , m_samplesPerMs(sampleRate / 1000)
    , m_degreesPerSample(360 / (sampleRate * Constant::Audio::secondsPerTurn)) {}

QSample::QSample(ModelGraph::EnumGraph name, int deviceIndex, const QString& deviceName, double sampleRate,
                 int channelCount, int channelFirst, int channelDeckA, int channelDeckB)
    : QSample(name, deviceIndex, deviceName, sampleRate, channelCount, channelFirst) {
    m_channelDeckA = channelDeckA;
    m_channelDeckB = channelDeckB;
    m_isOutput = true;
}

const QString& QSample::fileName() {
    if (m_fileName.isEmpty() && m_name != ModelGraph::OUTPUT_MASTER) {
        QString device = m_deviceName;
        device.replace(u'/', QStringLiteral("and"));
        m_fileName = QStringLiteral("%1_%2_%3_%4p%5_%6%7")
                         .arg(QString::number(m_deviceIndex), uniqueStamp(), device,
                              QString::number(m_channelCount), QString::number(m_channelFirst),
                              QString::number(m_sampleRate, 'g', 6), QString(Constant::Extension::wav));
    }
    return m_fileName;
}

QSample* lastingSample(const QSample& sample) {
    // A list, since its entries never move. It is never taken apart, not even as the process ends.
    static auto& all = *new std::list<QSample>;
    return &all.emplace_back(sample);
}
