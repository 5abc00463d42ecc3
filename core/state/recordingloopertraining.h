#pragma once

#include "model/constants.h"
#include "model/deckindex.h"
#include "model/modelactivatedmode.h"
#include "model/modelinput.h"
#include "model/qsample.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QUuid>

#include <array>

/// What the user is practising: the active entry, its tempo, its reference curves and the speed factor. Each
/// setter of a shown value announces the change. GUI thread; read by what draws the graphs, too, for which
/// that one waits.
class RecordingLooperTraining : public QObject {
    Q_OBJECT
public:
    explicit RecordingLooperTraining(QObject* parent = nullptr) : QObject(parent) {}

    int number() const { return m_number; }
    ModelActivatedMode::EnumActivatedMode activatedMode() const { return m_activatedMode; }
    ModelInput::EnumInput input() const { return m_input; }
    QString filePath() const { return m_filePath; }
    QString title() const { return m_title; }
    QString author() const { return m_author; }
    QString url() const { return m_url; }
    double bpmValue() const { return m_bpmValue; }         ///< written tempo of the material
    double factorSpeed() const { return m_factorSpeed; }   ///< bpmEffective / bpmValue
    double bpmEffective() const { return m_bpmEffective; } ///< tempo after the speed slider
    /// Frames a beat of the deck: INPUT_DECKB has its own, every other name gives deck A's.
    double beatLength(ModelGraph::EnumGraph name) const { return m_beatLength[beatIndex(name)]; }
    QString trackMain() const { return m_trackMain; }
    double firstMetronome() const { return m_firstMetronome; } ///< frame of the first click
    QString trackA() const { return m_trackA; }
    QString trackB() const { return m_trackB; }
    QString curveFileA() const { return m_curveFileA; }
    QString curveFileB() const { return m_curveFileB; }
    QString colorFileA() const { return m_colorFileA; }
    QString colorFileB() const { return m_colorFileB; }
    QByteArray fileHash() const { return m_fileHash; }
    QUuid id() const { return m_id; }
    QString tabName() const { return m_tabName; }

    // These announce s_Update.
    void setNumber(int value);
    void setActivatedMode(ModelActivatedMode::EnumActivatedMode value);
    void setInput(ModelInput::EnumInput value);
    void setTitle(const QString& value);
    void setAuthor(const QString& value);
    void setUrl(const QString& value);
    void setTrackMain(const QString& value);
    void setFirstMetronome(double frames);
    void setTrackA(const QString& value);
    void setTrackB(const QString& value);
    void setColorFileA(const QString& value);
    void setColorFileB(const QString& value);
    /// Drops the old reference curve and, for a name that ends in ".grw", asks for the new one.
    void setCurveFileA(const QString& path);
    void setCurveFileB(const QString& path);

    void setFilePath(const QString& value) { m_filePath = value; }
    void setFileHash(const QByteArray& value) { m_fileHash = value; }
    void setId(const QUuid& value) { m_id = value; }
    void setTabName(const QString& value) { m_tabName = value; }

    /// Announces s_UpdateBpm; the speed factor stays as it is.
    void setBpmValue(double bpm);
    /// Sets the tempo in effect and from it the factor. A bpmValue of 0 gives an infinite factor.
    void setBpmEffective(double bpm);
    void updateBeatLength(ModelGraph::EnumGraph name, const QSample* sample);

Q_SIGNALS:
    void s_Update();
    void s_UpdateBpm(int bpm);
    void s_OpenCurve_1(QString path, bool loadBpm);
    void s_OpenCurve_2(QString path, bool loadBpm);
    void s_ResetCurve_1();
    void s_ResetCurve_2();

private:
    static std::size_t beatIndex(ModelGraph::EnumGraph name) {
        return name == ModelGraph::INPUT_DECKB ? 1U : 0U;
    }
    template <typename T> void assign(T& field, const T& value);

    int m_number = 0;
    ModelActivatedMode::EnumActivatedMode m_activatedMode = ModelActivatedMode::Looper;
    ModelInput::EnumInput m_input = ModelInput::TEXT_A;
    QString m_filePath;
    QString m_title;
    QString m_author;
    QString m_url;
    double m_bpmValue = 84.0;
    double m_factorSpeed = 1.0;
    double m_bpmEffective = 84.0;
    std::array<double, 2> m_beatLength{60.0 * 48000 / 88, 60.0 * 48000 / 88};
    QString m_trackMain;
    double m_firstMetronome = 0.0;
    QString m_trackA;
    QString m_trackB;
    QString m_curveFileA;
    QString m_curveFileB;
    QString m_colorFileA;
    QString m_colorFileB;
    QByteArray m_fileHash;
    QUuid m_id = Constant::defaultId;
    QString m_tabName = QStringLiteral("Looper");
};
