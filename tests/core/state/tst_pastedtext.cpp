#include "state/pastedtext.h"
#include "support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QList<QLatin1StringView> keys{"device/inputDeckA"_L1, "device/inputMidi"_L1};

QByteArray withLine(const QByteArray& line) {
    return "[device]\n" + line + "\n";
}

} // namespace

class tst_PastedText : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aTextIsQuotedWhereItsReaderWantsThat_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("line");
        QTest::newRow("nothing") << u""_s << u""_s;
        QTest::newRow("plain") << u"0:Virtual Deck:crossfader"_s << u"0:Virtual Deck:crossfader"_s;
        QTest::newRow("a comma") << u"HDA (hw:0,0)"_s << u"\"HDA (hw:0,0)\""_s;
        QTest::newRow("a semicolon") << u"a;b"_s << u"\"a;b\""_s;
        QTest::newRow("quotes") << u"a \"b\""_s << u"\"a \\\"b\\\"\""_s;
        QTest::newRow("a backslash") << u"a\\b"_s << u"\"a\\\\b\""_s;
        QTest::newRow("a blank first") << u" a"_s << u"\" a\""_s;
        QTest::newRow("a blank last") << u"a "_s << u"\"a \""_s;
        QTest::newRow("an equals sign") << u"a=b"_s << u"a=b"_s;
    }
    void aTextIsQuotedWhereItsReaderWantsThat() {
        QFETCH(QString, text);
        QTEST(settingsText(text), "line");
    }

    void aPastedTextIsPutIntoQuotes_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* name, const char* line, const char* expected) {
            QTest::newRow(name) << QByteArray(line) << QByteArray(expected);
        };
        row("a comma", "inputDeckA=x (hw:0,0)", "inputDeckA=\"x (hw:0,0)\"");
        row("blanks around the line's parts", " inputDeckA =  a , b  ", "inputDeckA=\"a , b\"");
        row("a carriage return", "inputDeckA=a,b\r", "inputDeckA=\"a,b\"\r");
        row("two quoted pieces", "inputDeckA=\"a\",\"b\"", "inputDeckA=\"\\\"a\\\",\\\"b\\\"\"");
        row("a quote that isn't closed", "inputDeckA=12\" deck", "inputDeckA=\"12\\\" deck\"");
        row("a lonely quote", "inputDeckA=\"", "inputDeckA=\"\\\"\"");
        row("a backslash last", "inputDeckA=a\\", "inputDeckA=\"a\\\\\"");
        row("a quote behind two backslashes", "inputDeckA=a\\\\\" b", "inputDeckA=\"a\\\\\\\\\\\" b\"");
        row("another key", "inputMidi=a,b", "inputMidi=\"a,b\"");
        for (const char* line :
             {"inputDeckA=\"x (hw:0,0)\"", "inputDeckA=plain", "inputDeckA=", "inputDeckA", "=a,b",
              "inputDeckA=\"a \\\"b\\\", \\\\ c\"", "inputDeckA=a \\\"b\\\" c", "inputDeckA=\"a,b\\\\\"",
              "inputDeckA=a\\\\", "name=a,b", "InputDeckA=a,b", ";inputDeckA=a,b", "inputDeckA\\x=a,b", ""}) {
            row(*line == '\0' ? "nothing" : line, line, line);
        }
    }
    void aPastedTextIsPutIntoQuotes() {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, expected);
        QCOMPARE(withQuotedTexts(withLine(line), keys), withLine(expected));
    }

    void onlyTheKeysGroupCounts() {
        const QByteArray other = "inputDeckA=a,b\n[display]\ninputDeckA=a,b\n[]\ninputDeckA=a,b\n[device";
        QCOMPARE(withQuotedTexts(other, keys), other);
        QCOMPARE(
            withQuotedTexts("\xEF\xBB\xBF[device]\r\ninputDeckA=a,b\r\n[x]\n[ device ]\ninputMidi=a,b", keys),
            QByteArray("\xEF\xBB\xBF[device]\r\ninputDeckA=\"a,b\"\r\n[x]\n[ device ]\ninputMidi=\"a,b\""));
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_PastedText)
#include "tst_pastedtext.moc"
