#include "button/qb2push.h"

#include "gui/support/guiprocess.h"
#include "support/testmain.h"

#include <QSignalSpy>
#include <QTest>

namespace {

QImage shown(const QPushButton& button) {
    return button.icon().pixmap(50, 50).toImage();
}
QImage named(const QString& name) {
    return QIcon(pathIcon(name)).pixmap(50, 50).toImage();
}

const QString playIcon = QStringLiteral("play-button.png");
const QString pauseIcon = QStringLiteral("pause-button.png");

} // namespace

class TestQB2Push : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }

    void sizeAndPicture() {
        QB2Push button(playIcon, pauseIcon);
        QCOMPARE(button.minimumSize(), QSize(50, 50));
        QCOMPARE(button.maximumSize(), QSize(50, 50));
        QCOMPARE(button.iconSize(), QSize(50, 50));
        QVERIFY(!button.isChecked());
        QVERIFY(!button.isCheckable());
        QVERIFY(!shown(button).isNull());
        QCOMPARE(shown(button), named(playIcon));
    }
    void aClickOnlySignals() {
        QB2Push button(playIcon, pauseIcon);
        QSignalSpy push(&button, &QB2Push::s_push);
        QTest::mouseClick(&button, Qt::LeftButton);
        QCOMPARE(push.count(), 1);
        QVERIFY(!button.isChecked());
        QCOMPARE(shown(button), named(playIcon));
        button.mouseClick();
        QCOMPARE(push.count(), 2);
    }
    void eachStateHasItsPicture() {
        QB2Push button(playIcon, pauseIcon);
        button.checked();
        QVERIFY(button.isChecked());
        QCOMPARE(shown(button), named(pauseIcon));
        button.unchecked();
        QVERIFY(!button.isChecked());
        QCOMPARE(shown(button), named(playIcon));
    }
    void theSameStateTwiceSetsThePictureOnce() {
        QB2Push button(playIcon, pauseIcon);
        button.setChecked(true);
        const qint64 first = button.icon().cacheKey();
        button.setChecked(true);
        button.checked();
        QCOMPARE(button.icon().cacheKey(), first);
        button.setChecked(false);
        QVERIFY(button.icon().cacheKey() != first);
    }
    void otherPicturesShowAtOnce() {
        QB2Push button(playIcon, pauseIcon);
        button.checked();
        button.changePicture(QStringLiteral("play_record-button.png"),
                             QStringLiteral("pause_record-button.png"));
        QVERIFY(button.isChecked());
        QCOMPARE(shown(button), named(QStringLiteral("pause_record-button.png")));
        button.unchecked();
        QCOMPARE(shown(button), named(QStringLiteral("play_record-button.png")));
    }
    void aDescriptionIsToolTipAndName() {
        QB2Push button(playIcon, pauseIcon);
        button.describe(QStringLiteral("Start"));
        QCOMPARE(button.toolTip(), QStringLiteral("Start"));
        QCOMPARE(button.accessibleName(), QStringLiteral("Start"));
    }
};

GRAMO_TEST_MAIN(TestQB2Push)
#include "tst_qb2push.moc"
