#pragma once

#include <QWidget>

#include <array>

class QLabel;

namespace Lumora {

// The six tabs at the bottom of the dialog: an emoji over a short label each.
// The tabs are plain widgets; the dialog's event filter turns a click on one
// into a page change.
class MainTabBar : public QWidget {
    Q_OBJECT
public:
    static constexpr int kTabCount = 6;
    static constexpr int kHeight = 72;

    explicit MainTabBar(QWidget* parent);

    QWidget* tab(int index) const { return tabs_[static_cast<size_t>(index)]; }
    QLabel* emojiLabel(int index) const { return emojis_[static_cast<size_t>(index)]; }
    QLabel* textLabel(int index) const { return texts_[static_cast<size_t>(index)]; }
    // The tab that a widget is, or -1.
    int indexOf(const QObject* object) const;

    // Restyles every tab for the selected one.
    void setSelected(int index);
    int selected() const { return selected_; }
    void retranslateUi();

private:
    std::array<QWidget*, kTabCount> tabs_{};
    std::array<QLabel*, kTabCount> emojis_{};
    std::array<QLabel*, kTabCount> texts_{};
    int selected_ = -1;
};

} // namespace Lumora
