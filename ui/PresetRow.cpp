#include "ui/PresetRow.h"

#include "ui/PhraseBreaks.h"
#include "ui/Theme.h"
#include "ui/TrashButton.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QToolButton>
#include <QVBoxLayout>

namespace Lumora {

namespace {

const char kRest[] = "QFrame#presetRow { background: {white@215}; border: 1px solid"
                     " {blue@60}; border-radius: 10px; }";
const char kHover[] = "QFrame#presetRow { background: {paleBlue@235}; border: 1px solid"
                      " {blue}; border-radius: 10px; }";
const char kCurrent[] = "QFrame#presetRow { background: {paleMint@235}; border: 2px solid"
                        " {teal}; border-radius: 10px; }";
const char kToolStyle[] =
    "QToolButton { background: {blue@22}; border: 1px solid {blue@90}; color: {ink};"
    " border-radius: 11px; font-size: 9pt; }QToolButton:hover { background: {blue@70}; }";

} // namespace

PresetRow::PresetRow(QWidget* parent, const QString& name, const QString& description,
                     const QString& savedAt, bool current, bool exportable)
    : QFrame(parent), name_(name), current_(current) {
    setObjectName(QStringLiteral("presetRow"));
    setAttribute(Qt::WA_StyledBackground);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    markPanel(this, 10);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(12, 8, 10, 8);
    row->setSpacing(6);

    auto* text = new QVBoxLayout();
    text->setSpacing(2);
    auto* titleRow = new QHBoxLayout();
    titleRow->setSpacing(6);
    title_ = new QLabel(keepPhrases(name), this);
    title_->setStyleSheet(themed(QStringLiteral("QLabel { color: {ink}; font-size: 10pt;"
                                                " font-weight: bold; background: transparent; }")));
    title_->setWordWrap(true);
    titleRow->addWidget(title_, 1);
    mark_ = new QLabel(this);
    mark_->setStyleSheet(
        themed(QStringLiteral("QLabel { color: {white}; background: {tealInk};"
                              " border-radius: 7px; padding: 1px 7px; font-size: 7pt;"
                              " font-weight: bold; }")));
    mark_->setVisible(current);
    titleRow->addWidget(mark_, 0, Qt::AlignTop);
    text->addLayout(titleRow);
    description_ = new QLabel(keepPhrases(description), this);
    description_->setWordWrap(true);
    description_->setVisible(!description.isEmpty());
    description_->setStyleSheet(themed(
        QStringLiteral("QLabel { color: {lilac}; font-size: 8pt; background: transparent; }")));
    text->addWidget(description_);
    date_ = new QLabel(savedAt, this);
    date_->setVisible(!savedAt.isEmpty());
    date_->setStyleSheet(themed(
        QStringLiteral("QLabel { color: {muted}; font-size: 7pt; background: transparent; }")));
    text->addWidget(date_);
    for (QLabel* label : {title_, description_, date_, mark_}) {
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    row->addLayout(text, 1);

    rename_ = new QToolButton(this);
    rename_->setText(QStringLiteral("✏️"));
    export_ = new QToolButton(this);
    export_->setText(QStringLiteral("📤"));
    export_->setVisible(exportable);
    for (QToolButton* b : {rename_, export_}) {
        b->setFixedSize(24, 24);
        b->setStyleSheet(themed(QLatin1String(kToolStyle)));
        b->setCursor(Qt::PointingHandCursor);
        row->addWidget(b, 0, Qt::AlignVCenter);
    }
    delete_ = new TrashButton(this);
    row->addWidget(delete_, 0, Qt::AlignVCenter);

    connect(rename_, &QToolButton::clicked, this, [this] { emit renameClicked(name_); });
    connect(export_, &QToolButton::clicked, this, [this] { emit exportClicked(name_); });
    connect(delete_, &TrashButton::clicked, this, [this] { emit deleteClicked(name_); });
    installEventFilter(this);
    setHighlighted(false);
    retranslateUi();
}

void PresetRow::retranslateUi() {
    setToolTip(tr("Click to apply"));
    mark_->setText(tr("In use"));
    rename_->setToolTip(tr("Rename"));
    export_->setToolTip(tr("Export to a file"));
    delete_->setToolTip(tr("Delete"));
}

void PresetRow::setHighlighted(bool on) {
    setStyleSheet(themed(QLatin1String(on ? kHover : current_ ? kCurrent : kRest)));
}

bool PresetRow::eventFilter(QObject* watched, QEvent* event) {
    if (watched != this) {
        return QFrame::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::Enter:
        setHighlighted(true);
        break;
    case QEvent::Leave:
        setHighlighted(false);
        break;
    case QEvent::MouseButtonPress:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            return true; // so the release comes here
        }
        break;
    case QEvent::MouseButtonRelease: {
        auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::LeftButton && rect().contains(mouse->pos())) {
            emit applyClicked(name_);
            return true;
        }
        break;
    }
    default:
        break;
    }
    return false;
}

} // namespace Lumora
