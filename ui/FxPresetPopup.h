#pragma once

#include "ui/FxPresetDef.h"

#include <QFrame>

#include <vector>

namespace Lumora {

// The popup of an effect's built-in presets: one card per preset, in table
// order, with its name and under it its description, on a rounded dark panel.
// Each card carries a click filter (FxPresetCardFilter); a chosen card
// reports its index and the popup closes (and deletes itself).
class FxPresetPopup : public QFrame {
    Q_OBJECT
public:
    FxPresetPopup(QWidget* parent, const std::vector<FxPresetDef>& presets);

    int cardCount() const { return static_cast<int>(actions_.size()); }
    const std::function<void(SoundFxPreset&)>& action(int index) const;
    // Shows the popup under `anchor`, right-aligned with it, kept on the
    // screen (above the anchor when there is no room below).
    void showBelow(QWidget* anchor);

signals:
    void chosen(int index);

private:
    std::vector<std::function<void(SoundFxPreset&)>> actions_;
};

} // namespace Lumora
