#pragma once

#include <cstdarg>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

struct obs_source;
struct obs_data;
struct audio_data;

namespace Lumora {

// Runs the real libobs without its window: starts it, sets the audio format,
// loads plug-in files, builds a private audio source with a chain of filters and
// pushes packets through them synchronously. Used by lumora-host and the host
// tests. One per process (libobs is process-global).
//
// Like OBS Studio it has an interface thread: tasks queued with
// obs_queue_task(OBS_TASK_UI, ...) run there one after another, in the order
// they came; a caller that asks to wait blocks until its task ran, and a task
// queued from the interface thread itself runs at once. Without it libobs
// would drop such tasks, and a plug-in that hands its work to the interface
// could not be tested here.
class ObsHarness {
public:
    ObsHarness();
    ~ObsHarness();
    ObsHarness(const ObsHarness&) = delete;
    ObsHarness& operator=(const ObsHarness&) = delete;

    // Every log line libobs and its plug-ins write while the harness lives. libobs
    // logs from several threads (sources are freed on a queue of its own).
    std::vector<std::string> logLines() const;
    void clearLog();
    // Called for every log line as it arrives (after it is stored).
    void setLogEcho(std::function<void(int level, const std::string&)> echo) {
        echo_ = std::move(echo);
    }

    // Starts libobs and sets the output format that every filter will see.
    bool start(uint32_t sampleRate, int channels, std::string& error);
    // Changes the output format; filters created afterwards see the new one.
    bool resetAudio(uint32_t sampleRate, int channels, std::string& error);

    // Loads a plug-in file; dataPath empty means "guess": the Debian layout for
    // system plug-ins, and build/plugin-data/<name> for a plug-in in a build tree.
    bool loadModule(const std::string& path, const std::string& dataPath, std::string& error);

    // Creates the private input source (once) and appends a filter to it.
    // settingsJson may be empty. Returns the filter's source, or null.
    obs_source* addFilter(const std::string& id, const std::string& settingsJson,
                          std::string& error);
    obs_source* input() const { return input_; }
    // Creates the input without filters (for measuring the host's own cost).
    bool prepareInput(std::string& error);
    const std::vector<obs_source*>& filters() const { return filters_; }
    void removeFilter(obs_source* filter);
    void removeAllFilters();

    // Pushes one packet of planar float audio (at the output's rate and layout)
    // through the input's filters and returns what came out of them, appended
    // plane by plane to `out` (which is resized to the output's channel count).
    // Returns the CPU seconds the calling thread spent inside libobs.
    double push(const std::vector<const float*>& planes, uint32_t frames,
                std::vector<std::vector<float>>& out);
    // How much earlier than it went in the last packet came out of the
    // filters, by its timestamp, in nanoseconds.
    int64_t lastTimestampShiftNs() const { return lastShiftNs_; }

    // Takes the interface thread away from libobs, or gives it back: without
    // it, tasks queued for the interface are dropped, as in a host that has none.
    void setInterfaceThreadAttached(bool attached);

    uint32_t sampleRate() const { return sampleRate_; }
    int channels() const { return channels_; }

private:
    static void onLog(int level, const char* format, va_list args, void* param);
    static void onAudio(void* param, obs_source* source, const ::audio_data* audio, bool muted);

    bool started_ = false;
    uint32_t sampleRate_ = 48000;
    int channels_ = 2;
    uint64_t timestampNs_ = 0;
    uint64_t pushedNs_ = 0;
    int64_t lastShiftNs_ = 0;
    obs_source* input_ = nullptr;
    std::vector<obs_source*> filters_;
    mutable std::mutex logMutex_;
    std::vector<std::string> log_;
    std::function<void(int, const std::string&)> echo_;
    std::vector<std::vector<float>>* capture_ = nullptr;
};

// Reads the thread's CPU clock in seconds.
double threadCpuSeconds();

} // namespace Lumora
