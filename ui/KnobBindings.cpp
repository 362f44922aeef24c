#include "ui/KnobBindings.h"

#include "ui/Knob.h"

#include <QCoreApplication>
#include <QSignalBlocker>

#include <cmath>

namespace Lumora {

namespace {

const char* unitSuffix(Unit unit) {
    switch (unit) {
    case Unit::Db:
        return "dB";
    case Unit::Hz:
        return "Hz";
    case Unit::Ms:
        return "ms";
    case Unit::Percent:
        return "%";
    case Unit::Semitones:
        return "st";
    case Unit::Ratio:
        return ":1";
    case Unit::None:
        break;
    }
    return "";
}

// A record's float as the knob shows it: 0.9f × 100 is 89.99999762, so keep
// the float's noise out of the knob.
double shown(float value, double scale) {
    return std::round(static_cast<double>(value) * scale * 1e4) / 1e4;
}

} // namespace

void applyParameter(Knob* knob, const Parameter& parameter) {
    const double scale = parameter.shownScale();
    knob->setRange(shown(parameter.minimum, scale), shown(parameter.maximum, scale));
    knob->setLogarithmic(parameter.logarithmic);
}

QString KnobBindings::translated(const char* source) const {
    if (!source || !*source) {
        return QString();
    }
    return QCoreApplication::translate(context_, source);
}

QString KnobBindings::suffix(const KnobSpec& spec) const {
    return spec.suffix ? translated(spec.suffix)
                       : QString::fromLatin1(unitSuffix(spec.parameter->unit));
}

Knob* KnobBindings::add(QWidget* parent, const KnobSpec& spec, Field field, EditHandler onEdit) {
    auto* knob = new Knob(parent);
    knob->setObjectName(QString::fromLatin1(spec.objectName));
    const Parameter& parameter = *spec.parameter;
    const double scale = parameter.shownScale();
    applyParameter(knob, parameter);
    knob->setDecimals(spec.decimals);
    {
        const QSignalBlocker quiet(knob);
        knob->setValue(shown(parameter.initial, scale));
    }
    QObject::connect(knob, &Knob::valueChanged, knob, [field, onEdit, scale](double value) {
        field() = static_cast<float>(value / scale);
        if (onEdit) {
            onEdit();
        }
    });
    entries_.push_back({knob, spec, std::move(field)});
    knobs_.push_back(knob);
    knob->setCaption(translated(spec.caption));
    knob->setSuffix(suffix(spec));
    knob->setToolTip(translated(spec.toolTip));
    return knob;
}

void KnobBindings::refresh() {
    for (Entry& e : entries_) {
        const QSignalBlocker quiet(e.knob);
        e.knob->setValue(shown(e.field(), e.spec.parameter->shownScale()));
    }
}

void KnobBindings::retranslate() {
    for (Entry& e : entries_) {
        e.knob->setCaption(translated(e.spec.caption));
        e.knob->setSuffix(suffix(e.spec));
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
