#include "ui/PresetsPanel.h"

#include "settings/PresetFile.h"
#include "settings/PresetLists.h"
#include "settings/SettingsJson.h"
#include "settings/SettingsStore.h"
#include "ui/DiagnosisHistoryList.h"
#include "ui/PresetMetaTypes.h"

#include <QVBoxLayout>

namespace Lumora {

PresetsPanel::PresetsPanel(QWidget* parent, SettingsStore* store) : PresetListPanel(parent, store) {
    registerPresetMetaTypes();
    history_ = new DiagnosisHistoryList(this, store);
    extraLayout()->addSpacing(8);
    extraLayout()->addWidget(history_);
    retranslateUi();
    refresh();
}

void PresetsPanel::refreshAll() {
    refresh();
    history_->setStore(store());
}

void PresetsPanel::setHistoryVisible(bool visible) {
    history_->setVisible(visible);
}

void PresetsPanel::retranslateUi() {
    PresetListPanel::retranslateUi();
    history_->retranslateUi();
}

QString PresetsPanel::pageTitle() const {
    return QStringLiteral("🎛 ") + tr("Sound presets");
}

QString PresetsPanel::emptyText() const {
    return tr("No sound presets yet.\nSave one from the Sound tab or from the diagnosis results.");
}

std::vector<PresetListPanel::Entry> PresetsPanel::entriesOf(const AppSettings& s) const {
    std::vector<Entry> out;
    for (const SavedEffectPreset& p : s.presets) {
        out.push_back({QString::fromStdString(p.name), QString::fromStdString(p.description),
                       QString::fromStdString(p.savedAt), p.name == s.lastPresetName});
    }
    return out;
}

bool PresetsPanel::exists(const AppSettings& s, const std::string& name) const {
    return findEffectPreset(s, name) != nullptr;
}

bool PresetsPanel::applyNamed(const AppSettings& s, const std::string& name) {
    const SavedEffectPreset* p = findEffectPreset(s, name);
    if (!p) {
        return false;
    }
    const SavedEffectPreset chosen = *p;
    AppFields fields = appFieldsOf(s);
    fields.lastPresetName = name;
    const bool saved = store()->saveAppFields(fields);
    // The voice changes whether or not the name could be remembered.
    emit presetApplied(chosen);
    return saved;
}

bool PresetsPanel::renameNamed(const std::string& from, const std::string& to) {
    return store()->renameEffectPreset(from, to);
}

bool PresetsPanel::eraseNamed(const std::string& name) {
    return store()->deleteEffectPreset(name);
}

int PresetsPanel::importInto(AppSettings& s, const std::string& text, std::string& error) {
    PresetBundle bundle;
    if (!parsePresetBundle(text, bundle, error)) {
        return -1;
    }
    const std::string now = nowTimestamp();
    for (SavedEffectPreset& p : bundle.effectPresets) {
        p.savedAt = now;
        putEffectPreset(s, std::move(p));
    }
    return static_cast<int>(bundle.effectPresets.size());
}

bool PresetsPanel::exportNamed(const AppSettings& s, const std::string& name,
                               std::string& text) const {
    const SavedEffectPreset* p = findEffectPreset(s, name);
    if (!p) {
        return false;
    }
    PresetBundle bundle;
    bundle.effectPresets.push_back(*p);
    text = renderPresetBundle(bundle);
    return true;
}

} // namespace Lumora
