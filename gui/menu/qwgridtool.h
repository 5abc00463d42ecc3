#pragma once

#include <QWidget>

class QB2Push;
class QBSelectInput;
class QBToggle;
class QBToggleCircular;
class QComboBoxBpm;
class QDLed;
class QLabel;

/// The strip below the graphs: the session's controls at the left, play in the middle, what is shown and what
/// is practised at the right. It wires nothing: the controls belong to whoever asks for them.
class QWGridTool : public QWidget {
    Q_OBJECT
public:
    static constexpr int stripHeight = 60; ///< pixels

    explicit QWGridTool(QWidget* parent = nullptr);

    QBToggle* recordToggle() const { return m_record; }
    QBToggle* mixToggle() const { return m_mix; }
    QBToggle* reverseToggle() const { return m_reverse; }
    QBToggleCircular* holdToggle() const { return m_hold; }
    QDLed* metronomLamp() const { return m_lamp; }
    QB2Push* playButton() const { return m_play; }
    QComboBoxBpm* bpmComboBox() const { return m_bpm; }
    QBSelectInput* selectInput() const { return m_selectInput; }
    QString title() const;
    QString tempo() const;

public Q_SLOTS:
    /// Shows what the session runs on.
    void updateForMode();

protected:
    void changeEvent(QEvent* event) override;

private:
    void layOut();
    void retranslate();

    QBToggle* m_record;
    QBToggle* m_mix;
    QBToggle* m_reverse;
    QBToggleCircular* m_hold;
    QDLed* m_lamp;
    QB2Push* m_play;
    QComboBoxBpm* m_bpm;
    QBSelectInput* m_selectInput;
    QLabel* m_tempo;
    QLabel* m_title;
};
