#pragma once

#include "ui/PresetListPanel.h"

namespace Lumora {

// The key-assignment presets page: saved sets of the four arrow-key slots and
// the default slot. One click makes a set the current assignment (saved at
// once, so the next key press follows it) and reports it with presetApplied().
// The set in force is marked "In use". Assignment sets have no file format, so
// this page has no import or export.
class KeyAssignPresetsPanel : public PresetListPanel {
    Q_OBJECT
public:
    KeyAssignPresetsPanel(QWidget* parent, SettingsStore* store);

    // "▲ name  ▼ name  ◀ name  ▶ name" for a set (slots without a name show "—").
    static QString summary(const KeyAssignmentSet& set);
    static bool sameAssignments(const KeyAssignmentSet& a, const KeyAssignmentSet& b);

signals:
    void presetApplied(const Lumora::KeyAssignPreset& preset);

protected:
    QString pageTitle() const override;
    QString emptyText() const override;
    bool supportsFiles() const override { return false; }
    QString deleteQuestion(const QString& name) const override;
    std::vector<Entry> entriesOf(const AppSettings& settings) const override;
    bool exists(const AppSettings& settings, const std::string& name) const override;
    bool applyNamed(const AppSettings& settings, const std::string& name) override;
    bool renameNamed(const std::string& from, const std::string& to) override;
    bool eraseNamed(const std::string& name) override;
};

} // namespace Lumora
