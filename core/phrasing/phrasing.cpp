#include "phrasing.h"

#include "model/constants.h"
#include "model/deckindex.h"

Phrasing::Phrasing(QObject* parent) : QObject(parent) {
    initIdPhrasingActivated();
}

const QPhrasingList& Phrasing::listPhrasing(ModelGraph::EnumGraph name) const {
    return m_listPhrasing[deckIndex(name)];
}

void Phrasing::setListPhrasing(ModelGraph::EnumGraph name, const QPhrasingList& list) {
    m_listPhrasing[deckIndex(name)] = list;
    Q_EMIT s_ListPhrasingChanged(name);
}

QUuid Phrasing::idPhrasingActivated(ModelGraph::EnumGraph name) const {
    return m_idPhrasingActivated[deckIndex(name)];
}

void Phrasing::setIdPhrasingActivated(ModelGraph::EnumGraph name, const QUuid& id) {
    m_idPhrasingActivated[deckIndex(name)] = id;
}

void Phrasing::initIdPhrasingActivated() {
    m_idPhrasingActivated.fill(Constant::defaultId);
}

void Phrasing::clear(ModelGraph::EnumGraph name) {
    setListPhrasing(name, {});
}
