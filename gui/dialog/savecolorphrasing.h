#pragma once

#include "model/modelgraph.h"

#include <QDialog>
#include <QString>

class QBPush;
class QLineEdit;

/// Asks for the name of the file that the areas of a deck go into. It stands in the middle of its parent, the
/// deck's graph, also when that is resized. GUI thread.
class SaveColorPhrasing : public QDialog {
    Q_OBJECT
public:
    SaveColorPhrasing(ModelGraph::EnumGraph deck, QWidget* parent);

    /// What the user has typed.
    QString fileName() const;
    QLineEdit* fileNameEdit() const { return m_fileName; }
    QBPush* saveButton() const { return m_save; }
    QBPush* closeButton() const { return m_close; }

public Q_SLOTS:
    /// Accepts the dialog; without a name nothing happens.
    void save();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void layOut();
    void place();

    ModelGraph::EnumGraph m_deck;
    QLineEdit* m_fileName;
    QBPush* m_save;
    QBPush* m_close;
};
