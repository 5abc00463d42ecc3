#include "state/quieterroroutput.h"

#include "support/deathmessage.h"
#include "support/testmain.h"

#include <QTemporaryFile>
#include <QTest>

#include <cassert>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

/// Throws out of a function that promises not to: std::terminate.
void terminate(const std::function<void()>& throwing) noexcept {
    throwing();
}

} // namespace

class tst_QuietErrorOutput : public QObject {
    Q_OBJECT

    QTemporaryFile m_file;
    int m_saved = -1;

    // Whether what is printed doesn't come to the user's error output.
    bool turnedAway() const {
        struct stat now {};
        struct stat users {};
        return fstat(STDERR_FILENO, &now) == 0 && fstat(m_file.handle(), &users) == 0 &&
               (now.st_ino != users.st_ino || now.st_dev != users.st_dev);
    }

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
        QVERIFY(turnedAway());
        first.reset(); // not in the order in which they came
        QVERIFY(turnedAway());
        second.reset();
        QVERIFY(!turnedAway());
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
        QVERIFY(!turnedAway());
        const int free = dup(STDERR_FILENO); // no descriptor was left open
        QVERIFY2(free < 64, qPrintable(QString::number(free)));
        close(free);
    }

    void withoutAFreeDescriptorNothingIsTurnedAway() {
        { const QuietErrorOutput once; } // has its file by now
        rlimit before{};
        QCOMPARE(getrlimit(RLIMIT_NOFILE, &before), 0);
        rlimit none = before;
        none.rlim_cur = 3; // the three of every process
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &none), 0);
        { const QuietErrorOutput quiet; }
        setrlimit(RLIMIT_NOFILE, &before);
        QVERIFY(!turnedAway());
    }

    void aProcessThatDiesMeanwhileIsHeard() {
        const QByteArray aborted = deathMessage([] {
            const QuietErrorOutput quiet;
            std::fputs("why it ends\n", stderr);
            std::abort();
        });
        QCOMPARE(aborted, QByteArray("why it ends\n"));
        const QByteArray asserted = deathMessage([] {
            const QuietErrorOutput quiet;
            const bool two = QByteArray("1") == "2"; // nothing that a compiler sees through
            assert(two);
        });
        QVERIFY2(asserted.contains("Assertion `two' failed"), asserted.constData());
        const QByteArray terminated = deathMessage([] {
            const QuietErrorOutput quiet;
            terminate([] { throw std::runtime_error("the reason"); });
        });
        QVERIFY2(terminated.contains("the reason"), terminated.constData());
    }
    void aThreadThatAbortsWhileAnotherIsQuietIsHeard() {
        const QByteArray said = deathMessage([] {
            const QuietErrorOutput quiet;
            std::thread([] {
                std::fputs("the other thread\n", stderr);
                std::abort();
            }).join();
        });
        QCOMPARE(said, QByteArray("the other thread\n"));
    }
    void ofALongTaleTheEndIsHeard() {
        const QByteArray said = deathMessage([] {
            const QuietErrorOutput quiet;
            for (int i = 0; i < 1000; ++i) {
                std::fputs("looking for a server\n", stderr);
            }
            std::fputs("the end", stderr);
            std::abort();
        });
        QCOMPARE(said.size(), 4096);
        QVERIFY(said.endsWith("the end"));
    }
    void whoDiesLaterSaysOnlyWhatWasSaidThen() {
        const QByteArray said = deathMessage([] {
            {
                const QuietErrorOutput quiet;
                std::fputs("long ago\n", stderr);
            }
            std::fputs("now\n", stderr);
            std::abort();
        });
        QCOMPARE(said, QByteArray("now\n"));
    }
    // The next time doesn't tell what was turned away before.
    void eachTimeHasItsOwnTale() {
        const QByteArray said = deathMessage([] {
            {
                const QuietErrorOutput quiet;
                std::fputs("long ago\n", stderr);
            }
            const QuietErrorOutput quiet;
            std::fputs("now\n", stderr);
            std::abort();
        });
        QCOMPARE(said, QByteArray("now\n"));
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_QuietErrorOutput)
#include "tst_quieterroroutput.moc"
