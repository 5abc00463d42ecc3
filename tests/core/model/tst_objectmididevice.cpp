#include "model/objectmididevice.h"

#include "support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_ObjectMidiDevice : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theWholeTextIsTheName() {
        const ObjectMidiDevice device(u"1:DJ Mixer (port/2) [x]"_s);
        QCOMPARE(device.pattern(), u"(.*)"_s);
        QCOMPARE(device.text(), u"1:DJ Mixer (port/2) [x]"_s);
        QCOMPARE(device.name(), device.text());
    }

    void anEmptyTextIsAnEmptyName() {
        const ObjectMidiDevice device{QString()};
        QVERIFY(device.text().isEmpty() && device.name().isEmpty());
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_ObjectMidiDevice)
#include "tst_objectmididevice.moc"
