#include "ui/SoundShapes.h"

namespace Lumora::SoundShapes {

namespace {

void setBands(EqParams& eq, std::initializer_list<NotchBand> bands) {
    for (NotchBand& band : eq.notchBands) {
        band = NotchBand{};
    }
    size_t i = 0;
    for (const NotchBand& band : bands) {
        if (i < eq.notchBands.size()) {
            eq.notchBands[i++] = band;
        }
    }
}

} // namespace

void defaultEq(EqParams& eq) {
    // A 100 Hz low cut (rumble, desk knocks and plosive thumps live below it)
    // and three bands at 0 dB where a voice is usually shaped: body, nasal
    // middle and presence. At 0 dB the chain skips them, so the default sounds
    // exactly like the low cut alone; the rows are there to be turned.
    eq.lowCutEnabled = true;
    eq.lowCutHz = 100.0f;
    eq.highShelfEnabled = false;
    eq.highShelfHz = 5000.0f;
    eq.highShelfGainDb = 0.0f;
    setBands(
        eq, {{true, 250.0f, 0.0f, 1.4f}, {true, 1000.0f, 0.0f, 1.2f}, {true, 3000.0f, 0.0f, 1.4f}});
    eq.highCutEnabled = false;
    eq.highCutHz = 16000.0f;
    eq.highCutQ = 0.707f;
}

EffectPreset panelDefaults() {
    EffectPreset p;
    p.spectral.enabled = false;
    p.spectral.amount = 0.75f;
    p.noise = NoiseParams{false, 40.0f, 0.8f};
    p.gate = GateParams{false, -55.0f, 5.0f, 150.0f, 200.0f, -60.0f};
    p.eq.enabled = false;
    defaultEq(p.eq);
    p.comp = CompParams{false, -20.0f, 2.0f, 0.0f, 10.0f, 150.0f, 0.0f};
    p.limiter = LimiterParams{false, -2.0f, 50.0f};
    p.inputGainDb = 0.0f;
    p.outputGainDb = 0.0f;
    return p;
}

void deEssing(EqParams& eq) {
    // Two overlapping cuts, 5.5 and 7.5 kHz at q 2: about -4 dB at 5 kHz,
    // -4 to -5.5 dB across 5-8 kHz, under 1 dB lost at 3 kHz where consonants
    // carry intelligibility. Two narrow cuts take less air than one broad one.
    eq.enabled = true;
    setBands(eq, {{true, 5500.0f, -4.0f, 2.0f}, {true, 7500.0f, -5.0f, 2.0f}});
}

void maleVoice(EqParams& eq) {
    // Low cut at 80 Hz keeps the chest; +2 dB at 150 Hz warms the fundamental,
    // -2.5 dB at 400 Hz takes out the boxiness that muddies the middle,
    // +3 dB at 2.5 kHz brings the voice forward, and a narrow -1.5 dB at
    // 6.5 kHz keeps the presence lift from turning into sibilance.
    eq.enabled = true;
    eq.lowCutEnabled = true;
    eq.lowCutHz = 80.0f;
    setBands(eq, {{true, 150.0f, 2.0f, 1.0f},
                  {true, 400.0f, -2.5f, 1.4f},
                  {true, 2500.0f, 3.0f, 1.2f},
                  {true, 6500.0f, -1.5f, 3.0f}});
}

void femaleVoice(EqParams& eq) {
    // Low cut at 120 Hz (nothing of the voice lives below it), -2 dB at
    // 300 Hz against the muffled, boxy sound, +2 dB at 3 kHz for clarity, a
    // narrow -1.5 dB at 6.5 kHz against harsh "s", and a broad +3 dB at
    // 11 kHz for air.
    eq.enabled = true;
    eq.lowCutEnabled = true;
    eq.lowCutHz = 120.0f;
    setBands(eq, {{true, 300.0f, -2.0f, 1.4f},
                  {true, 3000.0f, 2.0f, 1.2f},
                  {true, 6500.0f, -1.5f, 4.0f},
                  {true, 11000.0f, 3.0f, 0.8f}});
}

void talkMode(EffectPreset& p) {
    // Speech evens out best with a gentle ratio reaching deep: 2.5:1 from
    // -28 dB with a 6 dB soft knee rides the whole range of a talking voice
    // without audible pumping; 5 ms attack catches the start of words, 120 ms
    // release recovers between them. The detector follows peaks, which sit
    // around -12 dBFS in normal talk: ~10 dB of reduction there, of which
    // +6 dB makeup gives most back, while quiet words come up by the full 6 dB.
    p.comp.enabled = true;
    p.comp.thresholdDb = -28.0f;
    p.comp.ratio = 2.5f;
    p.comp.kneeDb = 6.0f;
    p.comp.attackMs = 5.0f;
    p.comp.releaseMs = 120.0f;
    p.comp.makeupGainDb = 6.0f;
    p.limiter.enabled = true;
    p.limiter.ceilingDb = -2.0f;
}

void singingMode(EffectPreset& p) {
    // Singing needs its dynamics: a middle threshold (-18 dB) leaves soft
    // lines alone, 4:1 holds the belted notes, a 3 dB knee keeps the onset
    // natural, 30 ms attack lets consonants and note attacks through, 200 ms
    // release follows phrases rather than syllables. The -2 dB ceiling catches
    // what the compressor lets through.
    p.comp.enabled = true;
    p.comp.thresholdDb = -18.0f;
    p.comp.ratio = 4.0f;
    p.comp.kneeDb = 3.0f;
    p.comp.attackMs = 30.0f;
    p.comp.releaseMs = 200.0f;
    p.comp.makeupGainDb = 3.0f;
    p.limiter.enabled = true;
    p.limiter.ceilingDb = -2.0f;
}

void strictNoiseMode(EffectPreset& p) {
    // Game streams in noisy rooms: everything on and strong. The spectral
    // filter at 90 %, the neural suppressor at its deepest recommended limit
    // (60 dB) fully wet, and a gate at -45 dB (a talking voice sits well
    // above it, keyboard and fan noise below) opening in 2 ms, holding
    // 150 ms over short pauses and closing in 120 ms.
    p.spectral.enabled = true;
    p.spectral.amount = 0.9f;
    p.noise.enabled = true;
    p.noise.attenLimitDb = 60.0f;
    p.noise.mix = 1.0f;
    p.gate.enabled = true;
    p.gate.thresholdDb = -45.0f;
    p.gate.attackMs = 2.0f;
    p.gate.holdMs = 150.0f;
    p.gate.releaseMs = 120.0f;
}

void detailMode(EffectPreset& p) {
    // Singing and ASMR: keep breaths, reverb tails and sustained notes. The
    // neural suppressor (which takes sustained tones for noise) and the gate
    // (which chops tails and breaths) are off; only a light spectral filter
    // at 35 % removes the steady hum and hiss of the room.
    p.spectral.enabled = true;
    p.spectral.amount = 0.35f;
    p.noise.enabled = false;
    p.gate.enabled = false;
}

} // namespace Lumora::SoundShapes
