#include "ui/Theme.h"

#include <QPainter>

#include <cmath>
#include <cstring>

namespace Lumora {

namespace Palette {
namespace {

struct Named {
    const char* name;
    QRgb rgb;
};

// The names style sheets use, each bound to its constant. A colour appears here
// once; the constants above are its only value.
constexpr Named kNamed[] = {
    {"ink", kInk},
    {"lilac", kLilac},
    {"muted", kMuted},
    {"tealInk", kTealInk},
    {"blueInk", kBlueInk},
    {"deepBlueInk", kDeepBlueInk},
    {"deepTeal", kDeepTeal},
    {"disabledInk", kDisabledInk},
    {"displayText", kDisplayText},
    {"white", kWhite},
    {"teal", kTeal},
    {"tealLight", kTealLight},
    {"tealBlue", kTealBlue},
    {"tealBlueLight", kTealBlueLight},
    {"buttonTeal", kButtonTeal},
    {"buttonTealBlue", kButtonTealBlue},
    {"buttonTealDark", kButtonTealDark},
    {"buttonTealBlueDark", kButtonTealBlueDark},
    {"blue", kBlue},
    {"blueStrong", kBlueStrong},
    {"blueDeep", kBlueDeep},
    {"inkLight", kInkLight},
    {"inkEnd", kInkEnd},
    {"inkEndLight", kInkEndLight},
    {"display", kDisplay},
    {"night", kNight},
    {"glowTeal", kGlowTeal},
    {"glowMint", kGlowMint},
    {"glowBlue", kGlowBlue},
    {"lilacLine", kLilacLine},
    {"lilacPale", kLilacPale},
    {"lilacMist", kLilacMist},
    {"grey", kGrey},
    {"greyCool", kGreyCool},
    {"greyLight", kGreyLight},
    {"paleBlue", kPaleBlue},
    {"paleLilac", kPaleLilac},
    {"paleMint", kPaleMint},
    {"skyLilac", kSkyLilac},
    {"skyMint", kSkyMint},
    {"skyGlow", kSkyGlow},
    {"good", kGood},
    {"warn", kWarn},
    {"bad", kBad},
    {"amber", kAmber},
    {"goodInk", kGoodInk},
    {"warnInk", kWarnInk},
    {"badInk", kBadInk},
};

const Named* find(const QChar* name, int length) {
    for (const Named& n : kNamed) {
        if (static_cast<int>(std::strlen(n.name)) == length &&
            QString::fromRawData(name, length) == QLatin1String(n.name)) {
            return &n;
        }
    }
    return nullptr;
}

} // namespace

namespace {
struct VerdictShades {
    QRgb mark;
    QRgb ink;
};
constexpr VerdictShades kVerdictShades[] = {{kGood, kGoodInk}, {kWarn, kWarnInk}, {kBad, kBadInk}};
constexpr VerdictShades kNotMeasured = {kGrey, kMuted};

const VerdictShades& shades(int level) {
    return level >= 0 && level < 3 ? kVerdictShades[level] : kNotMeasured;
}
} // namespace

QColor verdictColour(int level) {
    return colour(shades(level).mark);
}

QColor verdictInk(int level) {
    return colour(shades(level).ink);
}

} // namespace Palette

QString themed(const QString& sheet) {
    QString out;
    out.reserve(sheet.size() + 64);
    const int n = sheet.size();
    int i = 0;
    while (i < n) {
        const QChar c = sheet.at(i);
        if (c != QLatin1Char('{')) {
            out += c;
            ++i;
            continue;
        }
        // {name} or {name@alpha}; a style sheet's own braces are followed by a space.
        int j = i + 1;
        while (j < n && sheet.at(j).isLetter()) {
            ++j;
        }
        const int nameLength = j - i - 1;
        int alpha = 255;
        bool ok = nameLength > 0 && j < n;
        if (ok && sheet.at(j) == QLatin1Char('@')) {
            int k = j + 1;
            alpha = 0;
            while (k < n && sheet.at(k).isDigit() && alpha <= 255) {
                alpha = alpha * 10 + sheet.at(k).digitValue();
                ++k;
            }
            ok = k > j + 1 && alpha <= 255;
            j = k;
        }
        const Palette::Named* named = ok && j < n && sheet.at(j) == QLatin1Char('}')
                                          ? Palette::find(sheet.constData() + i + 1, nameLength)
                                          : nullptr;
        if (named == nullptr) {
            out += c;
            ++i;
            continue;
        }
        if (alpha == 255) {
            out += QStringLiteral("#%1").arg(named->rgb & 0xFFFFFF, 6, 16, QLatin1Char('0'));
        } else {
            out += QStringLiteral("rgba(%1,%2,%3,%4)")
                       .arg(qRed(named->rgb))
                       .arg(qGreen(named->rgb))
                       .arg(qBlue(named->rgb))
                       .arg(alpha);
        }
        i = j + 1;
    }
    return out;
}

double contrastRatio(const QColor& a, const QColor& b) {
    auto luminance = [](const QColor& c) {
        auto channel = [](double v) {
            return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * channel(c.redF()) + 0.7152 * channel(c.greenF()) +
               0.0722 * channel(c.blueF());
    };
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

qreal beginDisplay(QPainter& p, const QWidget& widget, int logicalHeight) {
    p.setRenderHint(QPainter::Antialiasing);
    const qreal s = widget.height() / static_cast<qreal>(logicalHeight);
    p.scale(s, s);
    const qreal w = widget.width() / s;
    p.setPen(QPen(Palette::colour(Palette::kBlue, 70), 1.0));
    p.setBrush(Palette::colour(Palette::kDisplay, Palette::kDisplayAlpha));
    p.drawRoundedRect(QRectF(0.5, 0.5, w - 1.0, logicalHeight - 1.0), 8, 8);
    return w;
}

} // namespace Lumora
