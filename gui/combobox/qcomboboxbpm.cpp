#include "qcomboboxbpm.h"

#include "state/mode.h"
#include "state/singleton.h"
#include "state/storedperformance.h"

QComboBoxBpm::QComboBoxBpm(QWidget* parent) : QComboBox(parent) {
    addItems({QStringLiteral("bpm"), QStringLiteral("2"), QStringLiteral("4"), QStringLiteral("8"),
              QStringLiteral("16"), QStringLiteral("32"), QStringLiteral("64")});
    setCurrentText(QStringLiteral("16")); // a first session shows a curve
    save(currentText());
    connect(this, &QComboBox::currentTextChanged, this, [this](const QString& text) {
        save(text);
        Q_EMIT s_Textchanged();
    });
}

void QComboBoxBpm::save(QString text) {
    Singleton::instance().mode()->setGraphBeats(chosenNumber(text));
}

void QComboBoxBpm::enabled() {
    setEnabled(true);
}

void QComboBoxBpm::disabled() {
    setEnabled(false);
}
