#include "storedperformance.h"

#include "performance.h"
#include "setting.h"

namespace {

constexpr int firstChoice = 0; // what a combo box shows unless told otherwise
constexpr int outputBufferChoice = 2;

} // namespace

QStringList bufferChoices() {
    return {QStringLiteral("64"),  QStringLiteral("128"),  QStringLiteral("256"),
            QStringLiteral("512"), QStringLiteral("1024"), QStringLiteral("2048")};
}

QStringList displayFrequencyChoices() {
    return {QStringLiteral("30"), QStringLiteral("60"), QStringLiteral("120")};
}

QString chosenText(const QStringList& choices, const QString& stored, int fallback) {
    return choices.contains(stored) ? stored : choices.at(fallback);
}

double chosenNumber(const QString& text) {
    return double(text.toInt());
}

void applyStoredPerformance(const Setting& setting, Performance& performance) {
    const auto input = [](const QString& stored) {
        return chosenNumber(chosenText(bufferChoices(), stored, firstChoice));
    };
    performance.setInputBuffer(ModelGraph::INPUT_DECKA, input(setting.inputBufferA()));
    performance.setInputBuffer(ModelGraph::INPUT_DECKB, input(setting.inputBufferB()));
    performance.setOutputBuffer(
        chosenNumber(chosenText(bufferChoices(), setting.outputBuffer(), outputBufferChoice)));
    performance.setDisplayFrequency(
        chosenNumber(chosenText(displayFrequencyChoices(), setting.displayFrequency(), firstChoice)));
}
