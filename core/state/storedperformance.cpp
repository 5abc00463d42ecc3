#include "storedperformance.h"

#include "performance.h"
#include "setting.h"

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
    performance.setInputBuffer(ModelGraph::INPUT_DECKA, chosenNumber(setting.inputBufferA()));
    performance.setInputBuffer(ModelGraph::INPUT_DECKB, chosenNumber(setting.inputBufferB()));
    performance.setOutputBuffer(chosenNumber(setting.outputBuffer()));
    performance.setDisplayFrequency(chosenNumber(setting.displayFrequency()));
}
