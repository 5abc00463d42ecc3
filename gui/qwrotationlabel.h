#pragma once

#include <QString>
#include <QWidget>

/// A label whose text reads upwards. GUI thread.
class QWRotationLabel : public QWidget {
    Q_OBJECT
public:
    explicit QWRotationLabel(const QString& text, QWidget* parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString& text);
    /// Room for the whole text.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
};
