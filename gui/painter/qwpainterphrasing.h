#pragma once

#include <QPointer>
#include <QWidget>

class ManagePhrasing;

/// The small picture of a phrasing on its entry of the colour menu: the record from above, each area a slice,
/// 0 degrees at twelve o'clock and growing clockwise, the way the record turns. It takes no input and shows
/// the list as it stands when it is repainted.
class QWPainterPhrasing : public QWidget {
    Q_OBJECT
public:
    /// `phrasing` isn't owned; once it is gone the disc is empty.
    explicit QWPainterPhrasing(const ManagePhrasing* phrasing, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPointer<const ManagePhrasing> m_phrasing;
};
