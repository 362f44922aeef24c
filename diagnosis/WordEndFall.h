#pragma once

#include <vector>

namespace Lumora {

// How fast the voice's quickest word endings die away: the room's fingerprint
// on the takes. Close to the mic a word ends as fast as the mouth closes (20 to
// 45 ms for 20 dB on most stretches of every voice we measured); a mic at
// arm's length and more also hears the room's tail, and in an ordinary room
// the same endings take 45 to 180 ms.
//
// The 10 ms energy is followed in 2.5 ms steps. An ending is a local peak of
// speech (within 15 dB of the take's loud blocks and 30 dB over the room)
// whose energy then falls 20 dB before it rises over the peak again; its time
// is that fall. The result is the 5th percentile of all endings over the takes
// given: the quickest endings, which a dry room leaves fast and a live room
// cannot. (With fewer than 20 endings that is the quickest one; a stray click
// then errs towards "dry", which never makes a verdict say "far".)
class WordEndFall {
public:
    static constexpr int kMinEndings = 8;

    // `roomDb`: the room's noise level (dBFS); endings must stand clear of it.
    // Returns the fall time in ms, or -1 when fewer than kMinEndings endings
    // stand clear of the room's noise.
    static float measureMs(const std::vector<const std::vector<float>*>& takes, double rate,
                           double roomDb);
};

} // namespace Lumora
