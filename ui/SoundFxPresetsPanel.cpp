#include "ui/SoundFxPresetsPanel.h"

#include "settings/PresetFile.h"
#include "settings/PresetLists.h"
#include "settings/SettingsJson.h"
#include "settings/SettingsStore.h"
#include "ui/PresetMetaTypes.h"
#include "ui/SoundFxPanel.h"

namespace Lumora {

SoundFxPresetsPanel::SoundFxPresetsPanel(QWidget* parent, SettingsStore* store)
    : PresetListPanel(parent, store) {
    registerPresetMetaTypes();
    retranslateUi();
    refresh();
}

QString SoundFxPresetsPanel::pageTitle() const {
    return QStringLiteral("🎵 ") + tr("Sound FX presets");
}

QString SoundFxPresetsPanel::emptyText() const {
    return tr("No Sound FX presets yet.\nSave one from the FX tab.");
}

std::vector<PresetListPanel::Entry> SoundFxPresetsPanel::entriesOf(const AppSettings& s) const {
    std::vector<Entry> out;
    for (const SavedSoundFxPreset& p : s.soundFxPresets) {
        // The built-ins carry no description: say what they do instead.
        const QString description = p.description.empty() ? SoundFxPanel::describe(p.preset)
                                                          : QString::fromStdString(p.description);
        out.push_back({QString::fromStdString(p.name), description,
                       QString::fromStdString(p.savedAt), false});
    }
    return out;
}

bool SoundFxPresetsPanel::exists(const AppSettings& s, const std::string& name) const {
    return findSoundFxPreset(s, name) != nullptr;
}

bool SoundFxPresetsPanel::applyNamed(const AppSettings& s, const std::string& name) {
    const SavedSoundFxPreset* p = findSoundFxPreset(s, name);
    if (!p) {
        return false;
    }
    emit presetApplied(*p);
    return true;
}

bool SoundFxPresetsPanel::renameNamed(const std::string& from, const std::string& to) {
    return store()->renameSoundFxPreset(from, to);
}

bool SoundFxPresetsPanel::eraseNamed(const std::string& name) {
    return store()->deleteSoundFxPreset(name);
}

int SoundFxPresetsPanel::importInto(AppSettings& s, const std::string& text, std::string& error) {
    PresetBundle bundle;
    if (!parsePresetBundle(text, bundle, error)) {
        return -1;
    }
    const std::string now = nowTimestamp();
    for (SavedSoundFxPreset& p : bundle.soundFxPresets) {
        p.savedAt = now;
        putSoundFxPreset(s, std::move(p));
    }
    return static_cast<int>(bundle.soundFxPresets.size());
}

bool SoundFxPresetsPanel::exportNamed(const AppSettings& s, const std::string& name,
                                      std::string& text) const {
    const SavedSoundFxPreset* p = findSoundFxPreset(s, name);
    if (!p) {
        return false;
    }
    PresetBundle bundle;
    bundle.soundFxPresets.push_back(*p);
    text = renderPresetBundle(bundle);
    return true;
}

} // namespace Lumora
