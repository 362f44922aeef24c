#pragma once

#include <QColor>
#include <QString>
#include <QVariant>
#include <QWidget>

class QPainter;

namespace Lumora {

// The one palette of the dialog. Style sheets name these colours as {name} or
// {name@alpha} (alpha 0-255) and go through themed(); painted controls take
// them through colour(). Text colours are chosen for a contrast of at least
// 4.5:1 on the panels and on the sky behind them, because the dialog is read
// at a glance in the middle of a stream.
namespace Palette {
// Text.
constexpr QRgb kInk = 0x2D1B69;         // titles and primary text
constexpr QRgb kLilac = 0x6B4EA0;       // secondary text
constexpr QRgb kMuted = 0x5F5F86;       // tertiary labels, unselected tabs
constexpr QRgb kTealInk = 0x007064;     // selected tab, outlined buttons
constexpr QRgb kBlueInk = 0x006996;     // field labels, "learned", knob values
constexpr QRgb kDeepBlueInk = 0x005577; // text on pale blue buttons
constexpr QRgb kDeepTeal = 0x1A5050;    // text on pale teal
constexpr QRgb kDisabledInk = 0x8E86AE; // disabled controls
constexpr QRgb kDisplayText = 0xC8EBFA; // text on the dark displays
constexpr QRgb kWhite = 0xFFFFFF;

// Accents: the teal and blue gradients and lines.
constexpr QRgb kTeal = 0x4ECDC4;
constexpr QRgb kTealLight = 0x5EDDD4;
constexpr QRgb kTealBlue = 0x45B7D1;
constexpr QRgb kTealBlueLight = 0x55C7E1;
constexpr QRgb kButtonTeal = 0x1B8077;     // the primary button's gradient, deep enough
constexpr QRgb kButtonTealBlue = 0x1F7A96; // for its white label
constexpr QRgb kButtonTealDark = 0x137068; // and its hover
constexpr QRgb kButtonTealBlueDark = 0x176A85;
constexpr QRgb kBlue = 0x00AADD;
constexpr QRgb kBlueStrong = 0x0099CC;
constexpr QRgb kBlueDeep = 0x0064A0;
constexpr QRgb kInkLight = 0x3D2B79;
constexpr QRgb kInkEnd = 0x3D6B8A; // the dark button's gradient
constexpr QRgb kInkEndLight = 0x4D7B9A;

// The dark displays (compressor, EQ, noise profile) and their glows.
constexpr QRgb kDisplay = 0x003C5F;
constexpr QRgb kNight = 0x001E37;
constexpr QRgb kGlowTeal = 0x6FF0E6;
constexpr QRgb kGlowMint = 0x00E6C8;
constexpr QRgb kGlowBlue = 0x00DCFF;

// Lines, fills and the sky.
constexpr QRgb kLilacLine = 0xB4A0DC;
constexpr QRgb kLilacPale = 0xC8B4F0;
constexpr QRgb kLilacMist = 0xD8D0EC;
constexpr QRgb kGrey = 0x9B9BB8;
constexpr QRgb kGreyCool = 0x96AAB9;
constexpr QRgb kGreyLight = 0xC0C0D0;
constexpr QRgb kPaleBlue = 0xE6F8FC;
constexpr QRgb kPaleLilac = 0xF1EEFA;
constexpr QRgb kPaleMint = 0xE1F8F4;
constexpr QRgb kSkyLilac = 0xE6DEF8;
constexpr QRgb kSkyMint = 0xD6F6EA;
constexpr QRgb kSkyGlow = 0xC8F8E8;

// Verdicts: soft mint, apricot and rose for marks and meters, and a deeper
// shade of each for text.
constexpr QRgb kGood = 0x3FBF9F;
constexpr QRgb kWarn = 0xF2A63B;
constexpr QRgb kBad = 0xE85D75;
constexpr QRgb kAmber = 0xF2C14E;
constexpr QRgb kGoodInk = 0x246E5C;
constexpr QRgb kWarnInk = 0x8D5609;
constexpr QRgb kBadInk = 0xC11B38;

// How opaque the dark displays are on their panel, and their labels on them.
constexpr int kDisplayAlpha = 225;
constexpr int kDisplayTextAlpha = 230;

// Text that painted controls draw, with what it is drawn on (alpha under 255: over
// a panel or the sky). Style-sheet text is checked where it is shown; this text
// is checked from here, so a painter must draw its text in one of these pairs.
struct PaintedText {
    const char* where;
    QRgb ink;
    int inkAlpha;
    QRgb ground;
    int groundAlpha;
};
constexpr PaintedText kPaintedTexts[] = {
    {"display scale and messages", kDisplayText, kDisplayTextAlpha, kDisplay, kDisplayAlpha},
    {"compressor IN", kLilacMist, 255, kDisplay, kDisplayAlpha},
    {"compressor OUT", kGlowTeal, 255, kDisplay, kDisplayAlpha},
    {"compressor GR", kAmber, 255, kDisplay, kDisplayAlpha},
    {"key cap", kInk, 255, kPaleLilac, 255},
    {"key cap name", kLilac, 255, kPaleLilac, 255},
    {"key cap under the mouse", kLilac, 255, kPaleBlue, 255},
    {"key cap pressed", kInk, 255, kTealBlue, 255},
    {"knob value", kInk, 255, kPaleBlue, 255},
    {"knob unit", kBlueInk, 255, kPaleBlue, 255},
    {"arrow key", kTealInk, 255, kWhite, 230},
    {"arrow key lit", kInk, 255, kTeal, 255},
    {"countdown", kInk, 255, kWhite, 215},
};

inline QColor colour(QRgb rgb, int alpha = 255) {
    return QColor(qRed(rgb), qGreen(rgb), qBlue(rgb), alpha);
}

// Verdict level 0 good, 1 warning, 2 bad; anything else is "not measured".
QColor verdictColour(int level);
QColor verdictInk(int level);
} // namespace Palette

// `sheet` with every {name} and {name@alpha} replaced by the palette's colour.
// A name that is not in the palette is left as it stands, so a typo shows up as
// an unstyled colour and in the widget walk, not as a silently wrong one.
QString themed(const QString& sheet);

// Text on a background: the contrast ratio of two opaque colours, 1 to 21.
double contrastRatio(const QColor& a, const QColor& b);

// Scales `p` so that `widget` paints in a space `logicalHeight` high, whatever
// its size on screen, and draws the framed, tinted panel the curve and meter
// displays stand on. Returns the width in that space.
qreal beginDisplay(QPainter& p, const QWidget& widget, int logicalHeight);

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
    return themed(QStringLiteral(
        "QScrollBar:vertical { background: transparent; width: 6px; margin: 0px; border: none; }"
        "QScrollBar::handle:vertical { background: {lilacPale@80}; border-radius: 3px;"
        " min-height: 24px; }"
        "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0px;"
        " border: none; background: none; }"
        "QScrollBar::up-arrow:vertical, QScrollBar::down-arrow:vertical { background: none; }"
        "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: none; }"));
}

// Every scroll area of the dialog: borderless, transparent, a thin lilac bar.
inline QString scrollArea() {
    return themed(QStringLiteral(
        "QScrollArea { border: none; background: transparent; }"
        "QScrollArea > QWidget > QWidget { background: transparent; }"
        "QScrollBar:vertical { background: transparent; width: 6px; margin: 0px; }"
        "QScrollBar::handle:vertical { background: {lilacPale@80}; border-radius: 3px;"
        " min-height: 24px; }"
        "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0px; }"
        "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: none; }"));
}

// The teal gradient button (primary action). Its teal is a shade deeper than the
// accent lines so that the white label stays readable; hovering deepens it more.
inline QString accentButton() {
    return themed(QStringLiteral(
        "QPushButton { background: qlineargradient(x1:0, y1:0, x2:1, y2:0, stop:0 {buttonTeal},"
        " stop:1 {buttonTealBlue}); color: {white}; border: none; border-radius: 10px;"
        " padding: 8px 12px; font-size: 10pt; font-weight: bold; }"
        "QPushButton:hover { background: qlineargradient(x1:0, y1:0, x2:1, y2:0,"
        " stop:0 {buttonTealDark}, stop:1 {buttonTealBlueDark}); }"
        "QPushButton:disabled { background: {paleMint}; color: {disabledInk}; }"));
}

// The deep purple gradient button.
inline QString darkButton() {
    return themed(QStringLiteral(
        "QPushButton { background: qlineargradient(x1:0, y1:0, x2:1, y2:0, stop:0 {ink},"
        " stop:1 {inkEnd}); color: {white}; border: none; border-radius: 10px;"
        " padding: 8px 12px; font-size: 10pt; font-weight: bold; }"
        "QPushButton:hover { background: qlineargradient(x1:0, y1:0, x2:1, y2:0,"
        " stop:0 {inkLight}, stop:1 {inkEndLight}); }"
        "QPushButton:disabled { background: {lilacMist}; color: {disabledInk}; }"));
}

// The outlined button (secondary action).
inline QString outlinedButton() {
    return themed(QStringLiteral(
        "QPushButton { background: {white@200}; color: {tealInk};"
        " border: 1.5px solid {teal}; border-radius: 10px; padding: 7px 12px; font-size: 10pt;"
        " font-weight: bold; }"
        "QPushButton:hover { background: {white@235}; }"
        "QPushButton:disabled { color: {disabledInk}; border-color: {grey@140}; }"));
}

// The round teal radio buttons of the effect and key cards, with `textColour` (a
// palette name such as "{ink}").
inline QString radioButton(const char* textColour) {
    return themed(
        QStringLiteral(
            "QRadioButton { color: %1; font-size: 9pt; spacing: 5px; background: transparent; }"
            "QRadioButton::indicator { width: 12px; height: 12px; border-radius: 7px;"
            " border: 2px solid {blue@160}; background: {white}; }"
            "QRadioButton::indicator:checked { background: {blue}; border-color: {blueStrong}; }")
            .arg(QLatin1String(textColour)));
}

// The white choosers. The list is styled too: inside OBS it would otherwise
// take the host's theme (dark rows under our dark text).
inline QString comboBox() {
    return themed(QStringLiteral(
        "QComboBox { background: {white}; border: 1px solid {blue@110};"
        " border-radius: 6px; padding: 3px 24px 3px 8px; color: {ink}; font-size: 9pt; }"
        "QComboBox::drop-down { subcontrol-origin: padding; subcontrol-position: center right;"
        " width: 22px; border: none; }"
        "QComboBox::down-arrow { image: url(:/images/chevron-down.svg); width: 12px;"
        " height: 12px; }"
        "QComboBox QAbstractItemView { background: {white}; color: {ink};"
        " border: 1px solid {blue@160}; outline: none; padding: 2px;"
        " selection-background-color: {buttonTeal}; selection-color: {white}; }"
        "QComboBox QAbstractItemView::item { color: {ink}; background: {white};"
        " min-height: 24px; padding: 0px 6px; }"
        "QComboBox QAbstractItemView::item:selected, QComboBox QAbstractItemView::item:hover"
        " { color: {white}; background: {buttonTeal}; }"));
}

// A verdict's chip: the verdict's colour as a wash, its deeper shade as text.
inline QString verdictChip(int level) {
    const QColor wash = Palette::verdictColour(level);
    return QStringLiteral("QLabel { background: rgba(%1,%2,%3,45); color: %4; border-radius: 9px;"
                          " padding: 2px 8px; font-size: 8pt; font-weight: bold; }")
        .arg(wash.red())
        .arg(wash.green())
        .arg(wash.blue())
        .arg(Palette::verdictInk(level).name());
}

// A white card over the sky.
inline QString card(const char* objectName) {
    return themed(QStringLiteral("#%1 { background: {white@210}; border: 1px solid"
                                 " {lilacLine@90}; border-radius: 14px; }")
                      .arg(QLatin1String(objectName)));
}

} // namespace Styles

} // namespace Lumora
