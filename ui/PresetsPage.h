#pragma once

#include <QWidget>

#include <array>

class QPushButton;
class QScrollArea;
class QStackedWidget;

namespace Lumora {

// The presets tab: a bar of four sub-tabs over four sub-pages. The sub-pages are
// hosts that the preset and key-assignment panels are put into.
class PresetsPage : public QWidget {
    Q_OBJECT
public:
    // The sub-pages, in the order of their tabs.
    enum SubPage { kSoundPresets, kFxPresets, kKeyPresets, kKeyAssignment, kSubPageCount };

    explicit PresetsPage(QWidget* parent);

    void selectSubTab(int index);
    int currentSubTab() const;
    void retranslateUi();

    QPushButton* subTabButton(int index) const { return buttons_[static_cast<size_t>(index)]; }
    // The preset sub-pages hold their panels; the key-assignment sub-page is a
    // scroll area for the key-assignment panel.
    QWidget* subPage(int index) const;
    // Puts a panel into sub-page `index` (replacing the empty placeholder).
    void setPanel(int index, QWidget* panel);

private:
    QStackedWidget* stack_ = nullptr;
    QScrollArea* keyAssignScroll_ = nullptr;
    std::array<QPushButton*, kSubPageCount> buttons_{};
};

} // namespace Lumora
