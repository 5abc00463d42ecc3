// Texts that files, settings and other people's data hang on.

#include "model/constants.h"

#include "support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_Constants : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aDecoderTakesTwoChannels() {
        QCOMPARE(Constant::Audio::STEREO, 2);
        QCOMPARE(Constant::Audio::defaultSampleRate, 48000.0);
        QCOMPARE(Constant::Audio::defaultChannels, 2);
        QCOMPARE(Constant::Audio::secondsPerTurn, 1.8);
    }

    void theTexts_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const auto row = [](QLatin1StringView text, const char* expected) {
            QTest::newRow(expected) << QString(text) << QString::fromLatin1(expected);
        };
        using namespace Constant;
        row(File::config, "config.ini");
        row(File::mixer, "MixerWindows.ini");
        row(File::author, "author.png");
        row(Extension::css, ".css");
        row(Extension::phrasing, ".grp");
        row(Extension::package, ".grz");
        row(Extension::curve, ".grw");
        row(Extension::session, ".grt");
        row(Extension::wav, ".wav");
        row(Folder::userData, "Gramo Scope");
        row(Folder::appData, "AppData");
        row(Folder::input, "Input");
        row(Folder::looper, "Looper");
        row(Folder::recording, "Recording");
        row(Folder::exported, "Export");
        row(Folder::color, "Color");
        row(Folder::scratchTools, "Scratch Tools");
        row(Folder::css, "Css");
        row(Resource::icon, ":/Icon/gui/icon/");
        row(Resource::image, ":/Image/gui/image/");
        row(Resource::translation, ":/translations/");
        row(Resource::generate, ":/generate/");
        row(Resource::sound, "qrc:/Fx/core/fx/");
        row(Mixer::name, "name");
        row(Mixer::inputA, "inputA");
        row(Mixer::inputB, "inputB");
        row(Mixer::inputMaster, "inputMaster");
        row(Mixer::outputA, "outputA");
        row(Mixer::outputB, "outputB");
        row(Mixer::outputMaster, "outputMaster");
        row(Mixer::outputHeadphone, "outputHeadphone");
        row(Mixer::confInputA, "confInputA");
        row(Mixer::confInputB, "confInputB");
        row(Mixer::confInputMaster, "confInputMaster");
        row(Mixer::confOutputA, "confOutputA");
        row(Mixer::confOutputB, "confOutputB");
        row(Mixer::confOutputPlayback, "confOutputPlayback");
        row(Mixer::confInputMidi, "confInputMidi");
        row(Mixer::confLearnMidi, "confLearnMidi");
        row(Mixer::confOptionCutOffSound, "confOptionCutOffSound");
        row(Phrasing::root, "Phrasing");
        row(Phrasing::section, "Section");
        row(Phrasing::scratchTools, "scratchTools");
        row(Phrasing::label, "label");
        row(Phrasing::color, "color");
        row(Phrasing::angleStart, "angleStart");
        row(Phrasing::angleEnd, "angleEnd");
        row(Phrasing::defaultName, "Default color");
        row(Looper::defaultTitle, "Regular Training");
        row(Looper::defaultAuthor, "K4rTo");
        row(devicePattern, "(.*)-\\[(.*)\\]-(.*)/(.*)p(.*)-(.*)-(.*)");
        row(timeStamp, "yyyyMMdd-hhmmss,zzz");
        row(crossFaderName, "XFader");
        row(inputPictureA, "switch_a_text.png");
        row(inputPictureB, "switch_b_text.png");
        row(inputPictureAB, "switch_a_b_text.png");
        row(applicationName, "Gramo Works / Scope V%1");
        row(applicationVersion, "2.6.5-2412");
    }
    void theTexts() {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(text, expected);
    }

    void theDefaultId() {
        QCOMPARE(Constant::defaultId.toString(), u"{00000001-0002-0003-0004-000000000005}"_s);
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_Constants)
#include "tst_constants.moc"
