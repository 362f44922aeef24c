#pragma once

class QHBoxLayout;
class QPushButton;
class QWidget;

namespace Lumora {

// The foot of the sound and voice-effect panels: save (dark) and reset
// (outlined) side by side, as wide as each other, made as children of `panel`.
// The caller gives them their texts and connects them.
QHBoxLayout* saveAndResetRow(QWidget* panel, QPushButton*& save, QPushButton*& reset);

} // namespace Lumora
