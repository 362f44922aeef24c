#pragma once

#include <QAbstractButton>
#include <QStringList>

namespace Lumora {

// One key of the key plate: a rounded key top with the arrow glyph, the
// slot's name under it and a lamp in the corner that is lit while the slot is
// the active one. The chosen key wears a teal rim; a key being pressed on the
// keyboard flashes. Painted from a logical 120 × 60 area.
class KeyCap : public QAbstractButton {
    Q_OBJECT
public:
    static constexpr int kLogicalWidth = 120;
    static constexpr int kLogicalHeight = 60;
    static constexpr qreal kNamePointSize = 9.0;

    // The name as the key shows it: a combined voice ("A＋B") on two lines,
    // the second starting with its "＋", so the two names never run together.
    static QStringList nameLines(const QString& name);

    KeyCap(QWidget* parent, int slot);

    int slot() const { return slot_; }
    void setGlyph(const QString& glyph);
    void setName(const QString& name);
    const QString& name() const { return name_; }
    void setLamp(bool lit);
    bool lampLit() const { return lamp_; }
    void setSelected(bool selected);
    bool isSelected() const { return selected_; }
    void setFlash(bool on);
    bool isFlashing() const { return flash_; }

    QSize sizeHint() const override { return QSize(kLogicalWidth, kLogicalHeight); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int slot_;
    QString glyph_;
    QString name_;
    bool lamp_ = false;
    bool selected_ = false;
    bool flash_ = false;
};

} // namespace Lumora
