#pragma once

#include <QComboBox>

/// How many beats the graph shows. "bpm" stands for none.
class QComboBoxBpm : public QComboBox {
    Q_OBJECT
public:
    explicit QComboBoxBpm(QWidget* parent = nullptr);

Q_SIGNALS:
    void s_Textchanged();

public Q_SLOTS:
    void save(QString text);
    void enabled();
    void disabled();
};
