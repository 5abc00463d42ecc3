#include "qwcontextgraph.h"

#include <QAction>

QWContextGraph::QWContextGraph(QWidget* parent)
    : QMenu(parent)
    , m_zoom(addMenu(tr("Zoom")))
    , m_autoresize(m_zoom->addAction(tr("Auto-resize")))
    , m_selection(m_zoom->addAction(tr("Selection area"))) {
    setAttribute(Qt::WA_DeleteOnClose);
    m_autoresize->setCheckable(true);
    // Triggered comes from the user alone: a check mark that is set from elsewhere says nothing twice.
    connect(m_autoresize, &QAction::triggered, this, &QWContextGraph::autoresizeToggle);
    connect(m_selection, &QAction::triggered, this, &QWContextGraph::selectionArea);
}

void QWContextGraph::autoresizeToggle(bool state) {
    if (state) {
        Q_EMIT s_Autoresize_on();
    } else {
        Q_EMIT s_Autoresize_off();
    }
}

void QWContextGraph::selectionArea() {
    Q_EMIT s_SelectArea();
}

void QWContextGraph::autoresize_on() {
    m_autoresize->setChecked(true);
    Q_EMIT s_Autoresize_on();
}

void QWContextGraph::autoresize_off() {
    m_autoresize->setChecked(false);
    Q_EMIT s_Autoresize_off();
}
