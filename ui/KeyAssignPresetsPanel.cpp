#include "ui/KeyAssignPresetsPanel.h"

#include "settings/BuiltInPresets.h"
#include "settings/KeyAssignmentRules.h"
#include "settings/PresetLists.h"
#include "settings/SettingsStore.h"
#include "ui/PresetMetaTypes.h"

namespace Lumora {

namespace {

bool sameKey(const KeyAssignment& a, const KeyAssignment& b) {
    return a.mode == b.mode && a.hasEffectPreset == b.hasEffectPreset &&
           a.hasSoundFxPreset == b.hasSoundFxPreset && a.effectPresetName == b.effectPresetName &&
           a.soundFxPresetName == b.soundFxPresetName && a.keyName == b.keyName;
}

} // namespace

KeyAssignPresetsPanel::KeyAssignPresetsPanel(QWidget* parent, SettingsStore* store)
    : PresetListPanel(parent, store) {
    registerPresetMetaTypes();
    retranslateUi();
    refresh();
}

bool KeyAssignPresetsPanel::sameAssignments(const KeyAssignmentSet& a, const KeyAssignmentSet& b) {
    for (size_t i = 0; i < a.keys.size(); ++i) {
        if (!sameKey(a.keys[i], b.keys[i])) {
            return false;
        }
    }
    return sameKey(a.defaultKey, b.defaultKey);
}

QString KeyAssignPresetsPanel::summary(const KeyAssignmentSet& set) {
    QStringList parts;
    for (int slot = 0; slot < kKeySlotCount; ++slot) {
        const std::string name = slotDisplayName(set.keys[static_cast<size_t>(slot)]);
        parts << QString::fromUtf8(slotGlyph(slot)) + QLatin1Char(' ') +
                     (name.empty() ? QStringLiteral("—") : QString::fromStdString(name));
    }
    return parts.join(QLatin1Char('\n'));
}

QString KeyAssignPresetsPanel::deleteQuestion(const QString& name) const {
    // The settings file re-installs the built-in set whenever it is missing.
    if (name == QString::fromUtf8(kDefaultKeyAssignPresetName)) {
        return tr("\"%1\" is built in: it comes back at once, and the arrow keys return to "
                  "the built-in assignment. Delete it anyway?")
            .arg(name);
    }
    return PresetListPanel::deleteQuestion(name);
}

QString KeyAssignPresetsPanel::pageTitle() const {
    return QStringLiteral("🎹 ") + tr("Key assign presets");
}

QString KeyAssignPresetsPanel::emptyText() const {
    return tr("No key assign presets yet.\nSave one on the key assign page.");
}

std::vector<PresetListPanel::Entry> KeyAssignPresetsPanel::entriesOf(const AppSettings& s) const {
    std::vector<Entry> out;
    for (const KeyAssignPreset& p : s.keyAssignPresets) {
        out.push_back({QString::fromStdString(p.name), summary(p.assignments),
                       QString::fromStdString(p.savedAt),
                       sameAssignments(p.assignments, s.keyAssignments)});
    }
    return out;
}

bool KeyAssignPresetsPanel::exists(const AppSettings& s, const std::string& name) const {
    return findKeyAssignPreset(s, name) != nullptr;
}

bool KeyAssignPresetsPanel::applyNamed(const AppSettings& s, const std::string& name) {
    const KeyAssignPreset* p = findKeyAssignPreset(s, name);
    if (!p) {
        return false;
    }
    const KeyAssignPreset chosen = *p;
    const bool saved = store()->saveKeyAssignments(chosen.assignments);
    emit presetApplied(chosen);
    return saved;
}

bool KeyAssignPresetsPanel::renameNamed(const std::string& from, const std::string& to) {
    return store()->renameKeyAssignPreset(from, to);
}

bool KeyAssignPresetsPanel::eraseNamed(const std::string& name) {
    return store()->deleteKeyAssignPreset(name);
}

} // namespace Lumora
