#include "painter/graphoptions.h"

#include "state/setting.h"
#include "support/testmain.h"

#include <QTemporaryDir>
#include <QTest>

#include <utility>
#include <vector>

namespace {

struct Choice {
    void (Setting::*set)(bool);
    bool GraphOptions::*option;
};

} // namespace

class TestGraphOptions : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

private Q_SLOTS:
    void eachSettingIsItsOption() {
        const std::vector<Choice> choices{
            {&Setting::setGraphCurveCrossFaderOff, &GraphOptions::curveCrossFaderOff},
            {&Setting::setGraphCurveCrossFaderOffInvertColor, &GraphOptions::curveCrossFaderOffInvertColor},
            {&Setting::setGraphCurveNoSound, &GraphOptions::curveNoSound},
            {&Setting::setGraphDirectSound, &GraphOptions::directSound},
            {&Setting::setGraphVinylPosition, &GraphOptions::vinylPosition},
            {&Setting::setGraphVinylColorRotation, &GraphOptions::vinylColorRotation},
            {&Setting::setGraphGrid, &GraphOptions::grid},
            {&Setting::setLatency, &GraphOptions::latency},
            {&Setting::setGraphLogo, &GraphOptions::logo}};
        Setting setting(m_folder.filePath(QStringLiteral("flags.ini")), nullptr);
        for (const Choice& choice : choices) {
            (setting.*choice.set)(false);
        }
        for (const Choice& on : choices) {
            (setting.*on.set)(true);
            const GraphOptions options = GraphOptions::read(setting);
            for (const Choice& choice : choices) {
                QCOMPARE(options.*choice.option, choice.option == on.option);
            }
            (setting.*on.set)(false);
        }
    }
    void aNumberThatIsNoModeMarksNothing() {
        Setting setting(m_folder.filePath(QStringLiteral("marks.ini")), nullptr);
        for (const auto& [stored, mode] : {std::pair(-1, ModelShini::Undefined),
                                           {0, ModelShini::Undefined},
                                           {1, ModelShini::Arrows},
                                           {2, ModelShini::Circles},
                                           {3, ModelShini::Middle},
                                           {4, ModelShini::Undefined}}) {
            setting.setGraphShiniMode(stored);
            QCOMPARE(GraphOptions::read(setting).shini, mode);
        }
    }
    void aCurveOfNoWidthHasTheUsualOne() {
        Setting setting(m_folder.filePath(QStringLiteral("width.ini")), nullptr);
        for (const auto& [stored, width] :
             {std::pair(-5, 8), {0, 8}, {1, 1}, {12, 12}, {100, 100}, {101, 100}}) {
            setting.setCurveOnSize(stored);
            QCOMPARE(GraphOptions::read(setting).curveOnSize, width);
        }
    }
    void aWrittenSettingIsSeenByTheCache() {
        Setting setting(m_folder.filePath(QStringLiteral("cache.ini")), nullptr);
        GraphOptionCache cache(setting);
        QVERIFY(cache.options() == GraphOptions::read(setting));
        setting.setGraphGrid(!cache.options().grid);
        QVERIFY(cache.options() == GraphOptions::read(setting));
    }
};

GRAMO_TEST_GUILESS_MAIN(TestGraphOptions)
#include "tst_graphoptions.moc"
