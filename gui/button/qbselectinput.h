#pragma once

#include "qbpicture.h"

#include "model/modelinput.h"

/// Chooses the decks that are shown and saved. Each press goes on in a cycle: A, both, B, both, and A again.
class QBSelectInput : public QBPicture {
    Q_OBJECT
public:
    explicit QBSelectInput(QWidget* parent = nullptr);

Q_SIGNALS:
    void s_toogle_value(ModelInput::EnumInput value);

public Q_SLOTS:
    /// Goes on by one state, tells it and stores it in Mode.
    void toggleState();
    /// Shows the picture of the state.
    void refreshState();
    void setControlEnabled(bool enabled);
    void enabled();
    void disabled();

private:
    std::size_t m_state = 0;
};
