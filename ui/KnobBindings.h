#pragma once

#include <QString>

#include <functional>
#include <vector>

class QWidget;

namespace Lumora {

class Knob;

// What a knob is: its name, its texts (English sources, translated in the
// owning panel's context) and its scale. `scale` turns the record's value into
// the knob's (0.75 shown as 75 %).
struct KnobSpec {
    const char* objectName;
    const char* caption;
    const char* toolTip;
    double minimum;
    double maximum;
    double initial;
    const char* suffix;
    bool logarithmic = false;
    int decimals = 0;
    double scale = 1.0;
};

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

    const char* context_;
    std::vector<Entry> entries_;
    std::vector<Knob*> knobs_;
};

} // namespace Lumora
