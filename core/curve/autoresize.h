#pragma once

#include <QObject>

/// The smallest and largest value visible on the graphs, position units. One instance for both decks.
/// GUI thread.
class Autoresize : public QObject {
    Q_OBJECT
public:
    explicit Autoresize(QObject* parent = nullptr) : QObject(parent) {}

    double minValue() const { return m_minValue; }
    void setMinValue(double value) { m_minValue = value; }
    double maxValue() const { return m_maxValue; }
    void setMaxValue(double value) { m_maxValue = value; }

private:
    double m_minValue = 0.0;
    double m_maxValue = 0.0;
};
