#include "setting.h"

#include "model/constants.h"
#include "model/enumtext.h"
#include "model/modellanguage.h"
#include "model/modelshini.h"
#include "model/modeltimecode.h"
#include "pastedtext.h"
#include "pathfile.h"
#include "storedperformance.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSaveFile>

#include <cmath>
#include <limits>

namespace {

using namespace Qt::Literals::StringLiterals;

namespace Key {
constexpr auto inputDeckA = "device/inputDeckA"_L1;
constexpr auto inputDeckB = "device/inputDeckB"_L1;
constexpr auto inputMaster = "device/inputMaster"_L1;
constexpr auto inputMidi = "device/inputMidi"_L1;
constexpr auto learnMidi = "device/learnMidi"_L1;
constexpr auto outputMaster = "device/outputMaster"_L1;
constexpr auto outputDeckA = "device/outputDeckA"_L1;
constexpr auto outputDeckB = "device/outputDeckB"_L1;
constexpr auto crossFaderLeft = "device/crossFaderLeft"_L1;
constexpr auto crossFaderRight = "device/crossFaderRight"_L1;
constexpr auto name = "device/name"_L1;
constexpr auto timecode = "device/timecode"_L1;
constexpr auto vinylDeltaPositionA = "setting/vinylDeltaPositionA"_L1;
constexpr auto vinylDeltaPositionB = "setting/vinylDeltaPositionB"_L1;
constexpr auto curveOnSize = "display/curveOnSize"_L1;
constexpr auto volumeLooper = "device/volumeLooper"_L1;
constexpr auto volumeDeck = "device/volumeDeckA/B"_L1;
constexpr auto volumeRecord = "device/volumeRecordA/B"_L1;
constexpr auto volumeMetronum = "device/volumeMetronum"_L1;
constexpr auto inputBufferA = "processing/inputBufferA"_L1;
constexpr auto inputBufferB = "processing/inputBufferB"_L1;
constexpr auto outputBuffer = "processing/outputBuffer"_L1;
constexpr auto displayFrequency = "processing/displayFrequency"_L1;
constexpr auto optionGenerateCutOffSound = "device/optionGenerateCutOffSound"_L1;
constexpr auto optionHamsterMode = "device/optionHamsterMode"_L1;
constexpr auto latency = "processing/latency"_L1;
constexpr auto graphGrid = "display/graphGrid"_L1;
constexpr auto graphCurveCrossFaderOff = "display/graphCurveCrossFaderOff"_L1;
constexpr auto graphCurveCrossFaderOffInvertColor = "display/graphCurveCrossFaderOffInvertColor"_L1;
constexpr auto graphCurveNoSound = "display/graphCurveNoSound"_L1;
constexpr auto graphShiniMode = "display/graphShiniMode"_L1;
constexpr auto graphVinylPosition = "display/graphVinylPosition"_L1;
constexpr auto graphVinylColorRotation = "display/graphVinylColorRotation"_L1;
constexpr auto graphDirectSound = "display/graphDirectSound"_L1;
constexpr auto graphLogo = "display/graph/Logo"_L1;
constexpr auto language = "display/language"_L1;
constexpr auto style = "display/style"_L1;
} // namespace Key

struct Default {
    QLatin1StringView key;
    QVariant value;
};

// In the order in which a first start writes them. The two output pairs have none: they are missing until
// the user chooses them.
const QList<Default>& defaults() {
    static const QList<Default> all{
        {Key::inputDeckA, QString()},
        {Key::inputDeckB, QString()},
        {Key::inputMaster, QString()},
        {Key::inputMidi, QString()},
        {Key::learnMidi, QString()},
        {Key::outputMaster, QString()},
        {Key::crossFaderLeft, 0},
        {Key::crossFaderRight, 127},
        {Key::name, QStringLiteral("Gramo Scope")},
        {Key::timecode, QStringLiteral("generic_V2")},
        {Key::vinylDeltaPositionA, 0},
        {Key::vinylDeltaPositionB, 0},
        {Key::curveOnSize, 8},
        {Key::volumeLooper, 50},
        {Key::volumeDeck, 50},
        {Key::volumeRecord, 50},
        {Key::volumeMetronum, 50},
        {Key::inputBufferA, 64},
        {Key::inputBufferB, 64},
        {Key::outputBuffer, 64},
        {Key::displayFrequency, 60},
        {Key::optionGenerateCutOffSound, true},
        {Key::optionHamsterMode, false},
        {Key::latency, false},
        {Key::graphGrid, true},
        {Key::graphCurveCrossFaderOff, true},
        {Key::graphCurveCrossFaderOffInvertColor, false},
        {Key::graphCurveNoSound, true},
        {Key::graphShiniMode, QString()},
        {Key::graphVinylPosition, true},
        {Key::graphVinylColorRotation, false},
        {Key::graphDirectSound, true},
        {Key::graphLogo, true},
        {Key::language, QStringLiteral("en_US")},
        {Key::style, QStringLiteral("Gramoscope")},
    };
    return all;
}

QVariant defaultOf(QLatin1StringView key) {
    for (const Default& entry : defaults()) {
        if (entry.key == key) {
            return entry.value;
        }
    }
    return {};
}

constexpr double highestNumber = std::numeric_limits<double>::max();
constexpr double lowestNumber = -highestNumber;
constexpr double loudest = 100.0;   // of a volume
constexpr int fullController = 127; // of a MIDI controller

// Users paste device lines into the file, and these may hold anything. Returns the file's name.
QString mended(const QString& fileName) {
    const QList<QLatin1StringView> keys{Key::inputDeckA,   Key::inputDeckB,  Key::inputMaster,
                                        Key::outputMaster, Key::outputDeckA, Key::outputDeckB,
                                        Key::inputMidi,    Key::name};
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly)) {
        return fileName;
    }
    const QByteArray content = file.readAll();
    file.close();
    if (const QByteArray quoted = withQuotedTexts(content, keys); quoted != content) {
        QSaveFile whole(fileName);
        if (whole.open(QIODevice::WriteOnly) && whole.write(quoted) == quoted.size()) {
            whole.commit();
        }
    }
    return fileName;
}

// Parses the stored text into the getter's cache.
template <typename Device> Device* parsed(std::unique_ptr<Device>& cache, const QString& text) {
    cache = std::make_unique<Device>(text);
    return cache.get();
}

} // namespace

Setting::Setting(QObject* parent) : Setting(pathInput(Constant::File::config), parent) {}

Setting::Setting(const QString& fileName, QObject* parent)
    : QObject(parent), m_settings(mended(fileName), QSettings::IniFormat) {
    for (const Default& entry : defaults()) {
        if (!m_settings.contains(entry.key)) {
            m_settings.setValue(entry.key, entry.value);
        }
    }
}

QString Setting::text(QLatin1StringView key) const {
    const QVariant stored = m_settings.value(key);
    // A text with commas that couldn't be quoted in the file comes as a list.
    return stored.typeId() == QMetaType::QStringList ? stored.toStringList().join(u',') : stored.toString();
}

bool Setting::flag(QLatin1StringView key) const {
    const QString stored = text(key).toLower();
    if (stored == QStringLiteral("true") || stored == QStringLiteral("1")) {
        return true;
    }
    if (stored == QStringLiteral("false") || stored == QStringLiteral("0")) {
        return false;
    }
    return defaultOf(key).toBool();
}

int Setting::integer(QLatin1StringView key, int lowest, int highest) const {
    bool ok = false;
    const int stored = text(key).toInt(&ok);
    return ok && stored >= lowest && stored <= highest ? stored : defaultOf(key).toInt();
}

double Setting::number(QLatin1StringView key, double lowest, double highest) const {
    bool ok = false;
    const double stored = text(key).toDouble(&ok);
    return ok && std::isfinite(stored) && stored >= lowest && stored <= highest ? stored
                                                                                : defaultOf(key).toDouble();
}

QString Setting::choice(QLatin1StringView key, const QStringList& choices) const {
    return chosenText(choices, text(key), int(choices.indexOf(defaultOf(key).toString())));
}

void Setting::write(QLatin1StringView key, const QVariant& value) {
    ++m_generation;
    m_settings.setValue(key, value);
}

ObjectAudioDevice* Setting::inputDeckA() {
    return parsed(m_inputDeckA, text(Key::inputDeckA));
}
void Setting::setInputDeckA(const QString& text) {
    write(Key::inputDeckA, text);
}

ObjectAudioDevice* Setting::inputDeckB() {
    return parsed(m_inputDeckB, text(Key::inputDeckB));
}
void Setting::setInputDeckB(const QString& text) {
    write(Key::inputDeckB, text);
}

ObjectAudioDevice* Setting::inputMaster() {
    return parsed(m_inputMaster, text(Key::inputMaster));
}
void Setting::setInputMaster(const QString& text) {
    write(Key::inputMaster, text);
}

ObjectMidiDevice* Setting::inputMidi() {
    return parsed(m_inputMidi, text(Key::inputMidi));
}
QString Setting::inputMidiName() const {
    return ObjectMidiDevice(text(Key::inputMidi)).name();
}
void Setting::setInputMidi(const QString& text) {
    write(Key::inputMidi, text);
}

QString Setting::learnMidi() const {
    return text(Key::learnMidi);
}

void Setting::setLearnMidi(int channel, int controller) {
    write(Key::learnMidi, QStringLiteral("%1/%2").arg(channel).arg(controller));
}

ObjectAudioDevice* Setting::outputMaster() {
    return parsed(m_outputMaster, text(Key::outputMaster));
}
void Setting::setOutputMaster(const QString& text) {
    write(Key::outputMaster, text);
}

ObjectAudioDevice* Setting::outputDeckA() {
    return parsed(m_outputDeckA, text(Key::outputDeckA));
}
void Setting::setOutputDeckA(const QString& text) {
    write(Key::outputDeckA, text);
}

ObjectAudioDevice* Setting::outputDeckB() {
    return parsed(m_outputDeckB, text(Key::outputDeckB));
}
void Setting::setOutputDeckB(const QString& text) {
    write(Key::outputDeckB, text);
}

int Setting::crossFaderLeft() const {
    return integer(Key::crossFaderLeft, 0, fullController);
}
void Setting::setCrossFaderLeft(int value) {
    write(Key::crossFaderLeft, value);
}

int Setting::crossFaderRight() const {
    return integer(Key::crossFaderRight, 0, fullController);
}
void Setting::setCrossFaderRight(int value) {
    write(Key::crossFaderRight, value);
}

QString Setting::name() const {
    return text(Key::name);
}
void Setting::setName(const QString& name) {
    write(Key::name, name);
}

QString Setting::timecode() const {
    return enumText(enumValue(text(Key::timecode), ModelTimecode::generic_V2));
}
void Setting::setTimecode(const QString& name) {
    write(Key::timecode, name);
}

double Setting::vinylDeltaPositionA() const {
    return number(Key::vinylDeltaPositionA, lowestNumber, highestNumber);
}

void Setting::setVinylDeltaPositionA(double degrees) {
    write(Key::vinylDeltaPositionA, QString::number(degrees, 'g', 6));
}

double Setting::vinylDeltaPositionB() const {
    return number(Key::vinylDeltaPositionB, lowestNumber, highestNumber);
}

void Setting::setVinylDeltaPositionB(double degrees) {
    write(Key::vinylDeltaPositionB, QString::number(degrees, 'g', 6));
}

int Setting::curveOnSize() const {
    return integer(Key::curveOnSize, 1, std::numeric_limits<int>::max());
}
void Setting::setCurveOnSize(int width) {
    write(Key::curveOnSize, width);
}

double Setting::volumeLooper() const {
    return number(Key::volumeLooper, 0.0, loudest);
}
void Setting::setVolumeLooper(double value) {
    write(Key::volumeLooper, value);
}

double Setting::volumeDeck() const {
    return number(Key::volumeDeck, 0.0, loudest);
}
void Setting::setVolumeDeck(double value) {
    write(Key::volumeDeck, value);
}

double Setting::volumeRecord() const {
    return number(Key::volumeRecord, 0.0, loudest);
}
void Setting::setVolumeRecord(double value) {
    write(Key::volumeRecord, value);
}

double Setting::volumeMetronum() const {
    return number(Key::volumeMetronum, 0.0, loudest);
}
void Setting::setVolumeMetronum(double value) {
    write(Key::volumeMetronum, value);
}

QString Setting::inputBufferA() const {
    return choice(Key::inputBufferA, bufferChoices());
}
void Setting::setInputBufferA(const QString& text) {
    write(Key::inputBufferA, text);
}

QString Setting::inputBufferB() const {
    return choice(Key::inputBufferB, bufferChoices());
}
void Setting::setInputBufferB(const QString& text) {
    write(Key::inputBufferB, text);
}

QString Setting::outputBuffer() const {
    return choice(Key::outputBuffer, bufferChoices());
}
void Setting::setOutputBuffer(const QString& text) {
    write(Key::outputBuffer, text);
}

QString Setting::displayFrequency() const {
    return choice(Key::displayFrequency, displayFrequencyChoices());
}
void Setting::setDisplayFrequency(const QString& text) {
    write(Key::displayFrequency, text);
}

bool Setting::optionGenerateCutOffSound() const {
    return flag(Key::optionGenerateCutOffSound);
}
void Setting::setOptionGenerateCutOffSound(bool on) {
    write(Key::optionGenerateCutOffSound, on);
}

bool Setting::optionHamsterMode() const {
    return flag(Key::optionHamsterMode);
}
void Setting::setOptionHamsterMode(bool on) {
    write(Key::optionHamsterMode, on);
}

bool Setting::latency() const {
    return flag(Key::latency);
}
void Setting::setLatency(bool on) {
    write(Key::latency, on);
}

bool Setting::graphGrid() const {
    return flag(Key::graphGrid);
}
void Setting::setGraphGrid(bool on) {
    write(Key::graphGrid, on);
}

bool Setting::graphCurveCrossFaderOff() const {
    return flag(Key::graphCurveCrossFaderOff);
}
void Setting::setGraphCurveCrossFaderOff(bool on) {
    write(Key::graphCurveCrossFaderOff, on);
}

bool Setting::graphCurveCrossFaderOffInvertColor() const {
    return flag(Key::graphCurveCrossFaderOffInvertColor);
}
void Setting::setGraphCurveCrossFaderOffInvertColor(bool on) {
    write(Key::graphCurveCrossFaderOffInvertColor, on);
}

bool Setting::graphCurveNoSound() const {
    return flag(Key::graphCurveNoSound);
}
void Setting::setGraphCurveNoSound(bool on) {
    write(Key::graphCurveNoSound, on);
}

int Setting::graphShiniMode() const {
    return integer(Key::graphShiniMode, ModelShini::Undefined, ModelShini::Middle);
}
void Setting::setGraphShiniMode(int mode) {
    write(Key::graphShiniMode, mode);
}

bool Setting::graphVinylPosition() const {
    return flag(Key::graphVinylPosition);
}
void Setting::setGraphVinylPosition(bool on) {
    write(Key::graphVinylPosition, on);
}

bool Setting::graphVinylColorRotation() const {
    return flag(Key::graphVinylColorRotation);
}
void Setting::setGraphVinylColorRotation(bool on) {
    write(Key::graphVinylColorRotation, on);
}

bool Setting::graphDirectSound() const {
    return flag(Key::graphDirectSound);
}
void Setting::setGraphDirectSound(bool on) {
    write(Key::graphDirectSound, on);
}

bool Setting::graphLogo() const {
    return flag(Key::graphLogo);
}
void Setting::setGraphLogo(bool on) {
    write(Key::graphLogo, on);
}

QString Setting::language() const {
    return enumText(enumValue(text(Key::language), ModelLanguage::en_US));
}
void Setting::setLanguage(const QString& name) {
    write(Key::language, name);
}

QString Setting::style() const {
    return text(Key::style);
}

void Setting::setStyle(const QString& name) {
    write(Key::style, name);
    Q_EMIT s_updateStyle(name);
}

void Setting::applyLanguage(const QString& name) {
    QCoreApplication::removeTranslator(&m_translator);
    const QString file = QStringLiteral("Gramoworks_") + name + QStringLiteral(".qm");
    if (m_translator.load(pathTranslation(file))) {
        QCoreApplication::installTranslator(&m_translator);
    }
}
