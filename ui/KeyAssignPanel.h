#pragma once

#include "settings/AppSettings.h"

#include "ui/PresetNamePrompt.h"

#include <QWidget>

#include <array>
#include <functional>

class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTimer;

namespace Lumora {

class KeyCap;
class SettingsStore;

// The key-assignment page: the four arrow keys on a cross-shaped plate with
// the default slot in the middle, a card that edits the chosen key (its name,
// its trigger, the sound preset and the Sound FX preset it applies) and a
// card for the default slot (what is in force while no key is active). Every
// edit is saved to the settings at once, so the next key press follows it.
// Whole assignments are saved as and loaded from key-assignment presets.
//
// The dialog catches the arrow keys; on this page a press only points at its
// key (highlightSlot), and the lamps show the slot that is active (setLamps).
class KeyAssignPanel : public QWidget {
    Q_OBJECT
public:
    KeyAssignPanel(QWidget* parent, SettingsStore* store);

    void setStore(SettingsStore* store);
    void setNamePrompt(NamePrompt prompt) { prompt_ = std::move(prompt); }
    // Rereads the assignment and the preset lists from the settings.
    void reload();
    const KeyAssignmentSet& assignments() const { return set_; }

    // Chooses the slot that the settings card edits (0-3), or the default
    // slot (4), which brings its card into view.
    void selectSlot(int slot);
    int selectedSlot() const { return selected_; }
    // An arrow key went down while this page was shown: choose its slot and
    // flash its key.
    void highlightSlot(int slot);
    // Lamp i is lit when i is the active slot (-1: none).
    void setLamps(int activeSlot);
    bool lampLit(int slot) const;

    // Saves the whole assignment as a key-assignment preset (asks for a name).
    bool saveAssignPreset();
    // Makes a key-assignment preset the current assignment.
    bool loadAssignPreset(const QString& name);

    void setEasyMode(bool easy);
    void retranslateUi();

    KeyCap* keyCap(int slot) const;
    QFrame* crossPlate() const { return plate_; }
    QFrame* settingsCard() const { return card_; }
    QFrame* defaultCard() const { return defaultCard_; }
    QLineEdit* keyNameEdit() const { return keyName_; }
    QRadioButton* toggleChoice() const { return toggle_; }
    QRadioButton* momentaryChoice() const { return momentary_; }
    QComboBox* effectChooser() const { return effect_; }
    QComboBox* soundFxChooser() const { return soundFx_; }
    QComboBox* defaultEffectChooser() const { return defaultEffect_; }
    QComboBox* defaultSoundFxChooser() const { return defaultSoundFx_; }
    QPushButton* saveButton() const { return save_; }
    QPushButton* loadButton() const { return load_; }

signals:
    // The assignment changed and was saved (or saving failed: saved false).
    void assignmentsChanged(bool saved);
    void presetSaved(const QString& name);

private:
    void buildPlate();
    void buildCards();
    void refreshPlate();
    void refreshCard();
    void fillChooser(QComboBox* box, const QStringList& names, bool has, const std::string& name);
    void commit();
    KeyAssignment& current();
    void showLoadMenu();

    SettingsStore* store_ = nullptr;
    NamePrompt prompt_;
    KeyAssignmentSet set_;
    QStringList effectNames_;
    QStringList soundFxNames_;
    int selected_ = 0;
    int lampSlot_ = -1;
    bool easy_ = true;
    bool loading_ = false;

    QLabel* title_ = nullptr;
    QPushButton* save_ = nullptr;
    QPushButton* load_ = nullptr;
    QFrame* plate_ = nullptr;
    std::array<KeyCap*, kKeySlotCount + 1> caps_{};
    QLabel* hint_ = nullptr;
    QFrame* card_ = nullptr;
    QLabel* cardHeading_ = nullptr;
    QLabel* keyNameLabel_ = nullptr;
    QLineEdit* keyName_ = nullptr;
    QLabel* triggerLabel_ = nullptr;
    QRadioButton* toggle_ = nullptr;
    QRadioButton* momentary_ = nullptr;
    QLabel* toggleNote_ = nullptr;
    QLabel* momentaryNote_ = nullptr;
    QLabel* effectLabel_ = nullptr;
    QComboBox* effect_ = nullptr;
    QLabel* soundFxLabel_ = nullptr;
    QComboBox* soundFx_ = nullptr;
    QFrame* defaultCard_ = nullptr;
    QLabel* defaultHeading_ = nullptr;
    QLabel* defaultEffectLabel_ = nullptr;
    QComboBox* defaultEffect_ = nullptr;
    QLabel* defaultSoundFxLabel_ = nullptr;
    QComboBox* defaultSoundFx_ = nullptr;
    QTimer* flash_ = nullptr;
};

} // namespace Lumora
