#include "recordingloopertraining.h"

#include "model/wholenumber.h"

template <typename T> void RecordingLooperTraining::assign(T& field, const T& value) {
    field = value;
    Q_EMIT s_Update();
}

void RecordingLooperTraining::setNumber(int value) {
    assign(m_number, value);
}
void RecordingLooperTraining::setActivatedMode(ModelActivatedMode::EnumActivatedMode value) {
    assign(m_activatedMode, value);
}
void RecordingLooperTraining::setInput(ModelInput::EnumInput value) {
    assign(m_input, value);
}
void RecordingLooperTraining::setTitle(const QString& value) {
    assign(m_title, value);
}
void RecordingLooperTraining::setAuthor(const QString& value) {
    assign(m_author, value);
}
void RecordingLooperTraining::setUrl(const QString& value) {
    assign(m_url, value);
}
void RecordingLooperTraining::setTrackMain(const QString& value) {
    assign(m_trackMain, value);
}
void RecordingLooperTraining::setFirstMetronome(double frames) {
    assign(m_firstMetronome, frames);
}
void RecordingLooperTraining::setTrackA(const QString& value) {
    assign(m_trackA, value);
}
void RecordingLooperTraining::setTrackB(const QString& value) {
    assign(m_trackB, value);
}
void RecordingLooperTraining::setColorFileA(const QString& value) {
    assign(m_colorFileA, value);
}
void RecordingLooperTraining::setColorFileB(const QString& value) {
    assign(m_colorFileB, value);
}

void RecordingLooperTraining::setCurveFileA(const QString& path) {
    assign(m_curveFileA, path);
    Q_EMIT s_ResetCurve_1();
    if (path.endsWith(Constant::Extension::curve)) {
        Q_EMIT s_OpenCurve_1(path, true);
    }
}

void RecordingLooperTraining::setCurveFileB(const QString& path) {
    assign(m_curveFileB, path);
    Q_EMIT s_ResetCurve_2();
    if (path.endsWith(Constant::Extension::curve)) {
        Q_EMIT s_OpenCurve_2(path, true);
    }
}

void RecordingLooperTraining::setBpmValue(double bpm) {
    m_bpmValue = bpm;
    Q_EMIT s_UpdateBpm(truncated(bpm)); // a broken file may hold any number
}

void RecordingLooperTraining::setBpmEffective(double bpm) {
    m_bpmEffective = bpm;
    m_factorSpeed = bpm / m_bpmValue;
}

void RecordingLooperTraining::updateBeatLength(ModelGraph::EnumGraph name, const QSample* sample) {
    m_beatLength[beatIndex(name)] = sample->samplesPerMinute() / m_bpmEffective;
}
