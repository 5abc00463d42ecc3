#include "savecolorphrasing.h"

#include "button/qbpush.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int margin = 10;
constexpr int gapBelowTitle = 25;
constexpr int placeAgainMs = 100; // until the layouts around a resized parent have settled

} // namespace

SaveColorPhrasing::SaveColorPhrasing(ModelGraph::EnumGraph deck, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
    , m_deck(deck)
    , m_fileName(new QLineEdit(this))
    , m_save(new QBPush(QStringLiteral("save.png"), this))
    , m_close(new QBPush(QStringLiteral("close.png"), this)) {
    setModal(true);
    layOut();
    // Return means to save, whichever button would be the next one.
    m_save->setAutoDefault(false);
    m_close->setAutoDefault(false);
    m_save->describe(tr("Save"));
    m_close->describe(tr("Close"));
    m_fileName->setFocus();
    // A bare name: the file belongs into the folder of the colour menu.
    m_fileName->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[^/\\\\]*")), m_fileName));
    connect(m_fileName, &QLineEdit::returnPressed, this, &SaveColorPhrasing::save);
    connect(m_save, &QBPush::s_push, this, &SaveColorPhrasing::save);
    connect(m_close, &QBPush::s_push, this, &QDialog::reject);
    if (parent != nullptr) {
        parent->installEventFilter(this);
    }
    place();
}

void SaveColorPhrasing::layOut() {
    auto* title = new QLabel(tr("Save configuration of phrasing colors: ") +
                                 (m_deck == ModelGraph::INPUT_DECKB ? tr("Input DeckB") : tr("Input DeckA")),
                             this);
    title->setObjectName(QStringLiteral("title"));
    auto* label = new QLabel(tr("Filename"), this);
    label->setBuddy(m_fileName);
    m_fileName->setAccessibleName(label->text());

    auto* first = new QHBoxLayout;
    first->addWidget(title, 1);
    first->addWidget(m_close);
    auto* second = new QHBoxLayout;
    second->addWidget(m_fileName, 1);
    second->addWidget(m_save);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(margin, margin, margin, margin);
    all->addLayout(first);
    all->addSpacing(gapBelowTitle);
    all->addWidget(label);
    all->addLayout(second);
}

QString SaveColorPhrasing::fileName() const {
    return m_fileName->text();
}

void SaveColorPhrasing::save() {
    if (!m_fileName->text().isEmpty()) {
        accept();
    }
}

void SaveColorPhrasing::place() {
    adjustSize();
    const QWidget* parent = parentWidget();
    if (parent == nullptr) {
        return;
    }
    const QRect frame = parent->frameGeometry();
    QPoint middle = frame.center();
    if (m_deck == ModelGraph::INPUT_DECKA) {
        middle.ry() += frame.top();
    }
    const bool inside = !parent->isWindow() && parent->parentWidget() != nullptr;
    move((inside ? parent->parentWidget()->mapToGlobal(middle) : middle) - QPoint(width() / 2, height() / 2));
}

bool SaveColorPhrasing::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize) {
        QTimer::singleShot(placeAgainMs, this, &SaveColorPhrasing::place);
    }
    return QDialog::eventFilter(watched, event);
}
