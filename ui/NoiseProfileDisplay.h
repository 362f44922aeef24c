#pragma once

#include "dsp/EffectPreset.h"

#include <QWidget>

#include <array>

namespace Lumora {

// The learned room noise: one bar per band of the 64-band profile that the
// ambient noise filter subtracts (20 Hz to half the sample rate on a
// logarithmic scale), -96 to -24 dB. While noise is being learned it shows the
// live spectrum in a lighter colour. Repaints only when a value changes.
// Painted from a logical height of 64; the logical width follows the widget.
class NoiseProfileDisplay : public QWidget {
    Q_OBJECT
public:
    static constexpr int kLogicalHeight = 64;
    static constexpr float kBottomDb = -96.0f;
    static constexpr float kTopDb = -24.0f;

    explicit NoiseProfileDisplay(QWidget* parent);

    void setProfile(const std::array<float, kProfileBandCount>& profileDb, bool live = false);
    const std::array<float, kProfileBandCount>& profile() const { return profile_; }
    bool isLive() const { return live_; }
    // Shown over an empty profile (nothing learned yet).
    void setEmptyText(const QString& text);

    QSize sizeHint() const override { return QSize(440, kLogicalHeight); }
    QSize minimumSizeHint() const override { return QSize(160, kLogicalHeight); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::array<float, kProfileBandCount> profile_ = silentProfile();
    bool live_ = false;
    QString emptyText_;
};

} // namespace Lumora
