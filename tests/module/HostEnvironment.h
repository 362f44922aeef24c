#pragma once

#include "ObsHarness.h"

#include <obs.h>

#include <string>
#include <vector>

// One libobs per test process, started once with our module loaded. Tests that
// need another output format call host().resetAudio() first.
Lumora::ObsHarness& host();

// A direct call of the filter's audio callback as the module registered it
// (see RegistrationSpy.cpp).
struct obs_audio_data* callFilterAudio(obs_source_t* filter, struct obs_audio_data* audio);

// Planar test signal: a different sine on every channel.
std::vector<std::vector<float>> makeSignal(int channels, int frames, float amplitude = 0.3f);

// A Tindra filter on a fresh source with the output at `rate` and `channels`.
obs_source_t* freshFilter(int channels, uint32_t rate = 48000);

// Pushes `input` through the host in packets of `block` frames and returns what
// came out; `delay` gets how late the filter says its output is (its
// timestamps' shift), in frames.
std::vector<std::vector<float>> pushThrough(const std::vector<std::vector<float>>& input, int block,
                                            size_t& delay);

int countLines(const std::string& needle);
