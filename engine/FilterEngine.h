#pragma once

#include "diagnosis/DiagnosisAnalyser.h"
#include "diagnosis/DiagnosisTaskState.h"
#include "dsp/DelayLine.h"
#include "dsp/PeakLimiter.h"
#include "dsp/VoiceChain.h"
#include "dsp/fx/VoiceFxChain.h"
#include "settings/AppSettings.h"
#include "settings/KeyAssignmentRules.h"
#include "settings/SettingsStore.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Lumora {

// One per instance of the filter: the one owner of its live voice. It holds
// the cleaning chain, the voice-effects chain, the analyser, the diagnosis
// task and the settings store, and it is the only code that hands parameters
// to the chains. Views (the dialog and its panels) read the presets it keeps
// and hear about every change through its listeners.
//
// Threads, by contract:
// - processAudio() runs on the host's audio thread. It never waits: the chains
//   take their parameters through their own lock-free hand-overs.
// - Every other call runs on one thread, the interface thread. The chains'
//   hand-overs are built for one writer, and the listeners are called there,
//   synchronously, after each change. The module hands calls that arrive on
//   other threads (OBS procedures now, hotkeys and obs-websocket later) to the
//   interface thread first, with obs_queue_task(OBS_TASK_UI, ..., wait): the
//   caller waits for the interface thread, never the other way round.
class FilterEngine {
public:
    // The filter's last stage, always on and not a user setting: nothing
    // leaves above this ceiling, whatever a voice, a knob or a hot
    // microphone does upstream (see PeakLimiter for how).
    static constexpr float kSafetyCeilingDb = -1.0f;
    static constexpr float kSafetyReleaseMs = 60.0f;

    // What a change touched; listeners get a combination.
    enum Change : unsigned {
        kCleaningChanged = 1u << 0,
        kSoundFxChanged = 1u << 1,
        kAppFieldsChanged = 1u << 2,
        kKeysChanged = 1u << 3, // a voice key went down or up
        // A measurement hold began or ended: the chains ran through or run
        // again, and the output delay may have changed with them.
        kHoldChanged = 1u << 4,
    };
    using Listener = std::function<void(unsigned changes)>;

    // Keeps the chains straight through (no processing, no voice effects)
    // while it lives, so that a diagnosis take or noise learning hears the raw
    // voice. What is applied meanwhile is kept and goes on air when the last
    // hold ends. Interface thread only, like every writer.
    class MeasurementHold {
    public:
        MeasurementHold() = default;
        explicit MeasurementHold(FilterEngine& engine);
        MeasurementHold(MeasurementHold&& other) noexcept;
        MeasurementHold& operator=(MeasurementHold&& other) noexcept;
        MeasurementHold(const MeasurementHold&) = delete;
        MeasurementHold& operator=(const MeasurementHold&) = delete;
        ~MeasurementHold();
        void release();
        bool holding() const { return engine_ != nullptr; }

    private:
        FilterEngine* engine_ = nullptr;
    };

    FilterEngine();
    ~FilterEngine();
    FilterEngine(const FilterEngine&) = delete;
    FilterEngine& operator=(const FilterEngine&) = delete;

    // Sizes the chains and the analyser for the host's rate (any channel count
    // is processed as it comes). The only call that allocates for the audio
    // path; before audio flows, never while.
    void prepare(double sampleRate);
    void setNoiseModelLocation(const NoiseModelLocation& location);
    // The rate of the last prepare(); 0 before.
    double sampleRate() const { return sampleRate_; }

    void setStore(std::unique_ptr<SettingsStore> store);
    SettingsStore* store() const { return store_.get(); }
    // Reads the settings file once and brings back the voice the user last
    // had: the effect preset named lastPresetName, then the default key's
    // presets.
    void restoreFromSettings();
    // Writes the application fields (recording mode, last preset, scale and
    // number display) to the settings file; false when it could not.
    bool saveAppFields() const;

    // ---- what is on air (or will be, when a measurement hold ends) ----
    const EffectPreset& effectPreset() const { return cleaning_; }
    const SoundFxPreset& soundFxPreset() const { return fx_; }
    bool soundFxActive() const { return fxActive_; }

    // A cleaning preset chosen by the user (a list, a key, the diagnosis, a
    // procedure): marked as applied, so the chain runs it.
    void applyEffectPreset(EffectPreset preset);
    // The same for a stored preset: the record keeps its name and description.
    void applyEffectPreset(const SavedEffectPreset& saved);
    // An edit of the cleaning preset, taken as it is (it may be inactive).
    void setEffectPreset(const EffectPreset& preset);
    // Only the input and output gains of the cleaning chain.
    void setGains(float inputDb, float outputDb);
    // A sound-effect preset, and whether the effects chain runs.
    void applySoundFxPreset(const SoundFxPreset& preset);
    void setSoundFxPreset(const SoundFxPreset& preset, bool active);
    void setSoundFxActive(bool active);
    // A stored sound-effect preset by the name it is stored under, which
    // soundFxPresetName() then reports; the effects chain keeps its on/off.
    void applyNamedSoundFxPreset(const SoundFxPreset& preset, const std::string& name);
    // The stored name of the voice on air; empty when it is not a stored one
    // (edited on the FX page, or set from an object).
    const std::string& soundFxPresetName() const { return fxName_; }

    // ---- voice keys ----
    // One state for the four voice keys, whoever presses them: the dialog's
    // arrow keys, OBS hotkeys and obs-websocket's PressKey share it, so a key
    // held in one and released in another behaves as one key. Slots 0 to 3
    // (up, down, left, right); the assignments are read from the settings
    // file at each key. Listeners hear kKeysChanged.
    void pressKey(int slot, bool down);
    // Releases a held (Momentary) key, if any: the dialog losing the focus
    // never sees the key come up.
    void releaseHeldKey();
    // The assignments were edited: with no key active the default slot's voice
    // goes on air at once.
    void keyAssignmentsChanged();
    const KeyAssignmentRules& keys() const { return keys_; }

    // How late the filter's output is, in milliseconds: the cleaning chain's
    // block-based stages (spectral reduction, neural suppression) and the
    // voice effects' constant delay while voices are in use (see
    // VoiceAlignment). What the dialog shows; processAudio() reports the same
    // for each packet.
    double latencyMs() const;

    // ---- application fields ----
    // The filter's "recording mode" setting. OBS may update it from any thread
    // (a settings change through obs-websocket, say), and no view shows it, so
    // it is a plain atomic value and changing it tells no listener.
    bool recordingMode() const { return recordingMode_.load(std::memory_order_relaxed); }
    void setRecordingMode(bool recording) {
        recordingMode_.store(recording, std::memory_order_relaxed);
    }
    const std::string& lastPresetName() const { return lastPresetName_; }
    void setLastPresetName(const std::string& name);
    float uiScale() const { return uiScale_; }
    bool showNumericValues() const { return showNumericValues_; }

    // ---- measuring ----
    MeasurementHold holdForMeasurement() { return MeasurementHold(*this); }
    bool measuring() const { return holds_ > 0; }

    // ---- views ----
    // The chains as the audio thread runs them, for meters and displays.
    const VoiceChain& chain() const { return *chain_; }
    const VoiceFxChain& effects() const { return *effects_; }
    // Null until prepare() or when it could not be made.
    DiagnosisAnalyser* analyser() const { return analyser_.get(); }
    DiagnosisTaskState& diagnosisTask() { return diagnosisTask_; }

    // Returns an id for removeListener(). Listeners may not add or remove
    // listeners from inside the call.
    int addListener(Listener listener);
    void removeListener(int id);

    // The host's audio callback: the cleaning chain, the analyser, the voice
    // effects, then the safety limiter (nothing leaves above -1 dBFS).
    // `planes` holds `channels` non-null planes of `frames` samples. Returns
    // how late the audio it returns is, in frames: the host moves the
    // packet's timestamp earlier by as much.
    int processAudio(float* const* planes, int channels, int frames);

private:
    struct AlignedDelete {
        void operator()(DiagnosisAnalyser* p) const;
    };

    void beginHold();
    void endHold();
    // Hands the kept presets to the chains: straight through while measuring.
    void pushCleaning();
    void pushSoundFx();
    void notify(unsigned changes);
    std::optional<AppSettings> readSettings() const;
    static bool keysHoldVoices(const KeyAssignmentSet& keys);

    // What the key rules change: the engine's own voice, through its writers.
    class KeyTarget final : public KeyAssignmentTarget {
    public:
        explicit KeyTarget(FilterEngine& engine) : engine_(engine) {}
        EffectPreset currentEffectPreset() const override { return engine_.cleaning_; }
        SoundFxPreset currentSoundFxPreset() const override { return engine_.fx_; }
        std::string currentSoundFxPresetName() const override { return engine_.fxName_; }
        bool currentSoundFxOn() const override { return engine_.fxActive_; }
        void applyEffectPreset(const EffectPreset& preset) override;
        void applySoundFxPreset(const SoundFxPreset& preset) override;
        void applyNamedSoundFxPreset(const SoundFxPreset& preset, const std::string& name) override;
        void restoreSoundFxPreset(const SoundFxPreset& preset, const std::string& name,
                                  bool on) override;

    private:
        FilterEngine& engine_;
    };
    void analyse(const float* const* planes, int planeCount, int frames);

    std::unique_ptr<VoiceChain> chain_;
    std::unique_ptr<VoiceFxChain> effects_;
    std::unique_ptr<DiagnosisAnalyser, AlignedDelete> analyser_;
    PeakLimiter safety_;
    DiagnosisTaskState diagnosisTask_;
    std::unique_ptr<SettingsStore> store_;

    EffectPreset cleaning_;
    SoundFxPreset fx_;
    bool fxActive_ = false;
    std::string fxName_;
    KeyTarget keyTarget_{*this};
    KeyAssignmentRules keys_;
    int holds_ = 0;
    bool voiceOnKeys_ = false; // a voice key can put a voice on air
    double sampleRate_ = 0.0;

    std::atomic<bool> recordingMode_{false};
    std::string lastPresetName_;
    float uiScale_ = 1.0f;
    bool showNumericValues_ = true;

    std::vector<std::pair<int, Listener>> listeners_;
    int nextListenerId_ = 1;

    // Planes beyond the second carry no voice the chains shape, but they
    // must stay in step with the first two: each goes through a plain delay
    // of the packet's delay. Sized at prepare().
    void delayOtherPlanes(float* const* planes, int planeCount, int frames, int delay);
    static constexpr int kOtherPlanes = 6;
    DelayLine otherLines_[kOtherPlanes];

    // Mixes stereo to mono for the analyser; never reallocated.
    float analyserMix_[512] = {};
};

} // namespace Lumora
