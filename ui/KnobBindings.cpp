#include "ui/KnobBindings.h"

#include "ui/Knob.h"

#include <QCoreApplication>
#include <QSignalBlocker>

#include <cmath>

namespace Lumora {

QString KnobBindings::translated(const char* source) const {
    if (!source || !*source) {
        return QString();
    }
    return QCoreApplication::translate(context_, source);
}

Knob* KnobBindings::add(QWidget* parent, const KnobSpec& spec, Field field, EditHandler onEdit) {
    auto* knob = new Knob(parent);
    knob->setObjectName(QString::fromLatin1(spec.objectName));
    knob->setRange(spec.minimum, spec.maximum);
    knob->setLogarithmic(spec.logarithmic);
    knob->setDecimals(spec.decimals);
    {
        const QSignalBlocker quiet(knob);
        knob->setValue(spec.initial);
    }
    const double scale = spec.scale;
    QObject::connect(knob, &Knob::valueChanged, knob, [field, onEdit, scale](double value) {
        field() = static_cast<float>(value / scale);
        if (onEdit) {
            onEdit();
        }
    });
    entries_.push_back({knob, spec, std::move(field)});
    knobs_.push_back(knob);
    knob->setCaption(translated(spec.caption));
    knob->setSuffix(translated(spec.suffix));
    knob->setToolTip(translated(spec.toolTip));
    return knob;
}

void KnobBindings::refresh() {
    for (Entry& e : entries_) {
        const QSignalBlocker quiet(e.knob);
        // 0.8f × 100 is 80.0000012: keep the float's noise out of the knob.
        const double shown = static_cast<double>(e.field()) * e.spec.scale;
        e.knob->setValue(std::round(shown * 1e4) / 1e4);
    }
}

void KnobBindings::retranslate() {
    for (Entry& e : entries_) {
        e.knob->setCaption(translated(e.spec.caption));
        e.knob->setSuffix(translated(e.spec.suffix));
        e.knob->setToolTip(translated(e.spec.toolTip));
    }
}

Knob* KnobBindings::knob(const QString& objectName) const {
    for (Knob* k : knobs_) {
        if (k->objectName() == objectName) {
            return k;
        }
    }
    return nullptr;
}

} // namespace Lumora
