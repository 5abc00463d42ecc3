#include "state/pastedtext.h"
#include "state/setting.h"
#include "support/testmain.h"
#include "support/translation.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// What a first start leaves, as text.
const QMap<QString, QString> freshFile{
    {u"device/inputDeckA"_s, u""_s},
    {u"device/inputDeckB"_s, u""_s},
    {u"device/inputMaster"_s, u""_s},
    {u"device/inputMidi"_s, u""_s},
    {u"device/learnMidi"_s, u""_s},
    {u"device/outputMaster"_s, u""_s},
    {u"device/crossFaderLeft"_s, u"0"_s},
    {u"device/crossFaderRight"_s, u"127"_s},
    {u"device/name"_s, u"Gramo Scope"_s},
    {u"device/timecode"_s, u"generic_V2"_s},
    {u"setting/vinylDeltaPositionA"_s, u"0"_s},
    {u"setting/vinylDeltaPositionB"_s, u"0"_s},
    {u"display/curveOnSize"_s, u"8"_s},
    {u"device/volumeLooper"_s, u"50"_s},
    {u"device/volumeDeckA/B"_s, u"50"_s},
    {u"device/volumeRecordA/B"_s, u"50"_s},
    {u"device/volumeMetronum"_s, u"50"_s},
    {u"processing/inputBufferA"_s, u"64"_s},
    {u"processing/inputBufferB"_s, u"64"_s},
    {u"processing/outputBuffer"_s, u"64"_s},
    {u"processing/displayFrequency"_s, u"60"_s},
    {u"device/optionGenerateCutOffSound"_s, u"true"_s},
    {u"device/optionHamsterMode"_s, u"false"_s},
    {u"processing/latency"_s, u"false"_s},
    {u"display/graphGrid"_s, u"true"_s},
    {u"display/graphCurveCrossFaderOff"_s, u"true"_s},
    {u"display/graphCurveCrossFaderOffInvertColor"_s, u"false"_s},
    {u"display/graphCurveNoSound"_s, u"true"_s},
    {u"display/graphShiniMode"_s, u""_s},
    {u"display/graphVinylPosition"_s, u"true"_s},
    {u"display/graphVinylColorRotation"_s, u"false"_s},
    {u"display/graphDirectSound"_s, u"true"_s},
    {u"display/graph/Logo"_s, u"true"_s},
    {u"display/language"_s, u"en_US"_s},
    {u"display/style"_s, u"Gramoscope"_s},
};

QMap<QString, QString> contentOf(const QString& file) {
    const QSettings settings(file, QSettings::IniFormat);
    QMap<QString, QString> content;
    const QStringList keys = settings.allKeys();
    for (const QString& key : keys) {
        content[key] = settings.value(key).toString();
    }
    return content;
}

} // namespace

class tst_Setting : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    int m_files = 0;

    QString newFile() { return m_folder.filePath(u"config%1.ini"_s.arg(++m_files)); }
    static void writeFile(const QString& name, const QByteArray& content) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

private Q_SLOTS:
    void aFirstStartLeavesACompleteFileWithExactlyTheDefaults() {
        const QString file = newFile();
        { const Setting setting(file, nullptr); }
        QVERIFY(QFile::exists(file));
        const QMap<QString, QString> content = contentOf(file);
        QCOMPARE(content.keys(), freshFile.keys());
        QCOMPARE(content, freshFile);
    }

    void theGettersGiveTheDefaults() {
        Setting s(newFile(), nullptr);
        QVERIFY(s.inputDeckA()->text().isEmpty() && s.inputDeckB()->text().isEmpty());
        QVERIFY(s.inputMaster()->text().isEmpty() && s.outputMaster()->text().isEmpty());
        QVERIFY(s.inputMidi()->text().isEmpty() && s.learnMidi().isEmpty());
        QCOMPARE(s.crossFaderLeft(), 0);
        QCOMPARE(s.crossFaderRight(), 127);
        QCOMPARE(s.name(), u"Gramo Scope"_s);
        QCOMPARE(s.timecode(), u"generic_V2"_s);
        QCOMPARE(s.vinylDeltaPositionA(), 0.0);
        QCOMPARE(s.vinylDeltaPositionB(), 0.0);
        QCOMPARE(s.curveOnSize(), 8);
        QCOMPARE(s.volumeLooper(), 50.0);
        QCOMPARE(s.volumeDeck(), 50.0);
        QCOMPARE(s.volumeRecord(), 50.0);
        QCOMPARE(s.volumeMetronum(), 50.0);
        QCOMPARE(s.inputBufferA(), u"64"_s);
        QCOMPARE(s.inputBufferB(), u"64"_s);
        QCOMPARE(s.outputBuffer(), u"64"_s);
        QCOMPARE(s.displayFrequency(), u"60"_s);
        QVERIFY(s.optionGenerateCutOffSound());
        QVERIFY(!s.optionHamsterMode());
        QVERIFY(!s.latency());
        QVERIFY(s.graphGrid());
        QVERIFY(s.graphCurveCrossFaderOff());
        QVERIFY(!s.graphCurveCrossFaderOffInvertColor());
        QVERIFY(s.graphCurveNoSound());
        QVERIFY(s.graphVinylPosition());
        QVERIFY(!s.graphVinylColorRotation());
        QVERIFY(s.graphDirectSound());
        QVERIFY(s.graphLogo());
        QCOMPARE(s.language(), u"en_US"_s);
        QCOMPARE(s.style(), u"Gramoscope"_s);
    }

    void theEmptyShiniModeReadsAsZero() {
        const Setting setting(newFile(), nullptr);
        QCOMPARE(setting.graphShiniMode(), 0);
    }

    void anOutputPairThatWasNeverChosenHasNoChannel() {
        const QString file = newFile();
        Setting setting(file, nullptr);
        QVERIFY(!contentOf(file).contains(u"device/outputDeckA"_s));
        QVERIFY(!contentOf(file).contains(u"device/outputDeckB"_s));
        QCOMPARE(setting.outputDeckA()->channelFirst(), -1);
        QCOMPARE(setting.outputDeckB()->channelFirst(), -1);
        QVERIFY(!contentOf(file).contains(u"device/outputDeckA"_s));
    }

    void aMissingKeyIsFilledInAndTheOthersStay() {
        const QString file = newFile();
        QMap<QString, QString> expected = freshFile;
        {
            QSettings old(file, QSettings::IniFormat);
            for (auto it = freshFile.cbegin(); it != freshFile.cend(); ++it) {
                old.setValue(it.key(), it.value() + u'x');
                expected[it.key()] = it.value() + u'x';
            }
            old.remove(u"display/graphGrid"_s);
            expected[u"display/graphGrid"_s] = u"true"_s;
            old.remove(u"processing/outputBuffer"_s);
            expected[u"processing/outputBuffer"_s] = u"64"_s;
            old.setValue(u"later/key"_s, u"stays"_s);
            expected[u"later/key"_s] = u"stays"_s;
        }
        { const Setting setting(file, nullptr); }
        QCOMPARE(contentOf(file), expected);
    }

    void anEmptyValueCountsAsThere() {
        const QString file = newFile();
        writeFile(file, "[device]\nname=\n");
        const Setting setting(file, nullptr);
        QVERIFY(setting.name().isEmpty());
    }

    void aChangeReachesTheFileAtOnce() {
        const QString file = newFile();
        Setting setting(file, nullptr);
        QCoreApplication::processEvents();
        setting.setVolumeLooper(73.0);
        QCOMPARE(contentOf(file)[u"device/volumeLooper"_s], u"73"_s);
        const auto onDisk = [&file] {
            QFile raw(file);
            return raw.open(QIODevice::ReadOnly) ? raw.readAll() : QByteArray();
        };
        QTRY_VERIFY2(onDisk().contains("volumeLooper=73"), "the object still lives");
    }

    void everyNumberTextAndSwitchComesBack() {
        const QString file = newFile();
        {
            Setting s(file, nullptr);
            s.setCrossFaderLeft(3);
            s.setCrossFaderRight(120);
            s.setName(u"Battle Mixer"_s);
            s.setTimecode(u"traktor_sideB"_s);
            s.setCurveOnSize(5);
            s.setVolumeLooper(1.0);
            s.setVolumeDeck(2.5);
            s.setVolumeRecord(3.0);
            s.setVolumeMetronum(4.0);
            s.setInputBufferA(u"128"_s);
            s.setInputBufferB(u"256"_s);
            s.setOutputBuffer(u"512"_s);
            s.setDisplayFrequency(u"120"_s);
            s.setOptionGenerateCutOffSound(false);
            s.setOptionHamsterMode(true);
            s.setLatency(true);
            s.setGraphGrid(false);
            s.setGraphCurveCrossFaderOff(false);
            s.setGraphCurveCrossFaderOffInvertColor(true);
            s.setGraphCurveNoSound(false);
            s.setGraphShiniMode(3);
            s.setGraphVinylPosition(false);
            s.setGraphVinylColorRotation(true);
            s.setGraphDirectSound(false);
            s.setGraphLogo(false);
            s.setLanguage(u"fr_FR"_s);
            s.setStyle(u"FightBeat"_s);
        }
        const Setting s(file, nullptr);
        QCOMPARE(s.crossFaderLeft(), 3);
        QCOMPARE(s.crossFaderRight(), 120);
        QCOMPARE(s.name(), u"Battle Mixer"_s);
        QCOMPARE(s.timecode(), u"traktor_sideB"_s);
        QCOMPARE(s.curveOnSize(), 5);
        QCOMPARE(s.volumeLooper(), 1.0);
        QCOMPARE(s.volumeDeck(), 2.5);
        QCOMPARE(s.volumeRecord(), 3.0);
        QCOMPARE(s.volumeMetronum(), 4.0);
        QCOMPARE(s.inputBufferA(), u"128"_s);
        QCOMPARE(s.inputBufferB(), u"256"_s);
        QCOMPARE(s.outputBuffer(), u"512"_s);
        QCOMPARE(s.displayFrequency(), u"120"_s);
        QVERIFY(!s.optionGenerateCutOffSound() && s.optionHamsterMode() && s.latency() && !s.graphGrid());
        QVERIFY(!s.graphCurveCrossFaderOff() && s.graphCurveCrossFaderOffInvertColor() &&
                !s.graphCurveNoSound());
        QVERIFY(!s.graphVinylPosition() && s.graphVinylColorRotation() && !s.graphDirectSound() &&
                !s.graphLogo());
        QCOMPARE(s.graphShiniMode(), 3);
        QCOMPARE(s.language(), u"fr_FR"_s);
        QCOMPARE(s.style(), u"FightBeat"_s);
        const QMap<QString, QString> content = contentOf(file);
        QCOMPARE(content.keys(), freshFile.keys()); // no setter writes beside its key
        QCOMPARE(content[u"device/volumeDeckA/B"_s], u"2.5"_s);
        QCOMPARE(content[u"device/volumeRecordA/B"_s], u"3"_s);
        QCOMPARE(content[u"display/graph/Logo"_s], u"false"_s);
    }

    void everyDeviceComesBackUnderItsOwnKey() {
        const QString file = newFile();
        Setting s(file, nullptr);
        s.setInputDeckA(u"1-[a]-48000/2p0-ALSA-"_s);
        s.setInputDeckB(u"2-[b]-48000/2p0-ALSA-"_s);
        s.setInputMaster(u"3-[c]-48000/2p0-ALSA-"_s);
        s.setOutputMaster(u"4-[d]-48000/2p0-ALSA-"_s);
        s.setOutputDeckA(u"5-[e]-48000/4p2-ALSA-"_s);
        s.setOutputDeckB(u"6-[f]-48000/6p4-ALSA-"_s);
        s.setInputMidi(u"0:Fader"_s);
        QCOMPARE(s.inputDeckA()->index(), 1);
        QCOMPARE(s.inputDeckB()->index(), 2);
        QCOMPARE(s.inputMaster()->index(), 3);
        QCOMPARE(s.outputMaster()->index(), 4);
        QCOMPARE(s.outputDeckA()->channelFirst(), 2);
        QCOMPARE(s.outputDeckB()->channelFirst(), 4);
        QCOMPARE(s.inputMidi()->name(), u"0:Fader"_s);
        const QMap<QString, QString> content = contentOf(file);
        QCOMPARE(content[u"device/inputMaster"_s], u"3-[c]-48000/2p0-ALSA-"_s);
        QCOMPARE(content[u"device/outputDeckB"_s], u"6-[f]-48000/6p4-ALSA-"_s);
        QCOMPARE(content[u"device/inputMidi"_s], u"0:Fader"_s);
    }

    void anyDeviceNameSurvivesTheFile_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("a comma") << u"HDA Intel PCH: ALC257 Analog (hw:0,0)"_s;
        QTest::newRow("quotes") << u"\"Rane\" \\ 'Seventy'"_s;
        QTest::newRow("signs of the file format") << u"a=b;c#d%20@Variant(e)"_s;
        QTest::newRow("an at sign first") << u"@Byte"_s;
        QTest::newRow("a comma and a backslash last") << u"3-[a, b]-44100/2p0-ALSA-Deck\\"_s;
        QTest::newRow("a backslash last") << u"3-[HDA]-44100/2p0-ALSA-Deck\\"_s;
        QTest::newRow("other scripts") << u"ターンテーブル Çé ✂"_s;
        QTest::newRow("brackets and slashes") << u"Loop-[Back]/x]-"_s;
        QTest::newRow("blanks at the ends") << u"  x  "_s;
    }
    void anyDeviceNameSurvivesTheFile() {
        QFETCH(QString, name);
        const QString file = newFile();
        const QString text = u"3-[%1]-44100/4p1-WASAPI-"_s.arg(name);
        {
            Setting setting(file, nullptr);
            setting.setInputDeckA(text);
            setting.setName(name);
        }
        Setting setting(file, nullptr);
        QCOMPARE(setting.inputDeckA()->text(), text);
        QCOMPARE(setting.name(), name);
    }

    void aDeviceIsParsedAnewWithEachCall() {
        Setting setting(newFile(), nullptr);
        setting.setInputDeckA(u"1-[a]-48000/2p0-ALSA-"_s);
        const ObjectAudioDevice* first = setting.inputDeckA();
        QCOMPARE(first->index(), 1);
        setting.setInputDeckA(u"2-[b]-48000/2p0-ALSA-"_s);
        QCOMPARE(first->index(), 1); // until the next call of the same getter
        QVERIFY(setting.inputDeckB()->text().isEmpty());
        QCOMPARE(first->index(), 1);
        QCOMPARE(setting.inputDeckA()->index(), 2);
    }

    void aStoredTextThatIsNoDeviceStringHasIndexMinusOne() {
        Setting setting(newFile(), nullptr);
        setting.setInputDeckA(u"some old form"_s);
        QCOMPARE(setting.inputDeckA()->index(), -1);
        QCOMPARE(setting.inputDeckA()->text(), u"some old form"_s);
    }

    void theLearnedControlIsChannelSlashController() {
        const QString file = newFile();
        Setting setting(file, nullptr);
        setting.setLearnMidi(15, 127);
        QCOMPARE(setting.learnMidi(), u"15/127"_s);
        QCOMPARE(contentOf(file)[u"device/learnMidi"_s], u"15/127"_s);
    }

    void theVinylsZeroIsStoredWithSixDigits() {
        const QString file = newFile();
        Setting setting(file, nullptr);
        setting.setVinylDeltaPositionA(123.456789);
        setting.setVinylDeltaPositionB(0.00001234567);
        QCOMPARE(contentOf(file)[u"setting/vinylDeltaPositionA"_s], u"123.457"_s);
        QCOMPARE(contentOf(file)[u"setting/vinylDeltaPositionB"_s], u"1.23457e-05"_s);
        QCOMPARE(setting.vinylDeltaPositionA(), 123.457);
        QCOMPARE(setting.vinylDeltaPositionB(), 1.23457e-05);
    }

    void aValueThatCantBeUsedCountsAsTheDefault_data() {
        QTest::addColumn<QByteArray>("value");
        for (const char* value :
             {"", "foo", "nan", "-nan", "inf", "-inf", "1e999", "-1", "-1e300", "99999999999999999999", "1,5",
              "0x10", "@Invalid()", "@Variant(\\0\\0\\0\\x7f)", "\\0", "\xff\xfe", "true false"}) {
            QTest::newRow(*value == '\0' ? "nothing" : value) << QByteArray(value);
        }
    }
    void aValueThatCantBeUsedCountsAsTheDefault() {
        QFETCH(QByteArray, value);
        const QString file = newFile();
        QByteArray content;
        QString group;
        for (auto it = freshFile.cbegin(); it != freshFile.cend(); ++it) {
            if (it.key().section(u'/', 0, 0) != group) {
                group = it.key().section(u'/', 0, 0);
                content += "[" + group.toUtf8() + "]\n";
            }
            content += it.key().section(u'/', 1).replace(u'/', u'\\').toUtf8() + "=" + value + "\n";
        }
        writeFile(file, content);
        Setting s(file, nullptr);
        QCOMPARE(s.inputDeckA()->index(), -1);
        QCOMPARE(s.outputMaster()->index(), -1);
        QCOMPARE(s.crossFaderLeft(), 0);
        QCOMPARE(s.crossFaderRight(), 127);
        QCOMPARE(s.timecode(), u"generic_V2"_s);
        bool isNumber = false;
        const double number = QString::fromUtf8(value).toDouble(&isNumber);
        QCOMPARE(s.vinylDeltaPositionA(), isNumber && std::isfinite(number) ? number : 0.0);
        QVERIFY(std::isfinite(s.vinylDeltaPositionA()) && std::isfinite(s.vinylDeltaPositionB()));
        QCOMPARE(s.curveOnSize(), 8);
        for (const double volume : {s.volumeLooper(), s.volumeDeck(), s.volumeRecord(), s.volumeMetronum()}) {
            QCOMPARE(volume, 50.0);
        }
        QCOMPARE(s.inputBufferA(), u"64"_s);
        QCOMPARE(s.inputBufferB(), u"64"_s);
        QCOMPARE(s.outputBuffer(), u"64"_s);
        QCOMPARE(s.displayFrequency(), u"60"_s);
        QVERIFY(s.optionGenerateCutOffSound() && !s.optionHamsterMode() && !s.latency() && s.graphGrid());
        QVERIFY(s.graphCurveCrossFaderOff() && !s.graphCurveCrossFaderOffInvertColor());
        QVERIFY(s.graphCurveNoSound() && s.graphVinylPosition() && !s.graphVinylColorRotation());
        QVERIFY(s.graphDirectSound() && s.graphLogo());
        QCOMPARE(s.graphShiniMode(), 0);
        QCOMPARE(s.language(), u"en_US"_s);
    }

    void numbersBeyondTheirBoundsCountAsTheDefault() {
        const QString file = newFile();
        writeFile(file, "[device]\ncrossFaderLeft=128\ncrossFaderRight=-1\nvolumeLooper=100.5\n"
                        "[display]\ncurveOnSize=0\ngraphShiniMode=4\n"
                        "[processing]\ndisplayFrequency=59\noutputBuffer=63\n");
        const Setting s(file, nullptr);
        QCOMPARE(s.crossFaderLeft(), 0);
        QCOMPARE(s.crossFaderRight(), 127);
        QCOMPARE(s.volumeLooper(), 50.0);
        QCOMPARE(s.curveOnSize(), 8);
        QCOMPARE(s.graphShiniMode(), 0);
        QCOMPARE(s.displayFrequency(), u"60"_s);
        QCOMPARE(s.outputBuffer(), u"64"_s);
    }

    void aPastedDeviceLineIsReadBackWhole_data() {
        QTest::addColumn<QString>("line");
        QTest::newRow("a comma") << u"3-[HDA Intel PCH: ALC257 Analog (hw:0,0)]-44100/2p0-ALSA-"_s;
        QTest::newRow("a blank behind it") << u"3-[HDA Intel (hw:0, 0)]-44100/2p0-ALSA-Input DeckA"_s;
        QTest::newRow("blanks around it") << u"3-[HDA  Intel , and   more  ,x]-44100/2p0-ALSA-"_s;
        QTest::newRow("double blanks alone") << u"3-[HDA  Intel   PCH]-44100/2p0-ALSA-"_s;
        QTest::newRow("commas at the ends of the name") << u"3-[,HDA,]-44100/2p0-ALSA-,"_s;
        QTest::newRow("a semicolon") << u"3-[HDA; Intel ;x]-44100/2p0-ALSA-"_s;
        QTest::newRow("quotes") << u"3-[The \"Rane\", 70 (hw:1,0)]-44100/2p0-ALSA-"_s;
        QTest::newRow("one quote") << u"3-[12\" deck]-44100/2p0-ALSA-"_s;
        QTest::newRow("an equals sign") << u"3-[a=b, c=d]-44100/2p0-ALSA-"_s;
        QTest::newRow("a backslash and a comma") << u"3-[a\\b, c]-44100/2p0-ALSA-"_s;
        QTest::newRow("a comma and a backslash last") << u"3-[a, b]-44100/2p0-ALSA-Deck\\"_s;
        QTest::newRow("a backslash last") << u"3-[HDA]-44100/2p0-ALSA-Deck\\"_s;
        QTest::newRow("other scripts") << u"3-[ターン, テーブル]-44100/2p0-ALSA-"_s;
        QTest::newRow("no comma") << u"3-[Line In (USB Mixer)]-48000/4p1-MME-Input DeckB"_s;
    }
    void aPastedDeviceLineIsReadBackWhole() {
        QFETCH(QString, line);
        const QString file = newFile();
        const QByteArray pasted = line.toUtf8();
        writeFile(file, "[device]\ninputDeckA=" + pasted + "\ninputDeckB = " + pasted +
                            " \r\ninputMidi=" + pasted +
                            "\nname=\"My, mixer\"\ntimecode=traktor_sideB\n"
                            "[display]\ncurveOnSize=5\n");
        for (int start = 0; start < 2; ++start) { // the second one reads what the first has written
            Setting setting(file, nullptr);
            QCOMPARE(setting.inputDeckA()->text(), line);
            QCOMPARE(setting.inputDeckA()->index(), 3);
            QCOMPARE(setting.inputDeckB()->text(), line);
            QCOMPARE(setting.inputMidiName(), line);
            QCOMPARE(setting.name(), u"My, mixer"_s);
            QCOMPARE(setting.timecode(), u"traktor_sideB"_s);
            QCOMPARE(setting.curveOnSize(), 5);
            setting.setVolumeLooper(start);
        }
        // As the tool prints it, it reads the same.
        writeFile(file, "[device]\ninputDeckA=" + settingsText(line).toUtf8() + "\n");
        Setting setting(file, nullptr);
        QCOMPARE(setting.inputDeckA()->text(), line);
    }

    void aPastedLineInAFileThatCantBeWrittenCountsToo() {
        const QString file = newFile();
        const QString line = u"3-[HDA Intel PCH: ALC257 Analog (hw:0,0)]-44100/2p0-ALSA-"_s;
        const QString folder = m_folder.filePath(u"readonly"_s);
        QVERIFY(QDir().mkpath(folder));
        const QString inside = folder + u"/config.ini"_s;
        writeFile(inside, "[device]\ninputDeckA=" + line.toUtf8() + "\n");
        QVERIFY(QFile::setPermissions(inside, QFile::ReadOwner));
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        {
            Setting setting(inside, nullptr);
            QCOMPARE(setting.inputDeckA()->text(), line);
        }
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    void aFileThatNobodyPastedIntoStaysByteForByte() {
        const QString file = newFile();
        {
            Setting setting(file, nullptr);
            setting.setInputDeckA(u"3-[a, \"b\" \\ ;c (hw:0,0)]-44100/2p0-ALSA-"_s);
            setting.setName(u" \"x\" "_s);
        }
        QFile raw(file);
        QVERIFY(raw.open(QIODevice::ReadOnly));
        const QByteArray content = raw.readAll();
        QCOMPARE(withQuotedTexts(content, {"device/inputDeckA"_L1, "device/name"_L1}), content);
    }

    void aFileThatIsNoSettingsFileCountsAsEmpty() {
        const QString file = newFile();
        writeFile(file, QByteArray(5000, '\x80') + "\n[[[\n=\n==\n\x00\x01");
        const Setting setting(file, nullptr);
        QCOMPARE(setting.timecode(), u"generic_V2"_s);
        QCOMPARE(setting.volumeLooper(), 50.0);
    }

    void withNowhereToWriteTheDefaultsLiveInMemory() {
        const QString plain = newFile();
        writeFile(plain, "no folder");
        Setting setting(plain + u"/Input/config.ini"_s, nullptr);
        QCOMPARE(setting.timecode(), u"generic_V2"_s);
        setting.setTimecode(u"traktor_sideA"_s);
        QCOMPARE(setting.timecode(), u"traktor_sideA"_s);
    }

    void theStyleIsStoredAndThenAnnounced() {
        Setting setting(newFile(), nullptr);
        QString stored;
        QStringList announced;
        connect(&setting, &Setting::s_updateStyle, this, [&](const QString& name) {
            announced << name;
            stored = setting.style();
        });
        setting.setStyle(u"ScreamBeat"_s);
        setting.setStyle(u"ScreamBeat"_s);
        QCOMPARE(announced, QStringList({u"ScreamBeat"_s, u"ScreamBeat"_s}));
        QCOMPARE(stored, u"ScreamBeat"_s);
    }

    void theWritesAreCounted() {
        Setting setting(newFile(), nullptr);
        const unsigned start = setting.generation();
        setting.setGraphGrid(true);
        QVERIFY(setting.generation() != start);
        const unsigned next = setting.generation();
        setting.graphGrid();
        setting.inputDeckA();
        QCOMPARE(setting.generation(), next);
    }

    void aLanguageWithoutAFileFallsBackToTheSourceTexts() {
        using namespace TranslationResource;
        QVERIFY(addToResources(u"translations"_s, u"Gramoworks_fr_FR.qm"_s, messageFile("Hold", u"Tenir"_s)));
        const auto translated = [] { return QCoreApplication::translate("QWView", "Hold"); };
        Setting setting(newFile(), nullptr);
        QCOMPARE(translated(), u"Hold"_s);
        setting.applyLanguage(u"fr_FR"_s);
        QCOMPARE(translated(), u"Tenir"_s);
        setting.applyLanguage(u"fr_FR"_s);
        QCOMPARE(translated(), u"Tenir"_s);
        setting.applyLanguage(u"xx_XX"_s);
        QCOMPARE(translated(), u"Hold"_s);
        setting.applyLanguage(u"fr_FR"_s);
        QCOMPARE(translated(), u"Tenir"_s);
        setting.applyLanguage(QString());
        QCOMPARE(translated(), u"Hold"_s);
    }

    void applyingALanguageStoresNothing() {
        Setting setting(newFile(), nullptr);
        setting.applyLanguage(u"fr_FR"_s);
        QCOMPARE(setting.language(), u"en_US"_s);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Setting)
#include "tst_setting.moc"
