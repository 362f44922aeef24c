#pragma once

#include "ObsHarness.h"

#include <obs.h>

#include <string>
#include <vector>

// One libobs per test process, started once with our module loaded. Tests that
// need another output format call host().resetAudio() first.
Lumora::ObsHarness& host();

// The filter's registration as the module made it, and a direct call of its audio
// callback (see RegistrationSpy.cpp).
const obs_source_info& registeredFilterInfo();
struct obs_audio_data* callFilterAudio(obs_source_t* filter, struct obs_audio_data* audio);

// Planar test signal: a different sine on every channel.
std::vector<std::vector<float>> makeSignal(int channels, int frames, float amplitude = 0.3f);

int countLines(const std::string& needle);
