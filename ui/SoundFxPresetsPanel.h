#pragma once

#include "ui/PresetListPanel.h"

namespace Lumora {

// The sound-effect presets page: whole SoundFxPreset snapshots, including the
// four built-in combinations. One click hands the preset over with
// presetApplied(); the dialog applies it and reloads the FX panel.
class SoundFxPresetsPanel : public PresetListPanel {
    Q_OBJECT
public:
    SoundFxPresetsPanel(QWidget* parent, SettingsStore* store);

signals:
    void presetApplied(const Lumora::SavedSoundFxPreset& preset);

protected:
    QString pageTitle() const override;
    QString emptyText() const override;
    std::vector<Entry> entriesOf(const AppSettings& settings) const override;
    bool exists(const AppSettings& settings, const std::string& name) const override;
    bool applyNamed(const AppSettings& settings, const std::string& name) override;
    bool renameNamed(const std::string& from, const std::string& to) override;
    bool eraseNamed(const std::string& name) override;
    int importInto(AppSettings& settings, const std::string& text, std::string& error) override;
    bool exportNamed(const AppSettings& settings, const std::string& name,
                     std::string& text) const override;
};

} // namespace Lumora
