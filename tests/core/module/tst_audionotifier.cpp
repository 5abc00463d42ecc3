#include "module/audionotifier.h"

#include "support/testmain.h"

#include <QSignalSpy>
#include <QTest>

class tst_AudioNotifier : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aRequestEmitsNothingUntilItIsDelivered() {
        AudioNotifier notifier;
        QSignalSpy level(&notifier, &AudioNotifier::audioLevelChanged);
        notifier.request();
        QCOMPARE(level.count(), 0);
        notifier.deliver();
        QCOMPARE(level.count(), 1);
    }

    void severalRequestsAreOneDelivery() {
        AudioNotifier notifier;
        QSignalSpy level(&notifier, &AudioNotifier::audioLevelChanged);
        notifier.request();
        notifier.request();
        notifier.deliver();
        notifier.deliver();
        QCOMPARE(level.count(), 1);
    }

    void withoutARequestNothingIsDelivered() {
        AudioNotifier notifier;
        QSignalSpy level(&notifier, &AudioNotifier::audioLevelChanged);
        notifier.deliver();
        QCOMPARE(level.count(), 0);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_AudioNotifier)
#include "tst_audionotifier.moc"
