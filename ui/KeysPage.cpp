#include "ui/KeysPage.h"

#include "ui/KeyBadgeBoard.h"
#include "ui/PhraseBreaks.h"
#include "ui/Theme.h"

#include <QLabel>
#include <QVBoxLayout>

namespace Lumora {

KeysPage::KeysPage(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TranslucentBackground);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(24, 24, 24, 24);
    column->setSpacing(16);
    hint_ = new QLabel(this);
    hint_->setObjectName(QStringLiteral("keysHint"));
    hint_->setWordWrap(true);
    hint_->setAlignment(Qt::AlignCenter);
    hint_->setStyleSheet(themed(
        QStringLiteral("#keysHint { background: {white@210}; color: {lilac}; font-size: 10pt;"
                       " border-radius: 14px; padding: 14px 20px; }")));
    markPanel(hint_, 14);
    board_ = new KeyBadgeBoard(this);
    column->addWidget(hint_);
    column->addWidget(board_, 0, Qt::AlignHCenter);
    column->addStretch(1);
    retranslateUi();
}

void KeysPage::retranslateUi() {
    hint_->setText(keepPhrases(tr("Press an arrow key: it lights up here. Assign voices to the "
                                  "keys under Presets.")));
}

} // namespace Lumora
