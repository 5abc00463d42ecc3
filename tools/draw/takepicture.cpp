#include "takepicture.h"

#include "takefile.h"

#include "painter/curveoffset.h"
#include "painter/qwpainter.h"

#include "curve/qcurve.h"
#include "model/constants.h"
#include "model/qsample.h"
#include "model/wholenumber.h"
#include "module/wavedata.h"
#include "module/wavheader.h"
#include "phrasing/managephrasing.h"
#include "phrasing/phrasing.h"
#include "phrasing/phrasingfile.h"
#include "phrasing/wavphrasing.h"
#include "state/mode.h"
#include "state/performance.h"
#include "state/recordingloopertraining.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "state/storedperformance.h"
#include "state/time.h"

#include <QFile>
#include <QFileInfo>
#include <QPainter>

#include <cmath>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr double behindEverything = std::numeric_limits<std::int32_t>::max(); // frames
constexpr int dotsPerMeter = 3780; // 96 an inch: what the points of a font are counted in

QString beatText(double beat) {
    return QString::number(beat, 'f', 2);
}

QString styleSheet() {
    QFile file(u":/draw/Gramoscope.css"_s);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

TakePicture::TakePicture(DrawOptions options) : m_options(std::move(options)) {}

TakePicture::~TakePicture() = default;

bool TakePicture::fail(const QString& message, bool wrongUsage) {
    m_error = message;
    m_wrongUsage = wrongUsage;
    return false;
}

bool TakePicture::load() {
    const Singleton& shared = Singleton::instance();
    applySettings();
    shared.mode()->setDisplayMode(m_options.display);
    // A looper hides the reference.
    shared.recordingLooperTraining()->setActivatedMode(
        m_options.reference.isEmpty() ? ModelActivatedMode::Looper : ModelActivatedMode::Training);
    const double rate =
        m_options.rate.value_or(rateInName(m_options.take).value_or(Constant::Audio::defaultSampleRate));
    shared.performance()->setSample(m_options.deck,
                                    lastingSample(QSample(m_options.deck, -1, QString(), rate, 2, 0)), false);

    const bool deckA = m_options.deck == ModelGraph::INPUT_DECKA;
    m_graph = std::make_unique<QWPainter>(m_options.deck, deckA ? ModelGraph::INPUT_1 : ModelGraph::INPUT_2,
                                          m_main, m_secondary, nullptr);
    m_graph->setStyleSheet(styleSheet());
    if (!readCurves() || !readAreas() || !readSample()) {
        return false;
    }
    m_graph->resize(m_options.size);
    m_graph->refreshVariable(); // a widget that isn't shown gets no resize event before its first picture
    m_graph->initGraph();
    if (!chooseRange()) {
        return false;
    }
    placeCursor();
    m_graph->finishWavePictures();
    return true;
}

void TakePicture::applySettings() const {
    Setting& setting = *Singleton::instance().setting();
    applyStoredPerformance(setting, *Singleton::instance().performance());
    setting.applyLanguage(setting.language());
    setting.setGraphVinylPosition(m_options.disc);
    if (m_options.shini) {
        setting.setGraphShiniMode(*m_options.shini);
    }
    if (m_options.fader) {
        setting.setGraphCurveCrossFaderOff(*m_options.fader != ClosedFader::Hidden);
        setting.setGraphCurveCrossFaderOffInvertColor(*m_options.fader == ClosedFader::Inverted);
    }
    if (m_options.width) {
        setting.setCurveOnSize(*m_options.width);
    }
    if (m_options.direct) {
        setting.setGraphDirectSound(*m_options.direct);
    }
    if (m_options.grid) {
        setting.setGraphGrid(*m_options.grid);
    }
    if (m_options.logo) {
        setting.setGraphLogo(*m_options.logo);
    }
}

bool TakePicture::readCurves() {
    QString error;
    const auto bpm = readTake(m_options.take, *m_graph->mainCurve(), error);
    if (!bpm) {
        return fail(error);
    }
    const double rate = Singleton::instance().performance()->sample(m_options.deck)->sampleRate();
    restoreSpeeds(m_main, rate);
    setTempo(*bpm);
    if (!m_options.reference.isEmpty() && !readTake(m_options.reference, *m_graph->secondaryCurve(), error)) {
        return fail(error);
    }
    return true;
}

void TakePicture::setTempo(std::int32_t ofTake) {
    RecordingLooperTraining& training = *Singleton::instance().recordingLooperTraining();
    m_ownTempo = !m_options.bpm && ofTake >= DrawOptions::slowest && ofTake <= DrawOptions::fastest;
    const double bpm = m_options.bpm.value_or(m_ownTempo ? ofTake : training.bpmEffective());
    training.setBpmValue(bpm);
    training.setBpmEffective(bpm);
    training.updateBeatLength(m_options.deck, Singleton::instance().performance()->sample(m_options.deck));
    m_beatLength = training.beatLength(m_options.deck);
}

bool TakePicture::readAreas() {
    const QString& path = m_options.phrasing;
    if (path.isEmpty()) {
        return true;
    }
    if (const QFileInfo info(path); !info.isFile()) {
        return fail(info.exists() ? u"cannot read %1: it is no plain file"_s.arg(path)
                                  : u"cannot read %1: there is no such file"_s.arg(path));
    }
    const auto areas = readGRPFile(path);
    if (!areas) {
        return fail(u"%1 is no phrasing file (.grp) with areas that don't overlap"_s.arg(path));
    }
    Singleton::instance().phrasing()->setListPhrasing(m_options.deck, areas->listPhrasing());
    m_graph->refreshListManagePhrasing();
    return true;
}

bool TakePicture::readSample() {
    const QString& path = m_options.wave;
    if (path.isEmpty()) {
        return true;
    }
    if (const QFileInfo info(path); info.exists() && !info.isFile()) {
        return fail(u"cannot read %1: it is no plain file"_s.arg(path));
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return fail(u"cannot read %1: %2"_s.arg(path, file.errorString()));
    }
    const WavHeader header = readWavHeader(file);
    file.close();
    if (!header.tagged || header.format != 1 || header.bitsPerSample != 16 || header.channels == 0) {
        return fail(u"%1 is no 16-bit PCM file with a plain header"_s.arg(path));
    }
    std::shared_ptr<const WaveData> wave = readWave(path);
    if (wave->isEmpty()) {
        return fail(u"%1 holds no sound"_s.arg(path));
    }
    Singleton::instance().wavPhrasing()->setWav(m_options.deck, std::move(wave));
    m_graph->generateWavPhrasing();
    return true;
}

bool TakePicture::chooseRange() {
    if (!m_options.beats) {
        m_graph->modeAutoresize();
        if (m_graph->xRange().span() > 0.0) {
            return true;
        }
        return fail(u"%1 is longer than a graph can show: take a part of it with --from and --beats"_s.arg(
            m_options.take));
    }
    const double first = std::trunc(Singleton::instance().recordingLooperTraining()->firstMetronome());
    const double from = first + m_options.from * m_beatLength;
    const double to = from + *m_options.beats * m_beatLength;
    // Down, so that the line of a beat at the left edge lies within.
    const FrameRange range{truncated(std::floor(from)), truncated(to)};
    if (std::abs(from) > behindEverything || to > behindEverything || !acceptsRange(range, m_beatLength)) {
        return fail(u"--from and --beats ask for a stretch that a graph can't show"_s, true);
    }
    const CurvePointStore::View points = m_graph->mainCurve()->points();
    if (range.to <= points.front().time || range.from >= points.back().time) {
        return fail(u"--from and --beats leave the take out, which lies between the beats %1 and %2"_s.arg(
                        beatText((points.front().time - first) / m_beatLength),
                        beatText((points.back().time - first) / m_beatLength)),
                    true);
    }
    m_graph->setXRange(range);
    return true;
}

void TakePicture::placeCursor() const {
    // Behind the end it can't be seen, and what follows it shows the take's last moment.
    Singleton::instance().time()->setCursor(
        m_options.deck, m_options.cursor ? std::trunc(*m_options.cursor * m_beatLength) : behindEverything);
}

QImage TakePicture::image() {
    QImage image(m_options.imageSize(), QImage::Format_RGB32);
    if (image.isNull()) {
        return image;
    }
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    m_graph->ensurePolished();
    image.fill(m_graph->palette().color(QPalette::Window)); // the graph may end within the last pixels
    if (m_options.scale >= 1.0) {
        image.setDevicePixelRatio(m_options.scale);
        m_graph->render(&image);
    } else {
        QPainter painter(&image); // takes no ratio below 1 from the image
        painter.scale(m_options.scale, m_options.scale);
        m_graph->render(&painter);
    }
    return image;
}

QString TakePicture::facts() const {
    const RecordingLooperTraining& training = *Singleton::instance().recordingLooperTraining();
    const GraphRange x = m_graph->xRange();
    const double first = std::trunc(training.firstMetronome());
    const QSize size = m_options.imageSize();
    return u"points %1\ntempo %2%3\nbeats %4 to %5\npixels %6x%7\n%8"_s.arg(m_main.size())
        .arg(training.bpmEffective(), 0, 'g', 10)
        .arg(m_ownTempo      ? u" of the take"_s
             : m_options.bpm ? QString()
                             : u" by default"_s)
        .arg(beatText((x.min - first) / m_beatLength), beatText((x.max - first) / m_beatLength))
        .arg(size.width())
        .arg(size.height())
        .arg(referenceIsLost() ? u"reference out of view: it starts above the take\n"_s : QString());
}

bool TakePicture::referenceIsLost() const {
    return m_options.display == ModelDisplay::NORMAL &&
           firstPositionDifference(m_main.view(), m_secondary.view()) <= -1.0;
}
