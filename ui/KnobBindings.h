#pragma once

#include "dsp/Parameters.h"

#include <QString>

#include <functional>
#include <vector>

class QWidget;

namespace Lumora {

class Knob;

// What a knob is: its name, its texts (English sources, translated in the
// owning panel's context), the parameter it sets (range, default, unit and
// scale come from the parameter table) and how many decimals it shows. The
// suffix is the unit's own unless given (a translated "st", "%B").
struct KnobSpec {
    const char* objectName;
    const char* caption;
    const char* toolTip;
    const Parameter* parameter;
    int decimals = 0;
    const char* suffix = nullptr;
};

// Gives a knob a parameter's range and scale, as it is shown (a fraction
// as a percentage).
void applyParameter(Knob* knob, const Parameter& parameter);

// Ties knobs to float fields of a panel's working record: a turned knob writes
// its field and reports the edit at once; refresh() sets every knob from its
// field without reporting anything (loading is not editing).
class KnobBindings {
public:
    using Field = std::function<float&()>;
    using EditHandler = std::function<void()>;

    // Translation context for captions, tool tips and suffixes.
    explicit KnobBindings(const char* context) : context_(context) {}

    // Creates the knob from its spec, with `parent` as its parent.
    Knob* add(QWidget* parent, const KnobSpec& spec, Field field, EditHandler onEdit);

    void refresh();
    void retranslate();

    Knob* knob(const QString& objectName) const;
    const std::vector<Knob*>& knobs() const { return knobs_; }

private:
    struct Entry {
        Knob* knob;
        KnobSpec spec;
        Field field;
    };
    QString translated(const char* source) const;
    QString suffix(const KnobSpec& spec) const;

    const char* context_;
    std::vector<Entry> entries_;
    std::vector<Knob*> knobs_;
};

} // namespace Lumora
