#pragma once
// The whole program in this process, worked by its buttons, on a data folder of the test's own.

#include "button/qb2push.h"
#include "button/qbtoggle.h"
#include "curve/qcurve.h"
#include "menu/qwgridtool.h"
#include "module/connection.h"
#include "module/workerrecordermultichannelobject.h"
#include "painter/qwpainter.h"
#include "qwview.h"
#include "state/mode.h"
#include "state/pathfile.h"
#include "state/performance.h"
#include "state/recordingloopertraining.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "state/time.h"

#include <QDir>
#include <QTest>

#include <memory>

class Session {
public:
    /// Stores the devices that the filters pick out of the catalogue (the first entry that contains all words
    /// of a filter) and starts the program. An empty filter stores none.
    static void store(const QStringList& deckA, const QStringList& deckB, const QStringList& master) {
        const QStringList inputs = Singleton::instance().audioDeviceList(ModelAudioDeviceInfo::AUDIO_INPUT);
        Setting& setting = *Singleton::instance().setting();
        setting.setInputDeckA(pick(inputs, deckA));
        setting.setInputDeckB(pick(inputs, deckB));
        setting.setInputMaster(pick(inputs, master));
    }

    Session() {
        m_connection = std::make_unique<Connection>();
        m_connection->resize(1200, 600);
        m_connection->show();
    }

    /// The state that outlives the program's window goes back to its start.
    ~Session() {
        setRecording(false);
        m_connection.reset();
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    Connection& connection() { return *m_connection; }
    QWGridTool& tool() { return *m_connection->view()->gridTool(); }
    static Mode& mode() { return *Singleton::instance().mode(); }

    void setRecording(bool on) {
        if (tool().recordToggle()->isChecked() != on) {
            QTest::mouseClick(tool().recordToggle(), Qt::LeftButton);
        }
    }
    /// Presses play and waits through the count-in.
    bool start() {
        QTest::mouseClick(tool().playButton(), Qt::LeftButton);
        return QTest::qWaitFor([] { return mode().modeRun(); }, 15000);
    }
    /// Presses play again; the files are written when this returns.
    bool stop() {
        QTest::mouseClick(tool().playButton(), Qt::LeftButton);
        return QTest::qWaitFor([] { return !mode().modeTraining(); }, 15000);
    }
    /// Waits until deck A's curve holds as much, however long the machine takes for it.
    bool hear(double seconds) const {
        const QCurve* curve = m_connection->view()->painterDeckA()->mainCurve();
        constexpr double pointsASecond = 48000.0 / 64.0;
        return QTest::qWaitFor([&] { return double(curve->points().size()) >= seconds * pointsASecond; },
                               60000);
    }
    /// The folder of the running or last recording.
    static QDir folder() {
        return QDir(pathRecording(Singleton::instance().pathFile()->directoryRecording()));
    }
    static QStringList files(const QString& pattern) {
        return folder().entryList({pattern}, QDir::Files, QDir::Name);
    }

private:
    static QString pick(const QStringList& entries, const QStringList& words) {
        if (words.isEmpty()) {
            return {};
        }
        for (const QString& entry : entries) {
            bool all = !entry.startsWith(QLatin1StringView("-----"));
            for (const QString& word : words) {
                all = all && entry.contains(word);
            }
            if (all) {
                return entry;
            }
        }
        return {};
    }

    std::unique_ptr<Connection> m_connection;
};
