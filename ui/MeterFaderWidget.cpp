#include "ui/MeterFaderWidget.h"

#include "ui/GainFader.h"
#include "ui/LevelMeter.h"
#include "ui/Theme.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <cmath>

namespace Lumora {

namespace {

QString formatGain(float db) {
    return QStringLiteral("%1%2 dB")
        .arg(db > 0.0f ? QStringLiteral("+") : QString())
        .arg(static_cast<double>(db), 0, 'f', 1);
}

const char kRowLabelStyle[] = "QLabel { color: {muted}; font-size: 8pt; font-weight: bold;"
                              " background: transparent; border: none; }";
const char kValueStyle[] = "QLabel { color: {ink}; font-size: 8pt; background: transparent;"
                           " border: none; }";

} // namespace

MeterFaderWidget::MeterFaderWidget(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("meterFader"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(themed(QStringLiteral("#meterFader { background: {white@210};"
                                        " border: 1px solid {teal@80}; border-radius: 12px; }")));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    markPanel(this, 12);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(12, 8, 12, 8);
    outer->setSpacing(4);

    auto* head = new QHBoxLayout();
    head->setSpacing(8);
    title_ = new QLabel(this);
    title_->setStyleSheet(themed(QStringLiteral("QLabel { color: {ink}; font-size: 9pt;"
                                                " font-weight: bold; background: transparent; }")));
    bypassButton_ = new QPushButton(this);
    bypassButton_->setCheckable(true);
    bypassButton_->setCursor(Qt::PointingHandCursor);
    bypassButton_->setStyleSheet(themed(QStringLiteral(
        "QPushButton { background: {white@200}; color: {lilac}; font-size: 8pt;"
        " border: 1px solid {lilacLine@140}; border-radius: 8px; padding: 2px 10px; }"
        "QPushButton:hover { background: {white@235}; }"
        "QPushButton:checked { background: {badInk}; color: {white}; border-color: {badInk}; }")));
    delay_ = new QLabel(this);
    delay_->setObjectName(QStringLiteral("outputDelay"));
    delay_->setStyleSheet(themed(QStringLiteral("QLabel { color: {blueInk}; font-size: 8pt;"
                                                " background: transparent; }")));
    delay_->hide();
    head->addWidget(title_);
    head->addStretch(1);
    head->addWidget(delay_);
    head->addWidget(bypassButton_);
    outer->addLayout(head);

    auto* grid = new QGridLayout();
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(2);
    auto makeRow = [&](int row, QLabel*& label, LevelMeter*& meter, GainFader*& fader,
                       QLabel*& value) {
        label = new QLabel(this);
        label->setStyleSheet(themed(QLatin1String(kRowLabelStyle)));
        label->setFixedWidth(30);
        meter = new LevelMeter(this);
        meter->setFixedHeight(10);
        fader = new GainFader(this);
        value = new QLabel(this);
        value->setStyleSheet(themed(QLatin1String(kValueStyle)));
        value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        value->setFixedWidth(56);
        grid->addWidget(label, row, 0);
        grid->addWidget(meter, row, 1);
        grid->addWidget(fader, row, 2);
        grid->addWidget(value, row, 3);
    };
    makeRow(0, inputLabel_, inputMeter_, inputFader_, inputValue_);
    makeRow(1, outputLabel_, outputMeter_, outputFader_, outputValue_);
    grid->setColumnStretch(1, 5);
    grid->setColumnStretch(2, 4);
    outer->addLayout(grid);

    auto emitGains = [this](float) {
        refreshValueLabels();
        emit gainsChanged(inputFader_->value(), outputFader_->value());
    };
    connect(inputFader_, &GainFader::valueChanged, this, emitGains);
    connect(outputFader_, &GainFader::valueChanged, this, emitGains);
    connect(bypassButton_, &QPushButton::toggled, this, &MeterFaderWidget::bypassChanged);

    refreshValueLabels();
    retranslateUi();
}

void MeterFaderWidget::setTitle(const QString& title) {
    title_->setText(title);
}

void MeterFaderWidget::retranslateUi() {
    inputLabel_->setText(tr("IN"));
    outputLabel_->setText(tr("OUT"));
    bypassButton_->setText(tr("Bypass"));
    inputFader_->setToolTip(tr("Input gain (double-click for 0 dB)"));
    outputFader_->setToolTip(tr("Output gain (double-click for 0 dB)"));
    delay_->setToolTip(
        tr("How late your voice leaves the filter.\nOBS moves the sound's timestamps "
           "by as much, so picture and voice stay together: no sync offset to "
           "set."));
    refreshDelay();
}

void MeterFaderWidget::setDelayMs(double ms) {
    // Whole milliseconds are what the streamer reads; a repaint only when that changes.
    const double shown = std::round(ms);
    if (shown != delayMs_) {
        delayMs_ = shown;
        refreshDelay();
    }
}

void MeterFaderWidget::refreshDelay() {
    if (delayMs_ < 0.0) {
        return;
    }
    delay_->setText(QStringLiteral("⏱ ") + tr("Delay: %1 ms").arg(delayMs_, 0, 'f', 0));
    delay_->show();
}

void MeterFaderWidget::setLevels(float inputDb, float outputDb) {
    inputMeter_->setLevel(inputDb);
    outputMeter_->setLevel(outputDb);
}

void MeterFaderWidget::clearLevels() {
    inputMeter_->clear();
    outputMeter_->clear();
}

void MeterFaderWidget::setGains(float inputGainDb, float outputGainDb) {
    inputFader_->setValue(inputGainDb);
    outputFader_->setValue(outputGainDb);
    refreshValueLabels();
}

void MeterFaderWidget::setBypass(bool on) {
    const QSignalBlocker blocker(bypassButton_);
    bypassButton_->setChecked(on);
}

float MeterFaderWidget::inputGain() const {
    return inputFader_->value();
}
float MeterFaderWidget::outputGain() const {
    return outputFader_->value();
}
bool MeterFaderWidget::bypass() const {
    return bypassButton_->isChecked();
}

void MeterFaderWidget::refreshValueLabels() {
    const QString in = formatGain(inputFader_->value());
    const QString out = formatGain(outputFader_->value());
    if (inputValue_->text() != in) {
        inputValue_->setText(in);
    }
    if (outputValue_->text() != out) {
        outputValue_->setText(out);
    }
}

} // namespace Lumora
