#include "qphrasing.h"

#include <utility>

QPhrasing::QPhrasing(QString label, QColor color, double angleStart, double angleEnd)
    : m_label(std::move(label))
    , m_color(color)
    , m_angleStart(angleStart)
    , m_angleEnd(angleEnd)
    , m_id(QUuid::createUuid()) {}
