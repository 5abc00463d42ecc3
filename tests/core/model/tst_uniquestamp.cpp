#include "model/uniquestamp.h"

#include "support/testmain.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_UniqueStamp : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theFirstStampIsTheMomentOfTheCall() {
        const QDateTime before = QDateTime::currentDateTime();
        const QString stamp = uniqueStamp();
        const QDateTime after = QDateTime::currentDateTime();
        static const QRegularExpression form(u"^\\d{8}-\\d{6},\\d{3}$"_s);
        QVERIFY2(form.match(stamp).hasMatch(), qPrintable(stamp));
        const QDateTime moment = QDateTime::fromString(stamp, u"yyyyMMdd-hhmmss,zzz"_s);
        QVERIFY(before <= moment && moment <= after);
    }

    void aStampNeverComesTwiceAndTheyRise() {
        QSet<QString> seen;
        QString last;
        for (int i = 0; i < 5000; ++i) {
            const QString stamp = uniqueStamp();
            QVERIFY2(!seen.contains(stamp), qPrintable(stamp));
            QVERIFY(stamp > last);
            seen.insert(stamp);
            last = stamp;
        }
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_UniqueStamp)
#include "tst_uniquestamp.moc"
