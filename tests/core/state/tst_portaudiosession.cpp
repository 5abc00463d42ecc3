#include "state/portaudiosession.h"
#include "support/fakeportaudio.h"
#include "support/testmain.h"

#include <QTest>

#include <optional>

#include <sys/stat.h>
#include <unistd.h>

namespace {
int standing() {
    return FakePortAudio::instance().initialised;
}
} // namespace

class tst_PortAudioSession : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanup() {
        QVERIFY(!PortAudioSession::blocked());
        FakePortAudio::instance().startable = true;
        FakePortAudio::instance().initialised = 0;
    }

    void theLibraryIsUpForAsLongAsASessionLives() {
        {
            const PortAudioSession session;
            QVERIFY(session.ok());
            QCOMPARE(standing(), 1);
        }
        QCOMPARE(standing(), 0);
    }

    void sessionsCount() {
        std::optional<PortAudioSession> first(std::in_place);
        {
            const PortAudioSession second;
            QCOMPARE(standing(), 2);
        }
        QCOMPARE(standing(), 1);
        first.reset();
        QCOMPARE(standing(), 0);
    }

    void aSessionThatCouldntStartEndsNothing() {
        FakePortAudio::instance().startable = false;
        {
            const PortAudioSession session;
            QVERIFY(!session.ok());
        }
        QCOMPARE(standing(), 0);
    }

    void aReleasedSessionLeavesTheLibraryUp() {
        {
            PortAudioSession session;
            session.release();
            QVERIFY(!session.ok());
        }
        QCOMPARE(standing(), 1);
    }

    void aBlockedLibraryIsNeitherStartedNorStopped() {
        const int calls = FakePortAudio::instance().initialiseCalls;
        {
            std::optional<PortAudioSession> open(std::in_place);
            PortAudioSession::block();
            QVERIFY(PortAudioSession::blocked());
            const PortAudioSession refused;
            QVERIFY(!refused.ok());
            QCOMPARE(int(FakePortAudio::instance().initialiseCalls), calls + 1);
            open.reset();
            QCOMPARE(standing(), 1); // left as it stood
        }
        PortAudioSession::unblock();
        QVERIFY(PortAudioSession().ok());
    }

    void oneThatComesBackDoesntFreeWhatAnotherOneHolds() {
        PortAudioSession::block();
        PortAudioSession::block();
        PortAudioSession::unblock();
        QVERIFY(PortAudioSession::blocked());
        QVERIFY(!PortAudioSession().ok());
        PortAudioSession::unblock();
        QVERIFY(!PortAudioSession::blocked());
        QVERIFY(PortAudioSession().ok());
    }

    void theErrorOutputComesBack() {
        struct stat before {};
        struct stat after {};
        QCOMPARE(fstat(STDERR_FILENO, &before), 0);
        { const PortAudioSession session; }
        QCOMPARE(fstat(STDERR_FILENO, &after), 0);
        QCOMPARE(after.st_dev, before.st_dev);
        QCOMPARE(after.st_ino, before.st_ino);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_PortAudioSession)
#include "tst_portaudiosession.moc"
