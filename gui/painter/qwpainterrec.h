#pragma once

#include <QColor>
#include <QWidget>

/// A sample of one colour, as the legend of a phrasing shows it.
class QWPainterRec : public QWidget {
    Q_OBJECT
public:
    explicit QWPainterRec(const QColor& color, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_color;
};
