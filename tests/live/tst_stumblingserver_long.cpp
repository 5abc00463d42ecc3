// A sound server that stands still for moments, as on a busy machine: the libraries' threads start and end
// side by side, and nobody dies of it.

#include "liverig.h"
#include "support/testmain.h"

#include "module/qmidiin.h"
#include "state/devicecatalogue.h"

#include <QApplication>
#include <QScopeGuard>
#include <QtTest>

#include <atomic>
#include <csignal>
#include <thread>

using namespace Qt::Literals::StringLiterals;

class tst_StumblingServer_long : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void lookingForDevicesOutlivesIt() {
        JackServer server(64);
        QVERIFY(server.start());
        VirtualDeck deck({u"--fader"_s, u"transform"_s});
        QVERIFY(deck.start());
        const auto pid = pid_t(server.pid());
        std::atomic<bool> done{false};
        // Thirty times the server's period: JACK waits twenty of them.
        std::thread stumbling([&] {
            while (!done) {
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
                ::kill(pid, SIGSTOP);
                std::this_thread::sleep_for(std::chrono::milliseconds(40));
                ::kill(pid, SIGCONT);
            }
        });
        std::thread fader([&] {
            QMidiIn midi;
            while (!done) {
                if (!midi.devices().isEmpty()) {
                    midi.open(u"0"_s);
                    std::this_thread::sleep_for(std::chrono::milliseconds(10));
                    midi.close();
                }
            }
        });
        const auto ended = qScopeGuard([&] {
            done = true;
            stumbling.join();
            ::kill(pid, SIGCONT);
            fader.join();
        });
        int found = 0;
        for (int i = 0; i < 150; ++i) {
            for (const DeviceDescription& device : presentDevices()) {
                found += device.name == u"Virtual Deck"_s ? 1 : 0;
            }
        }
        qInfo("found %d times in 150", found);
        QVERIFY(found > 0);
    }
};

GRAMO_TEST_MAIN(tst_StumblingServer_long)
#include "tst_stumblingserver_long.moc"
