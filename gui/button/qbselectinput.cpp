#include "qbselectinput.h"

#include "model/constants.h"
#include "state/mode.h"
#include "state/singleton.h"

#include <array>

namespace {

struct State {
    std::size_t next;
    ModelInput::EnumInput nextValue; ///< told on the way to the next state
    QLatin1StringView picture;
};

constexpr std::array<State, 4> states{{
    {1, ModelInput::TEXT_A_B, Constant::inputPictureA},
    {2, ModelInput::TEXT_B, Constant::inputPictureAB},
    {3, ModelInput::TEXT_A_B, Constant::inputPictureB},
    {0, ModelInput::TEXT_A, Constant::inputPictureAB},
}};

} // namespace

QBSelectInput::QBSelectInput(QWidget* parent) : QBPicture(side, parent) {
    connect(this, &QPushButton::clicked, this, &QBSelectInput::toggleState);
    refreshState();
}

void QBSelectInput::toggleState() {
    const State& from = states[m_state];
    m_state = from.next;
    Q_EMIT s_toogle_value(from.nextValue);
    Singleton::instance().mode()->setInputMode(from.nextValue);
    refreshState();
}

void QBSelectInput::refreshState() {
    showPicture(states[m_state].picture);
}

void QBSelectInput::setControlEnabled(bool enabled) {
    setEnabled(enabled);
}

void QBSelectInput::enabled() {
    setEnabled(true);
}

void QBSelectInput::disabled() {
    setEnabled(false);
}
