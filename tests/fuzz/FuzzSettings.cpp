// libFuzzer target for everything that reads a settings file: the JSON parser,
// the document reader, the checksum line and the store's load with its fall-back
// and its seeding save. Beyond "no crash, no hang, no sanitizer report" it checks
// that whatever was read can be written and read back, and that writing twice
// gives the same text (numbers settle after one pass through %g).

#include "settings/JsonText.h"
#include "settings/SettingsJson.h"
#include "settings/SettingsStore.h"
#include "settings/support/MemoryFileSystem.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

using namespace Lumora;

namespace {

void check(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "property violated: %s\n", what);
        std::abort();
    }
}

void checkValueRoundTrip(const JsonValue& value) {
    const std::string t1 = renderJson(value);
    const JsonParseResult p1 = parseJson(t1);
    check(p1.ok, "rendered text parses");
    const std::string t2 = renderJson(p1.value);
    const JsonParseResult p2 = parseJson(t2);
    check(p2.ok, "rendered text parses again");
    check(renderJson(p2.value) == t2, "rendering is stable after one pass");
}

void checkDocument(const AppSettings& s) {
    check(s.version == kSettingsVersion, "version is 2 after reading");
    check(s.diagnosisHistory.size() <= kMaxDiagnosisHistory, "history holds at most 20");
    for (const SavedEffectPreset& p : s.presets) {
        check(p.preset.comp.thresholdDb >= -40.0f && p.preset.comp.thresholdDb <= -6.0f,
              "compressor threshold clamped");
        check(p.preset.gate.rangeDb >= -80.0f && p.preset.gate.rangeDb <= -10.0f,
              "gate range clamped");
        check(p.preset.eq.highCutQ >= 0.3f && p.preset.eq.highCutQ <= 2.0f, "high-cut Q clamped");
    }
}

void checkDocumentRoundTrip(const JsonValue& root) {
    const std::optional<AppSettings> doc = fromJson(root);
    check(doc.has_value() == root.isObject(), "only a non-object root is refused");
    if (!doc) {
        return;
    }
    checkDocument(*doc);
    const std::string d1 = renderJson(toJson(*doc));
    const JsonParseResult p1 = parseJson(d1);
    check(p1.ok, "written document parses");
    const std::optional<AppSettings> doc2 = fromJson(p1.value);
    check(doc2.has_value(), "written document reads");
    const std::string d2 = renderJson(toJson(*doc2));
    const std::optional<AppSettings> doc3 = fromJson(parseJson(d2).value);
    check(doc3.has_value() && renderJson(toJson(*doc3)) == d2, "document is stable after one pass");
}

void checkInspect(std::string_view file) {
    Testing::MemoryFileSystem fs;
    fs.put("/s/settings.json", file);
    const LoadReport report = SettingsStore("/s", fs).inspect();
    check(report.source == LoadSource::Live || report.settings.presets.empty(),
          "a refused file gives the defaults");
    checkDocument(report.settings);
}

// The body behind a correct checksum line, through the whole store: load (with its
// seeding save), save, load again.
void checkStore(std::string_view body) {
    Testing::MemoryFileSystem fs;
    fs.put("/s/settings.json", SettingsStore::addChecksum(body));
    SettingsStore store("/s", fs);
    const std::string file = *fs.readFile("/s/settings.json");
    const AppSettings loaded = store.load();
    checkDocument(loaded);
    // A newer version's file is never written over, whatever it holds.
    if (store.heldByNewerVersion()) {
        check(!store.save(loaded), "a newer version's file refuses the save");
        check(fs.readFile("/s/settings.json") == file, "a newer version's file is untouched");
        return;
    }
    // Whatever loaded must survive its own save: the read-back check may never
    // reject what the writer produced.
    check(store.save(loaded), "a loaded document can be saved");
    const LoadReport again = store.inspect();
    check(again.source == LoadSource::Live, "the saved file loads as the live file");
    check(fs.readFile("/s/settings.json") == SettingsStore::addChecksum(renderJson(toJson(loaded))),
          "the live file holds exactly the saved document");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);

    const JsonParseResult parsed = parseJson(bytes);
    check(parsed.ok || parsed.value.isNull(), "a refused text gives null");
    if (parsed.ok) {
        checkValueRoundTrip(parsed.value);
        checkDocumentRoundTrip(parsed.value);
    }

    std::string text(bytes);
    const std::string before = text;
    if (!SettingsStore::verifyAndStrip(text)) {
        check(text == before, "a refused file is left unchanged");
    }

    // The bytes as a whole file (checksum line and all); and, when they are a
    // document, as the body of a valid file through load and save. (Bodies that
    // do not parse all load as the same defaults; they would only slow the run.)
    checkInspect(bytes);
    if (parsed.ok && parsed.value.isObject()) {
        checkStore(bytes);
    }
    return 0;
}
