#include "ui/EqBandRow.h"

#include "ui/Knob.h"
#include "ui/KnobBindings.h"
#include "ui/Theme.h"
#include "ui/TrashButton.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>

namespace Lumora {

EqBandRow::EqBandRow(QWidget* parent, int index, NotchBand* band)
    : QWidget(parent), index_(index), band_(band) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    number_ = new QLabel(this);
    number_->setFixedWidth(22);
    number_->setAlignment(Qt::AlignCenter);
    number_->setStyleSheet(themed(QStringLiteral("QLabel { color: {white}; background: {blue@150};"
                                                 " border-radius: 9px; font-size: 8pt;"
                                                 " font-weight: bold; }")));
    number_->setFixedHeight(18);
    row->addWidget(number_, 0, Qt::AlignVCenter);

    const QString prefix = QStringLiteral("band%1").arg(index);
    frequency_ = new Knob(this);
    frequency_->setObjectName(prefix + QStringLiteral("Frequency"));
    applyParameter(frequency_, Params::kBandHz);
    frequency_->setSuffix(QStringLiteral("Hz"));
    gain_ = new Knob(this);
    gain_->setObjectName(prefix + QStringLiteral("Gain"));
    applyParameter(gain_, Params::kBandGain);
    gain_->setDecimals(1);
    gain_->setSuffix(QStringLiteral("dB"));
    q_ = new Knob(this);
    q_->setObjectName(prefix + QStringLiteral("Q"));
    applyParameter(q_, Params::kBandQ);
    q_->setDecimals(2);
    for (Knob* k : {frequency_, gain_, q_}) {
        row->addWidget(k);
    }
    row->addStretch(1);
    trash_ = new TrashButton(this);
    row->addWidget(trash_, 0, Qt::AlignVCenter);

    connect(frequency_, &Knob::valueChanged, this, [this](double v) {
        band_->centerHz = static_cast<float>(v);
        emit edited();
    });
    connect(gain_, &Knob::valueChanged, this, [this](double v) {
        band_->gainDb = static_cast<float>(v);
        emit edited();
    });
    connect(q_, &Knob::valueChanged, this, [this](double v) {
        band_->q = static_cast<float>(v);
        emit edited();
    });
    connect(trash_, &TrashButton::clicked, this, [this] { emit removeRequested(index_); });
    retranslateUi();
    refresh(index + 1);
}

void EqBandRow::refresh(int number) {
    number_->setText(QString::number(number));
    const QSignalBlocker a(frequency_);
    const QSignalBlocker b(gain_);
    const QSignalBlocker c(q_);
    frequency_->setValue(band_->centerHz);
    gain_->setValue(band_->gainDb);
    q_->setValue(band_->q);
}

void EqBandRow::retranslateUi() {
    frequency_->setCaption(tr("Freq"));
    frequency_->setToolTip(tr("Band centre frequency\nWhere this band boosts or cuts"));
    gain_->setCaption(tr("Gain"));
    gain_->setToolTip(tr("Band gain\n+ = boost, - = cut"));
    q_->setCaption(QStringLiteral("Q"));
    q_->setToolTip(tr("Band width (Q)\nHigher = narrower, sharper"));
    trash_->setToolTip(tr("Delete band"));
}

} // namespace Lumora
