#include "ui/PhraseBreaks.h"

namespace Lumora {

namespace {

constexpr QChar kWordJoiner(0x2060);

bool isHiragana(QChar c) {
    return c.unicode() >= 0x3041 && c.unicode() <= 0x309F;
}
bool isKatakana(QChar c) {
    return (c.unicode() >= 0x30A0 && c.unicode() <= 0x30FF) ||
           (c.unicode() >= 0xFF66 && c.unicode() <= 0xFF9F);
}
bool isKanji(QChar c) {
    return (c.unicode() >= 0x4E00 && c.unicode() <= 0x9FFF) || c.unicode() == 0x3005; // 々
}
bool isJapanese(QChar c) {
    return isHiragana(c) || isKatakana(c) || isKanji(c) ||
           (c.unicode() >= 0x3000 && c.unicode() <= 0x303F) || // CJK punctuation
           (c.unicode() >= 0xFF01 && c.unicode() <= 0xFF65);   // full-width forms
}
bool closes(QChar c) {
    return QStringLiteral("、。，．！？：；…」』）】〕〉》!?").contains(c);
}
bool opens(QChar c) {
    return QStringLiteral("「『（【〔〈《＋").contains(c); // "＋" starts a combined name's part
}

} // namespace

bool phraseBreakAllowed(QChar before, QChar after) {
    if (before.isSpace() || after.isSpace()) {
        return true;
    }
    if (opens(before) || closes(after)) {
        return false; // never leave an opening bracket, or start with a closing mark
    }
    if (closes(before) || opens(after)) {
        return true;
    }
    if (!isJapanese(before) || !isJapanese(after)) {
        return true; // other scripts break where Qt breaks them
    }
    // A phrase ends in kana (particles, endings); the next one starts with
    // kanji or katakana. Kanji and katakana meeting is a word boundary too
    // ("歌枠" | "リバーブ").
    return (isHiragana(before) && (isKanji(after) || isKatakana(after))) ||
           (isKanji(before) && isKatakana(after)) || (isKatakana(before) && isKanji(after));
}

QString keepPhrases(const QString& text) {
    QString out;
    out.reserve(text.size() + text.size() / 2);
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (i > 0 && c != kWordJoiner && text.at(i - 1) != kWordJoiner &&
            isJapanese(text.at(i - 1)) && isJapanese(c) && !phraseBreakAllowed(text.at(i - 1), c)) {
            out += kWordJoiner;
        }
        out += c;
    }
    return out;
}

QString withoutJoiners(const QString& text) {
    QString out = text;
    out.remove(kWordJoiner);
    return out;
}

} // namespace Lumora
