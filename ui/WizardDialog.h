#pragma once

#include <QDialog>

namespace Lumora {

struct ObsFilterState;

// The plug-in's one window: diagnosis, results, sound, FX, presets and keys.
class WizardDialog : public QDialog {
    Q_OBJECT
public:
    // `state` may be null: the dialog then shows its pages but drives no filter.
    WizardDialog(QWidget* parent, ObsFilterState* state);
    ~WizardDialog() override;

    // Stops the timers and lets go of the filter state, which is about to be freed.
    void detach();
    ObsFilterState* filterState() const { return state_; }

private:
    ObsFilterState* state_ = nullptr;
};

} // namespace Lumora
