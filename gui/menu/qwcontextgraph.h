#pragma once

#include <QMenu>

class QAction;

/// What a right press on a graph offers: the choices about the stretch of time that it shows. It deletes
/// itself once it has been closed. GUI thread.
class QWContextGraph : public QMenu {
    Q_OBJECT
public:
    explicit QWContextGraph(QWidget* parent = nullptr);

    QMenu* zoomMenu() const { return m_zoom; }
    QAction* autoresizeAction() const { return m_autoresize; }
    QAction* selectionAction() const { return m_selection; }

Q_SIGNALS:
    void s_Autoresize_on();
    void s_Autoresize_off();
    void s_SelectArea();

public Q_SLOTS:
    /// The user has checked or unchecked "Auto-resize".
    void autoresizeToggle(bool state);
    void selectionArea();
    /// These two set the check mark as well.
    void autoresize_on();
    void autoresize_off();

private:
    QMenu* m_zoom;
    QAction* m_autoresize;
    QAction* m_selection;
};
