#pragma once

#include <QColor>
#include <QString>
#include <QVariant>
#include <QWidget>

namespace Lumora {

// The small palette every style sheet and painted control of the dialog draws on.
namespace Palette {
constexpr const char* kDeepPurple = "#2D1B69";      // titles, menu and primary text
constexpr const char* kDarkGradientEnd = "#3D6B8A"; // end of the dark button gradient
constexpr const char* kTeal = "#4ECDC4";            // accent: selected tab, outlines
constexpr const char* kAccentGradientEnd = "#45B7D1";
constexpr const char* kDarkTeal = "#00A896";    // selected tab labels, outlined text
constexpr const char* kMutedLabel = "#9B9BB8";  // unselected tab labels
constexpr const char* kMutedPurple = "#6B4EA0"; // placeholder text
constexpr const char* kTextOnLightTeal = "#1A5050";
constexpr const char* kLearned = "#007799";     // "learned" status text
constexpr const char* kTealLighter = "#5EDDD4"; // hover step of the accent gradient
constexpr const char* kDeepPurpleLighter = "#3D2B79";
constexpr const char* kScrollGroove = "rgba(200,180,240,80)";

inline QColor teal(int alpha) {
    return QColor(78, 205, 196, alpha);
}
inline QColor white(int alpha) {
    return QColor(255, 255, 255, alpha);
}

// Verdict colours for the advice cards and meters: soft mint, apricot and rose.
inline QColor verdictColour(int level) {
    switch (level) {
    case 0:
        return QColor(0x3F, 0xBF, 0x9F);
    case 1:
        return QColor(0xF2, 0xA6, 0x3B);
    case 2:
        return QColor(0xE8, 0x5D, 0x75);
    default:
        return QColor(0x9B, 0x9B, 0xB8);
    }
}
} // namespace Palette

// A nearly opaque white panel with rounded corners of `radius` px. The sky is not
// drawn under panels (it would show through at a few percent at most), so stars
// drifting behind them never make the panel's text repaint.
constexpr const char* kPanelRadiusProperty = "lumoraPanelRadius";
inline void markPanel(QWidget* widget, int radius) {
    widget->setProperty(kPanelRadiusProperty, radius);
}

namespace Styles {

// The thin lilac scroll bar of every scroll area.
inline QString scrollBar() {
    return QStringLiteral(
        "QScrollBar:vertical { background: transparent; width: 6px; margin: 0px; border: none; }"
        "QScrollBar::handle:vertical { background: rgba(200,180,240,80); border-radius: 3px;"
        " min-height: 24px; }"
        "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0px;"
        " border: none; background: none; }"
        "QScrollBar::up-arrow:vertical, QScrollBar::down-arrow:vertical { background: none; }"
        "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: none; }");
}

// Every scroll area of the dialog: borderless, transparent, a thin lilac bar.
inline QString scrollArea() {
    return QStringLiteral(
        "QScrollArea { border: none; background: transparent; }"
        "QScrollArea > QWidget > QWidget { background: transparent; }"
        "QScrollBar:vertical { background: transparent; width: 6px; margin: 0px; }"
        "QScrollBar::handle:vertical { background: rgba(200,180,240,80); border-radius: 3px;"
        " min-height: 24px; }"
        "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0px; }"
        "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: none; }");
}

// The teal gradient button (primary action).
inline QString accentButton() {
    return QStringLiteral(
        "QPushButton { background: qlineargradient(x1:0, y1:0, x2:1, y2:0, stop:0 #4ECDC4,"
        " stop:1 #45B7D1); color: white; border: none; border-radius: 10px; padding: 8px 12px;"
        " font-size: 10pt; font-weight: bold; }"
        "QPushButton:hover { background: qlineargradient(x1:0, y1:0, x2:1, y2:0, stop:0 #5EDDD4,"
        " stop:1 #55C7E1); }"
        "QPushButton:disabled { background: #D5EFEC; color: #7DB5B0; }");
}

// The deep purple gradient button.
inline QString darkButton() {
    return QStringLiteral(
        "QPushButton { background: qlineargradient(x1:0, y1:0, x2:1, y2:0, stop:0 #2D1B69,"
        " stop:1 #3D6B8A); color: white; border: none; border-radius: 10px; padding: 8px 12px;"
        " font-size: 10pt; font-weight: bold; }"
        "QPushButton:hover { background: qlineargradient(x1:0, y1:0, x2:1, y2:0, stop:0 #3D2B79,"
        " stop:1 #4D7B9A); }"
        "QPushButton:disabled { background: #D9D4E8; color: #8E86AE; }");
}

// The outlined button (secondary action).
inline QString outlinedButton() {
    return QStringLiteral(
        "QPushButton { background: rgba(255,255,255,200); color: #00A896;"
        " border: 1.5px solid #4ECDC4; border-radius: 10px; padding: 7px 12px; font-size: 10pt;"
        " font-weight: bold; }"
        "QPushButton:hover { background: rgba(255,255,255,235); }"
        "QPushButton:disabled { color: #9B9BB8; border-color: rgba(155,155,184,140); }");
}

// The round teal radio buttons of the effect and key cards, with `textColour`.
inline QString radioButton(const char* textColour) {
    return QStringLiteral(
               "QRadioButton { color: %1; font-size: 9pt; spacing: 5px; background: transparent; }"
               "QRadioButton::indicator { width: 12px; height: 12px; border-radius: 7px;"
               " border: 2px solid rgba(0,170,210,160); background: white; }"
               "QRadioButton::indicator:checked { background: #00AADD; border-color: #0099CC; }")
        .arg(QLatin1String(textColour));
}

// The white choosers. The list is styled too: inside OBS it would otherwise
// take the host's theme (dark rows under our dark text).
inline QString comboBox() {
    return QStringLiteral(
        "QComboBox { background: white; border: 1px solid rgba(0,170,210,110);"
        " border-radius: 6px; padding: 3px 24px 3px 8px; color: #2D1B69; font-size: 9pt; }"
        "QComboBox::drop-down { subcontrol-origin: padding; subcontrol-position: center right;"
        " width: 22px; border: none; }"
        "QComboBox::down-arrow { image: url(:/images/chevron-down.svg); width: 12px;"
        " height: 12px; }"
        "QComboBox QAbstractItemView { background: white; color: #2D1B69;"
        " border: 1px solid rgba(0,170,210,160); outline: none; padding: 2px;"
        " selection-background-color: #4ECDC4; selection-color: white; }"
        "QComboBox QAbstractItemView::item { color: #2D1B69; background: white;"
        " min-height: 24px; padding: 0px 6px; }"
        "QComboBox QAbstractItemView::item:selected, QComboBox QAbstractItemView::item:hover"
        " { color: white; background: #4ECDC4; }");
}

// A white card over the sky.
inline QString card(const char* objectName) {
    return QStringLiteral("#%1 { background: rgba(255,255,255,210); border: 1px solid"
                          " rgba(180,160,220,90); border-radius: 14px; }")
        .arg(QLatin1String(objectName));
}

} // namespace Styles

} // namespace Lumora
