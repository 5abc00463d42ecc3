#include "qwgridtool.h"

#include "button/qb2push.h"
#include "button/qbselectinput.h"
#include "button/qbtoggle.h"
#include "button/qbtogglecircular.h"
#include "button/qdled.h"
#include "combobox/qcomboboxbpm.h"

#include "model/enumtext.h"
#include "state/recordingloopertraining.h"
#include "state/singleton.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

namespace {

constexpr int tempoWidth = 120;
constexpr int titleWidth = 250;
constexpr int edge = (QWGridTool::stripHeight - QBPicture::side) / 2;
constexpr int gap = 8;

} // namespace

QWGridTool::QWGridTool(QWidget* parent)
    : QWidget(parent)
    , m_record(new QBToggle(QStringLiteral("record.png"), this))
    , m_mix(new QBToggle(QStringLiteral("mix.png"), this))
    , m_reverse(new QBToggle(QStringLiteral("hamster.png"), this))
    , m_hold(new QBToggleCircular(QStringLiteral("hold.png"), this))
    , m_lamp(new QDLed(QStringLiteral("metronom2.png"), this))
    , m_play(new QB2Push(QStringLiteral("play-button.png"), QStringLiteral("pause-button.png"), this))
    , m_bpm(new QComboBoxBpm(this))
    , m_selectInput(new QBSelectInput(this))
    , m_tempo(new QLabel(this))
    , m_title(new QLabel(this)) {
    setAttribute(Qt::WA_StyledBackground); // the style sheet's ground
    setFixedHeight(stripHeight);
    m_record->setProperty("role", QStringLiteral("record")); // the style sheets make it red
    m_tempo->setObjectName(QStringLiteral("bpm"));
    m_tempo->setFixedWidth(tempoWidth);
    m_tempo->setAlignment(Qt::AlignCenter);
    m_title->setObjectName(QStringLiteral("subtitle"));
    m_title->setMinimumWidth(titleWidth);
    m_title->setWordWrap(true); // a long title takes two lines, not the width of the strip
    layOut();
    retranslate();
    connect(Singleton::instance().recordingLooperTraining(), &RecordingLooperTraining::s_Update, this,
            &QWGridTool::updateForMode);
    connect(Singleton::instance().recordingLooperTraining(), &RecordingLooperTraining::s_UpdateBpm, this,
            &QWGridTool::updateForMode);
}

void QWGridTool::layOut() {
    auto* left = new QHBoxLayout;
    left->setContentsMargins(edge, 0, 0, 0);
    left->setSpacing(gap);
    for (QWidget* control : std::initializer_list<QWidget*>{m_record, m_mix, m_reverse, m_hold, m_lamp}) {
        left->addWidget(control, 0, Qt::AlignCenter);
    }
    left->addStretch();

    auto* right = new QHBoxLayout;
    right->setContentsMargins(0, 0, edge, 0);
    right->setSpacing(gap);
    right->addStretch();
    right->addWidget(m_bpm, 0, Qt::AlignCenter);
    right->addWidget(m_selectInput, 0, Qt::AlignCenter);
    right->addWidget(m_tempo, 0, Qt::AlignCenter);
    right->addWidget(m_title);

    // The two sides share the spare width evenly, so that play stands in the middle of the window.
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    grid->addLayout(left, 0, 0);
    grid->addWidget(m_play, 0, 1, Qt::AlignCenter);
    grid->addLayout(right, 0, 2);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(2, 1);
}

void QWGridTool::retranslate() {
    m_record->describe(tr("Record the session"));
    m_mix->describe(tr("Crossfader position decides which deck sounds"));
    m_reverse->describe(tr("Reverse the crossfader (hamster)"));
    m_hold->describe(tr("Hold the graph while the vinyl stands still"));
    m_lamp->describe(tr("Metronome"));
    m_play->describe(tr("Start or stop the session (Space)"));
    m_selectInput->describe(tr("Choose deck A, deck B or both"));
    m_bpm->setToolTip(tr("Beats that the graph shows"));
    m_bpm->setAccessibleName(m_bpm->toolTip());
    updateForMode();
}

void QWGridTool::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
    QWidget::changeEvent(event);
}

void QWGridTool::updateForMode() {
    const RecordingLooperTraining& training = *Singleton::instance().recordingLooperTraining();
    m_title->setText(training.title().isEmpty() ? tr("Regular Training") : training.title());
    m_tempo->setText(
        QStringLiteral("%1\n%2 bpm").arg(enumText(training.activatedMode())).arg(training.bpmValue()));
}

QString QWGridTool::title() const {
    return m_title->text();
}

QString QWGridTool::tempo() const {
    return m_tempo->text();
}
