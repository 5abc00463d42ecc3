#include "state/mode.h"
#include "state/recordingloopertraining.h"
#include "state/sessionswitch.h"
#include "state/singleton.h"
#include "support/datafolder.h"
#include "support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_SessionSwitch : public QObject {
    Q_OBJECT

    QStringList m_heard;

    static Mode& mode() { return *Singleton::instance().mode(); }

private Q_SLOTS:
    void initTestCase() {
        ownDataFolder();
        Singleton::instance().recordingLooperTraining()->setTabName(u"Tab"_s);
        connect(&mode(), &Mode::s_RunApp, this, [this] { m_heard << u"run"_s; });
        connect(&mode(), &Mode::s_StopApp, this, [this] { m_heard << u"stop"_s; });
        connect(&mode(), &Mode::s_RefreshMenu, this, [this](QUuid id, const QString& tab) {
            QCOMPARE(id, Singleton::instance().recordingLooperTraining()->id());
            m_heard << u"refresh "_s + tab;
        });
    }

    void init() {
        mode().modeTraining_off();
        mode().modeTrainingLock_off();
        m_heard.clear();
    }

    void aPressArmsTheSessionAndStartsItAMomentLater() {
        SessionSwitch play;
        play.press();
        QVERIFY(mode().modeTrainingLock());
        QVERIFY(!mode().modeTraining());
        QVERIFY(m_heard.isEmpty());
        QTRY_VERIFY(mode().modeTraining());
        QCOMPARE(m_heard, QStringList({u"run"_s, u"refresh Tab"_s}));
        QVERIFY(
            mode().modeTrainingLock()); // until the end of the count-in, which isn't this class's business
    }

    void aPressWhileTheSessionIsArmedIsIgnored() {
        SessionSwitch play;
        play.press();
        play.press();
        play.press();
        QTRY_VERIFY(mode().modeTraining());
        play.press(); // counting in
        QTest::qWait(2 * SessionSwitch::armingTime);
        QCOMPARE(m_heard, QStringList({u"run"_s, u"refresh Tab"_s}));
        QVERIFY(mode().modeTraining());
    }

    void aPressOnARunningSessionStopsItAndStartsNone() {
        SessionSwitch play;
        mode().modeTraining_on();
        m_heard.clear();
        play.press();
        QVERIFY(!mode().modeTraining());
        QVERIFY(!mode().modeTrainingLock());
        QCOMPARE(m_heard, QStringList({u"stop"_s, u"refresh Tab"_s}));
        QTest::qWait(2 * SessionSwitch::armingTime);
        QVERIFY(!mode().modeTraining());
        QCOMPARE(m_heard.size(), 2);
    }

    void aSwitchThatIsGoneStartsNothing() {
        {
            SessionSwitch play;
            play.press();
        }
        QTest::qWait(2 * SessionSwitch::armingTime);
        QVERIFY(!mode().modeTraining());
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_SessionSwitch)
#include "tst_sessionswitch.moc"
