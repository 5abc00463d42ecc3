#include "state/quieterroroutput.h"

#include "support/testmain.h"

#include <QTemporaryFile>
#include <QTest>

#include <cstdio>
#include <optional>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

bool printsNowhere() {
    struct stat now {};
    struct stat nowhere {};
    return fstat(STDERR_FILENO, &now) == 0 && stat("/dev/null", &nowhere) == 0 &&
           now.st_rdev == nowhere.st_rdev && S_ISCHR(now.st_mode);
}

} // namespace

class tst_QuietErrorOutput : public QObject {
    Q_OBJECT

    QTemporaryFile m_file;
    int m_saved = -1;

private Q_SLOTS:
    // The error output is a file, so that it is no null device to begin with.
    void initTestCase() {
        QVERIFY(m_file.open());
        m_saved = dup(STDERR_FILENO);
        QVERIFY(dup2(m_file.handle(), STDERR_FILENO) >= 0);
    }
    void cleanupTestCase() {
        dup2(m_saved, STDERR_FILENO);
        close(m_saved);
    }

    void whatIsPrintedMeanwhileIsGone() {
        std::fputs("before ", stderr);
        {
            const QuietErrorOutput quiet;
            std::fputs("meanwhile ", stderr);
        }
        std::fputs("after", stderr);
        std::fflush(stderr);
        m_file.seek(0);
        QCOMPARE(m_file.readAll(), QByteArray("before after"));
    }

    void theLastOneOutRestores() {
        std::optional<QuietErrorOutput> first(std::in_place);
        std::optional<QuietErrorOutput> second(std::in_place);
        QVERIFY(printsNowhere());
        first.reset(); // not in the order in which they came
        QVERIFY(printsNowhere());
        second.reset();
        QVERIFY(!printsNowhere());
    }

    void threadsThatCrossLeaveItAsItWas() {
        const auto comeAndGo = [] {
            for (int i = 0; i < 2000; ++i) {
                const QuietErrorOutput quiet;
            }
        };
        std::thread one(comeAndGo);
        std::thread other(comeAndGo);
        one.join();
        other.join();
        QVERIFY(!printsNowhere());
        const int free = dup(STDERR_FILENO); // no descriptor was left open
        QVERIFY2(free < 64, qPrintable(QString::number(free)));
        close(free);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_QuietErrorOutput)
#include "tst_quieterroroutput.moc"
