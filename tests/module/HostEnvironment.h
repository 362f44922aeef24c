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

int countLines(const std::string& needle);
