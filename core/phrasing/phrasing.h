#pragma once

#include "qphrasing.h"

#include "model/modelgraph.h"

#include <QObject>

#include <array>

/// What each deck shows right now: its areas, and the entry of the colour menu that they came from. A deck
/// is INPUT_DECKA or, for any other value, deck B. GUI thread.
class Phrasing : public QObject {
    Q_OBJECT
public:
    /// Both decks without areas, both on the entry that stands for no colouring.
    explicit Phrasing(QObject* parent = nullptr);

    const QPhrasingList& listPhrasing(ModelGraph::EnumGraph name) const;
    /// The areas are shared, not copied.
    void setListPhrasing(ModelGraph::EnumGraph name, const QPhrasingList& list);

    /// Id of the colour menu's entry that was chosen for the deck.
    QUuid idPhrasingActivated(ModelGraph::EnumGraph name) const;
    void setIdPhrasingActivated(ModelGraph::EnumGraph name, const QUuid& id);

Q_SIGNALS:
    /// The deck has got another list of areas, or none.
    void s_ListPhrasingChanged(ModelGraph::EnumGraph name);

public Q_SLOTS:
    /// Puts both decks on the default entry, Constant::defaultId.
    void initIdPhrasingActivated();
    /// Takes all areas off the deck. Whoever else shows them keeps them.
    void clear(ModelGraph::EnumGraph name);

private:
    std::array<QPhrasingList, 2> m_listPhrasing;
    std::array<QUuid, 2> m_idPhrasingActivated;
};
