#pragma once

#include "ui/PresetListPanel.h"

namespace Lumora {

class DiagnosisHistoryList;

// The effect presets page: the user's snapshots of the cleaning chain. One
// click applies a preset (it becomes lastPresetName, so the filter brings it
// back next time) and hands it over with presetApplied(); under the list, the
// diagnosis history.
class PresetsPanel : public PresetListPanel {
    Q_OBJECT
public:
    PresetsPanel(QWidget* parent, SettingsStore* store);

    void retranslateUi() override;
    DiagnosisHistoryList* historyList() const { return history_; }
    void setHistoryVisible(bool visible);
    // Rereads presets and history.
    void refreshAll();

signals:
    void presetApplied(const Lumora::SavedEffectPreset& preset);

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

private:
    DiagnosisHistoryList* history_ = nullptr;
};

} // namespace Lumora
