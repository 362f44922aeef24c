#pragma once

#include <QString>

namespace Lumora {

// Japanese has no spaces, so a wrapping label may break a line anywhere:
// "「プ" at one line's end and "リセット」" at the next. keepPhrases() joins
// the characters of each phrase with invisible word joiners (U+2060), leaving
// a line break possible only where a reader expects one: after punctuation
// and closing brackets, before an opening bracket or a "＋", at spaces, where
// kana of a phrase's ending meet the kanji or katakana that start the next, and
// where kanji and katakana meet. Text in other scripts is left as it is.
QString keepPhrases(const QString& text);
// The text without those joiners: what a label shows, for comparing.
QString withoutJoiners(const QString& text);
// Whether a line may end between `before` and `after` under those rules.
bool phraseBreakAllowed(QChar before, QChar after);

} // namespace Lumora
