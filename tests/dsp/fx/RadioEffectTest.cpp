// Radio: the band filters' response at chosen frequencies, the tanh drive and
// its loudness normalisation, on both channels.
#include "FxTestSupport.h"

#include <gtest/gtest.h>

using namespace Lumora;
using namespace FxTest;

TEST(RadioEffect, TelephoneBandAndDriveGiveTheirGainsInDb) {
    // Band 300 Hz to 3.4 kHz: second-order Butterworth high- and low-pass, so
    // -3.01 dB at each corner. Quiet tones keep tanh linear, where the drive
    // (overdrive·9 + 1, scaled back by its root) adds 10·log10(drive) dB; a
    // loud tone is flattened to about its own level.
    constexpr double kToleranceDb = 0.1;
    struct Row {
        double hz;
        float amplitude;
        float overdrive;
        double expectedDb;
    };
    const Row rows[] = {
        {80.0, 0.01f, 0.0f, -22.99},
        {300.0, 0.01f, 0.0f, -3.01},
        {1000.0, 0.01f, 0.0f, -0.07},
        {3400.0, 0.01f, 0.0f, -3.01},
        {12000.0, 0.01f, 0.0f, -25.83},
        {1000.0, 0.01f, 0.5f, 7.33}, // drive 5.5: +7.40 dB on the band's -0.07
        {1000.0, 0.5f, 0.5f, 0.37},  // tanh flattens the peaks of the same drive
    };
    for (const Row& row : rows) {
        SoundFxPreset radio;
        radio.radio.enabled = true;
        radio.radio.lowCutHz = 300.0f;
        radio.radio.highCutHz = 3400.0f;
        radio.radio.overdrive = row.overdrive;
        VoiceFxChain chain;
        setUp(chain, radio);
        const Signal x = sine(row.hz, 9600, row.amplitude);
        Audio audio({x, x});
        runInPackets(chain, audio, 480);
        for (int c = 0; c < 2; ++c) {
            EXPECT_NEAR(rmsDb(audio.planes[c], 4800, 9600) - rmsDb(x), row.expectedDb, kToleranceDb)
                << row.hz << " Hz, amplitude " << row.amplitude << ", overdrive " << row.overdrive
                << ", channel " << c;
        }
    }
}
