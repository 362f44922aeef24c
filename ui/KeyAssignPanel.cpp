#include "ui/KeyAssignPanel.h"

#include "settings/KeyAssignmentRules.h"
#include "settings/PresetLists.h"
#include "settings/SettingsStore.h"
#include "ui/KeyCap.h"
#include "ui/PhraseBreaks.h"
#include "ui/PresetNamePrompt.h"
#include "ui/SaveFailure.h"
#include "ui/Theme.h"

#include <QAction>
#include <QButtonGroup>
#include <QComboBox>
#include <QCoreApplication>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTimer>
#include <QVBoxLayout>

namespace Lumora {

namespace {

const char kCardStyle[] = "QFrame#%1 { background: {white@220}; border: 1px solid {blue@70};"
                          " border-radius: 12px; }QLabel { background: transparent; }";
const char kFieldLabel[] = "QLabel { color: {blueInk}; font-size: 9pt; font-weight: bold; }";
const char kNote[] = "QLabel { color: {muted}; font-size: 8pt; padding-left: 22px; }";
const char kTopButton[] =
    "QPushButton { background: {blue@30}; color: {deepBlueInk}; border-radius: 6px;"
    " padding: 3px 10px; font-size: 8pt; font-weight: bold; border: 1px solid"
    " {blue@120}; }QPushButton:hover { background: {blue@70}; }";
const char kEdit[] = "QLineEdit { background: {white}; border: 1px solid {blue@110};"
                     " border-radius: 6px; padding: 3px 8px; color: {ink}; font-size: 9pt; }";

QFrame* card(QWidget* parent, const char* name) {
    auto* frame = new QFrame(parent);
    frame->setObjectName(QLatin1String(name));
    frame->setAttribute(Qt::WA_StyledBackground);
    frame->setStyleSheet(themed(QLatin1String(kCardStyle).arg(QLatin1String(name))));
    markPanel(frame, 12);
    return frame;
}

QLabel* fieldLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setStyleSheet(themed(QLatin1String(kFieldLabel)));
    label->setMinimumWidth(86);
    return label;
}

QComboBox* chooser(QWidget* parent) {
    auto* box = new QComboBox(parent);
    // The host's style may draw the list as a menu in its own colours; an item
    // delegate makes the list's rows follow the style sheet above.
    box->setItemDelegate(new QStyledItemDelegate(box));
    box->setStyleSheet(Styles::comboBox());
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(12);
    box->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return box;
}

QString slotText(int slot) {
    return QCoreApplication::translate("Lumora::KeyAssignPanel", slotLabel(slot));
}

// Keeps the slot labels visible to the translation tools.
[[maybe_unused]] const char* const kSlotLabels[] = {
    QT_TRANSLATE_NOOP("Lumora::KeyAssignPanel", "Up"),
    QT_TRANSLATE_NOOP("Lumora::KeyAssignPanel", "Down"),
    QT_TRANSLATE_NOOP("Lumora::KeyAssignPanel", "Left"),
    QT_TRANSLATE_NOOP("Lumora::KeyAssignPanel", "Right"),
    QT_TRANSLATE_NOOP("Lumora::KeyAssignPanel", "Default"),
    QT_TRANSLATE_NOOP("Lumora::KeyAssignPanel", "Key")};

} // namespace

KeyAssignPanel::KeyAssignPanel(QWidget* parent, SettingsStore* store)
    : QWidget(parent), store_(store) {
    setAttribute(Qt::WA_TranslucentBackground);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 8, 12, 10);
    layout->setSpacing(8);

    auto* top = new QHBoxLayout();
    title_ = new QLabel(this);
    title_->setStyleSheet(themed(QStringLiteral("QLabel { color: {ink}; font-size: 11pt;"
                                                " font-weight: bold; background: transparent; }")));
    top->addWidget(title_, 1);
    save_ = new QPushButton(this);
    load_ = new QPushButton(this);
    for (QPushButton* b : {save_, load_}) {
        b->setStyleSheet(themed(QLatin1String(kTopButton)));
        b->setCursor(Qt::PointingHandCursor);
        top->addWidget(b);
    }
    layout->addLayout(top);
    connect(save_, &QPushButton::clicked, this, &KeyAssignPanel::saveAssignPreset);
    connect(load_, &QPushButton::clicked, this, &KeyAssignPanel::showLoadMenu);

    buildPlate();
    layout->addWidget(plate_);
    hint_ = new QLabel(this);
    hint_->setAlignment(Qt::AlignCenter);
    hint_->setStyleSheet(themed(
        QStringLiteral("QLabel { color: {lilac}; font-size: 8pt; background: transparent; }")));
    layout->addWidget(hint_);
    buildCards();
    layout->addWidget(card_);
    layout->addWidget(defaultCard_);
    layout->addStretch(1);

    flash_ = new QTimer(this);
    flash_->setSingleShot(true);
    flash_->setInterval(180);
    connect(flash_, &QTimer::timeout, this, [this] {
        for (KeyCap* cap : caps_) {
            cap->setFlash(false);
        }
    });

    retranslateUi();
    reload();
    selectSlot(0);
}

void KeyAssignPanel::buildPlate() {
    plate_ = new QFrame(this);
    plate_->setObjectName(QStringLiteral("crossPlate"));
    plate_->setAttribute(Qt::WA_StyledBackground);
    plate_->setStyleSheet(themed(QStringLiteral("QFrame#crossPlate { background: {white@200};"
                                                " border: 1px solid {lilacLine@110};"
                                                " border-radius: 16px; }")));
    markPanel(plate_, 16);
    auto* grid = new QGridLayout(plate_);
    grid->setContentsMargins(14, 12, 14, 12);
    grid->setSpacing(6);
    const int rows[] = {0, 2, 1, 1, 1};
    const int cols[] = {1, 1, 0, 2, 1};
    for (int slot = 0; slot <= kKeySlotCount; ++slot) {
        auto* cap = new KeyCap(plate_, slot);
        cap->setObjectName(QStringLiteral("keyCap%1").arg(slot));
        cap->setGlyph(slot < kKeySlotCount ? QString::fromUtf8(slotGlyph(slot))
                                           : QStringLiteral("◆"));
        caps_[static_cast<size_t>(slot)] = cap;
        grid->addWidget(cap, rows[slot], cols[slot], Qt::AlignCenter);
        connect(cap, &KeyCap::clicked, this, [this, slot] { selectSlot(slot); });
    }
}

void KeyAssignPanel::buildCards() {
    card_ = card(this, "settingsCard");
    auto* c = new QVBoxLayout(card_);
    c->setContentsMargins(14, 10, 14, 12);
    c->setSpacing(6);
    cardHeading_ = new QLabel(card_);
    cardHeading_->setStyleSheet(themed(QStringLiteral("QLabel { color: {ink}; font-size: 10pt;"
                                                      " font-weight: bold; }")));
    c->addWidget(cardHeading_);

    auto* nameRow = new QHBoxLayout();
    keyNameLabel_ = fieldLabel(card_);
    keyName_ = new QLineEdit(card_);
    keyName_->setStyleSheet(themed(QLatin1String(kEdit)));
    keyName_->setMaxLength(40);
    nameRow->addWidget(keyNameLabel_);
    nameRow->addWidget(keyName_, 1);
    c->addLayout(nameRow);
    connect(keyName_, &QLineEdit::textEdited, this, [this](const QString& text) {
        current().keyName = text.trimmed().toStdString();
        refreshPlate();
    });
    connect(keyName_, &QLineEdit::editingFinished, this, [this] {
        if (!loading_) {
            commit();
        }
    });

    triggerLabel_ = fieldLabel(card_);
    c->addWidget(triggerLabel_);
    auto* modes = new QButtonGroup(this);
    toggle_ = new QRadioButton(card_);
    toggleNote_ = new QLabel(card_);
    momentary_ = new QRadioButton(card_);
    momentaryNote_ = new QLabel(card_);
    for (QRadioButton* r : {toggle_, momentary_}) {
        r->setStyleSheet(Styles::radioButton("{ink}"));
        r->setCursor(Qt::PointingHandCursor);
        modes->addButton(r);
    }
    for (QLabel* note : {toggleNote_, momentaryNote_}) {
        note->setStyleSheet(themed(QLatin1String(kNote)));
        note->setWordWrap(true);
    }
    c->addWidget(toggle_);
    c->addWidget(toggleNote_);
    c->addWidget(momentary_);
    c->addWidget(momentaryNote_);
    connect(toggle_, &QRadioButton::toggled, this, [this](bool on) {
        if (on && !loading_) {
            current().mode = KeyMode::Toggle;
            commit();
        }
    });
    connect(momentary_, &QRadioButton::toggled, this, [this](bool on) {
        if (on && !loading_) {
            current().mode = KeyMode::Momentary;
            commit();
        }
    });

    auto addChooser = [this](QWidget* parent, QVBoxLayout* into, QLabel*& label, QComboBox*& box,
                             bool effect, bool defaultSlot) {
        auto* row = new QHBoxLayout();
        label = fieldLabel(parent);
        box = chooser(parent);
        row->addWidget(label);
        row->addWidget(box, 1);
        into->addLayout(row);
        QComboBox* b = box;
        connect(box, QOverload<int>::of(&QComboBox::activated), this,
                [this, b, effect, defaultSlot](int index) {
                    const std::string name = b->itemData(index).toString().toStdString();
                    KeyAssignment& k = defaultSlot ? set_.defaultKey : current();
                    if (effect) {
                        k.hasEffectPreset = !name.empty();
                        k.effectPresetName = name;
                    } else {
                        k.hasSoundFxPreset = !name.empty();
                        k.soundFxPresetName = name;
                    }
                    commit();
                });
    };
    addChooser(card_, c, effectLabel_, effect_, true, false);
    addChooser(card_, c, soundFxLabel_, soundFx_, false, false);

    defaultCard_ = card(this, "defaultCard");
    auto* d = new QVBoxLayout(defaultCard_);
    d->setContentsMargins(14, 10, 14, 12);
    d->setSpacing(6);
    defaultHeading_ = new QLabel(defaultCard_);
    defaultHeading_->setStyleSheet(themed(QStringLiteral("QLabel { color: {ink}; font-size: 9pt;"
                                                         " font-weight: bold; }")));
    defaultHeading_->setWordWrap(true);
    d->addWidget(defaultHeading_);
    addChooser(defaultCard_, d, defaultEffectLabel_, defaultEffect_, true, true);
    addChooser(defaultCard_, d, defaultSoundFxLabel_, defaultSoundFx_, false, true);
}

void KeyAssignPanel::setStore(SettingsStore* store) {
    store_ = store;
    reload();
}

void KeyAssignPanel::reload() {
    set_ = KeyAssignmentSet{};
    effectNames_.clear();
    soundFxNames_.clear();
    if (store_) {
        const AppSettings s = store_->load();
        set_ = s.keyAssignments;
        for (const SavedEffectPreset& p : s.presets) {
            effectNames_ << QString::fromStdString(p.name);
        }
        for (const SavedSoundFxPreset& p : s.soundFxPresets) {
            soundFxNames_ << QString::fromStdString(p.name);
        }
    }
    save_->setEnabled(store_ != nullptr);
    load_->setEnabled(store_ != nullptr);
    refreshPlate();
    refreshCard();
}

KeyAssignment& KeyAssignPanel::current() {
    const int slot = selected_ >= 0 && selected_ < kKeySlotCount ? selected_ : 0;
    return set_.keys[static_cast<size_t>(slot)];
}

void KeyAssignPanel::fillChooser(QComboBox* box, const QStringList& names, bool has,
                                 const std::string& name) {
    const QSignalBlocker quiet(box);
    box->clear();
    box->addItem(tr("(none)"), QString());
    for (const QString& n : names) {
        box->addItem(n, n);
    }
    int index = 0;
    if (has && !name.empty()) {
        const QString wanted = QString::fromStdString(name);
        index = box->findData(wanted);
        if (index < 0) {
            // A preset that was deleted since: shown, so the user sees why the
            // key does nothing, and kept until another is chosen.
            box->addItem(QStringLiteral("⚠ ") + wanted + tr(" (missing)"), wanted);
            index = box->count() - 1;
        }
    }
    box->setCurrentIndex(index);
}

void KeyAssignPanel::refreshPlate() {
    for (int slot = 0; slot <= kKeySlotCount; ++slot) {
        KeyCap* cap = caps_[static_cast<size_t>(slot)];
        if (slot == kKeySlotCount) {
            cap->setName(slotText(kDefaultSlot));
        } else {
            const std::string name = slotDisplayName(set_.keys[static_cast<size_t>(slot)]);
            cap->setName(name.empty() ? slotText(slot) : QString::fromStdString(name));
        }
        cap->setToolTip(cap->name()); // in full where the key shortens it
        cap->setSelected(slot == selected_);
        cap->setLamp(slot == lampSlot_);
    }
}

void KeyAssignPanel::refreshCard() {
    loading_ = true;
    const KeyAssignment& k = current();
    const int slot = selected_ < kKeySlotCount ? selected_ : 0;
    cardHeading_->setText(QString::fromUtf8(slotGlyph(slot)) + QStringLiteral("  ") +
                          slotText(slot));
    if (keyName_->text() != QString::fromStdString(k.keyName)) {
        keyName_->setText(QString::fromStdString(k.keyName));
    }
    toggle_->setChecked(k.mode == KeyMode::Toggle);
    momentary_->setChecked(k.mode == KeyMode::Momentary);
    fillChooser(effect_, effectNames_, k.hasEffectPreset, k.effectPresetName);
    fillChooser(soundFx_, soundFxNames_, k.hasSoundFxPreset, k.soundFxPresetName);
    fillChooser(defaultEffect_, effectNames_, set_.defaultKey.hasEffectPreset,
                set_.defaultKey.effectPresetName);
    fillChooser(defaultSoundFx_, soundFxNames_, set_.defaultKey.hasSoundFxPreset,
                set_.defaultKey.soundFxPresetName);
    loading_ = false;
}

void KeyAssignPanel::commit() {
    const bool saved = store_ && store_->saveKeyAssignments(set_);
    refreshPlate();
    emit assignmentsChanged(saved);
}

void KeyAssignPanel::selectSlot(int slot) {
    if (slot < 0 || slot > kKeySlotCount) {
        return;
    }
    if (slot == kDefaultSlot) {
        // The default slot has its own card: point at it.
        for (QWidget* w = parentWidget(); w; w = w->parentWidget()) {
            if (auto* scroll = qobject_cast<QScrollArea*>(w)) {
                scroll->ensureWidgetVisible(defaultCard_);
                break;
            }
        }
        defaultEffect_->setFocus();
    }
    selected_ = slot;
    refreshPlate();
    if (slot < kKeySlotCount) {
        refreshCard();
    }
}

void KeyAssignPanel::highlightSlot(int slot) {
    if (slot < 0 || slot >= kKeySlotCount) {
        return;
    }
    selectSlot(slot);
    for (KeyCap* cap : caps_) {
        cap->setFlash(cap->slot() == slot);
    }
    flash_->start();
}

void KeyAssignPanel::setLamps(int activeSlot) {
    lampSlot_ = activeSlot >= 0 && activeSlot < kKeySlotCount ? activeSlot : -1;
    for (KeyCap* cap : caps_) {
        cap->setLamp(cap->slot() == lampSlot_);
    }
}

bool KeyAssignPanel::lampLit(int slot) const {
    return slot >= 0 && slot <= kKeySlotCount && caps_[static_cast<size_t>(slot)]->lampLit();
}

KeyCap* KeyAssignPanel::keyCap(int slot) const {
    return slot >= 0 && slot <= kKeySlotCount ? caps_[static_cast<size_t>(slot)] : nullptr;
}

bool KeyAssignPanel::saveAssignPreset() {
    if (!store_) {
        return false;
    }
    QString name;
    const QString title = tr("Save assign preset");
    const QString label = tr("Enter a preset name:");
    if (!(prompt_ ? prompt_(title, label, name) : promptForPresetName(this, title, label, name)) ||
        name.trimmed().isEmpty()) {
        return false;
    }
    name = name.trimmed();
    if (!store_->saveKeyAssignPreset(name.toStdString(), set_)) {
        QMessageBox::warning(this, title,
                             saveFailureText(store_, tr("The preset could not be saved.")));
        return false;
    }
    emit presetSaved(name);
    return true;
}

bool KeyAssignPanel::loadAssignPreset(const QString& name) {
    if (!store_) {
        return false;
    }
    const AppSettings s = store_->load();
    const KeyAssignPreset* p = findKeyAssignPreset(s, name.toStdString());
    if (!p) {
        return false;
    }
    set_ = p->assignments;
    const bool saved = store_->saveKeyAssignments(set_);
    reload();
    emit assignmentsChanged(saved);
    return true;
}

void KeyAssignPanel::showLoadMenu() {
    if (!store_) {
        return;
    }
    QMenu menu(this);
    menu.setStyleSheet(themed(QStringLiteral("QMenu { background: {white}; border: 1px solid"
                                             " {teal@120}; padding: 4px 0px; }"
                                             "QMenu::item { padding: 6px 18px; color: {ink}; }"
                                             "QMenu::item:selected { background: {teal@60}; }")));
    const AppSettings s = store_->load();
    for (const KeyAssignPreset& p : s.keyAssignPresets) {
        const QString name = QString::fromStdString(p.name);
        QAction* action = menu.addAction(name);
        connect(action, &QAction::triggered, this, [this, name] { loadAssignPreset(name); });
    }
    if (menu.isEmpty()) {
        menu.addAction(tr("No key assign presets yet."))->setEnabled(false);
    }
    menu.exec(load_->mapToGlobal(QPoint(0, load_->height())));
}

void KeyAssignPanel::setEasyMode(bool easy) {
    // The notes under the two triggers help the first time; Advanced mode
    // keeps the card compact.
    easy_ = easy;
    toggleNote_->setVisible(easy);
    momentaryNote_->setVisible(easy);
}

void KeyAssignPanel::retranslateUi() {
    title_->setText(QStringLiteral("🎹 ") + tr("Key Assign"));
    save_->setText(tr("💾 Save"));
    save_->setToolTip(tr("Save assign preset"));
    load_->setText(tr("📂 Load"));
    load_->setToolTip(tr("Load assign preset"));
    hint_->setText(tr("▼ Click a key to configure"));
    keyNameLabel_->setText(tr("🏷 Key name:"));
    keyName_->setPlaceholderText(tr("e.g. Singing Mode"));
    triggerLabel_->setText(tr("⏱ Trigger:"));
    toggle_->setText(tr("🔁 Toggle"));
    toggleNote_->setText(keepPhrases(tr("Press once to apply, press again to disable")));
    momentary_->setText(tr("◎ Momentary"));
    momentaryNote_->setText(keepPhrases(tr("Apply only while held")));
    effectLabel_->setText(tr("🎛 Sound:"));
    soundFxLabel_->setText(QStringLiteral("🎵 FX:"));
    defaultHeading_->setText(tr("Default state settings\nPreset applied when no key is pressed"));
    defaultEffectLabel_->setText(tr("🎛 Sound:"));
    defaultSoundFxLabel_->setText(QStringLiteral("🎵 FX:"));
    refreshPlate();
    refreshCard();
}

} // namespace Lumora
