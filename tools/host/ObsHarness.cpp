#include "ObsHarness.h"

#include <obs.h>
#include <util/base.h>

#include <atomic>
#include <condition_variable>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <deque>
#include <filesystem>
#include <mutex>
#include <thread>

namespace Lumora {

namespace {

// An audio-only input that does nothing by itself: the harness feeds it packets.
obs_source_info makeInputInfo() {
    obs_source_info info = {};
    info.id = "lumora_host_input";
    info.type = OBS_SOURCE_TYPE_INPUT;
    info.output_flags = OBS_SOURCE_AUDIO;
    info.get_name = [](void*) -> const char* { return "Lumora host input"; };
    info.create = [](obs_data_t*, obs_source_t*) -> void* {
        static int token;
        return &token;
    };
    info.destroy = [](void*) {};
    return info;
}

// The harness's interface thread (see ObsHarness). libobs's UI task handler
// takes no context, so the one running thread is reached through a global.
class InterfaceThread {
public:
    InterfaceThread() : thread_([this] { run(); }) {}
    ~InterfaceThread() {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            stopping_ = true;
        }
        queued_.notify_one();
        thread_.join();
    }
    InterfaceThread(const InterfaceThread&) = delete;
    InterfaceThread& operator=(const InterfaceThread&) = delete;

    void queue(obs_task_t task, void* param, bool wait) {
        if (std::this_thread::get_id() == thread_.get_id()) {
            task(param);
            return;
        }
        bool ran = false;
        std::unique_lock<std::mutex> lock(mutex_);
        tasks_.push_back({task, param, wait ? &ran : nullptr});
        queued_.notify_one();
        if (wait) {
            done_.wait(lock, [&] { return ran; });
        }
    }

private:
    struct Task {
        obs_task_t task;
        void* param;
        bool* ran; // the waiting caller's flag, or null
    };

    // Runs the tasks in order; what is still queued when the harness ends runs
    // before the thread does.
    void run() {
        std::unique_lock<std::mutex> lock(mutex_);
        for (;;) {
            queued_.wait(lock, [&] { return stopping_ || !tasks_.empty(); });
            if (tasks_.empty()) {
                return;
            }
            const Task next = tasks_.front();
            tasks_.pop_front();
            lock.unlock();
            next.task(next.param);
            lock.lock();
            if (next.ran) {
                *next.ran = true;
                done_.notify_all();
            }
        }
    }

    std::mutex mutex_;
    std::condition_variable queued_;
    std::condition_variable done_;
    std::deque<Task> tasks_;
    bool stopping_ = false;
    std::thread thread_; // last: starts once everything above exists
};

std::atomic<InterfaceThread*> gInterfaceThread{nullptr};

void queueInterfaceTask(obs_task_t task, void* param, bool wait) {
    if (InterfaceThread* thread = gInterfaceThread.load(std::memory_order_acquire)) {
        thread->queue(task, param, wait);
    }
}

speaker_layout layoutFor(int channels) {
    switch (channels) {
    case 1:
        return SPEAKERS_MONO;
    case 2:
        return SPEAKERS_STEREO;
    case 3:
        return SPEAKERS_2POINT1;
    case 4:
        return SPEAKERS_4POINT0;
    case 5:
        return SPEAKERS_4POINT1;
    case 6:
        return SPEAKERS_5POINT1;
    case 8:
        return SPEAKERS_7POINT1;
    default:
        return SPEAKERS_UNKNOWN;
    }
}

} // namespace

double threadCpuSeconds() {
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) * 1e-9;
}

ObsHarness::ObsHarness() {
    base_set_log_handler(&ObsHarness::onLog, this);
}

ObsHarness::~ObsHarness() {
    removeAllFilters();
    if (input_) {
        obs_source_remove_audio_capture_callback(input_, &ObsHarness::onAudio, this);
        obs_source_release(input_);
        input_ = nullptr;
    }
    if (started_) {
        obs_shutdown();
    }
    // After libobs: its shutdown may still hand the interface a task.
    delete gInterfaceThread.exchange(nullptr, std::memory_order_acq_rel);
    base_set_log_handler(nullptr, nullptr);
}

void ObsHarness::onLog(int level, const char* format, va_list args, void* param) {
    char line[4096];
    va_list copy;
    va_copy(copy, args);
    std::vsnprintf(line, sizeof line, format, copy);
    va_end(copy);
    auto* self = static_cast<ObsHarness*>(param);
    if (!self) {
        return;
    }
    std::lock_guard<std::mutex> lock(self->logMutex_);
    self->log_.emplace_back(line);
    if (self->echo_) {
        self->echo_(level, self->log_.back());
    }
}

std::vector<std::string> ObsHarness::logLines() const {
    std::lock_guard<std::mutex> lock(logMutex_);
    return log_;
}

void ObsHarness::clearLog() {
    std::lock_guard<std::mutex> lock(logMutex_);
    log_.clear();
}

bool ObsHarness::start(uint32_t sampleRate, int channels, std::string& error) {
    if (layoutFor(channels) == SPEAKERS_UNKNOWN) {
        error = "unsupported channel count " + std::to_string(channels);
        return false;
    }
    if (!obs_startup("en-US", nullptr, nullptr)) {
        error = "libobs did not start (is there an X display? run under xvfb-run -a)";
        return false;
    }
    started_ = true;
    if (!gInterfaceThread.load(std::memory_order_acquire)) {
        gInterfaceThread.store(new InterfaceThread, std::memory_order_release);
    }
    obs_set_ui_task_handler(&queueInterfaceTask);
    if (!resetAudio(sampleRate, channels, error)) {
        return false;
    }
    obs_source_info info = makeInputInfo();
    obs_register_source(&info);
    return true;
}

void ObsHarness::setInterfaceThreadAttached(bool attached) {
    obs_set_ui_task_handler(attached ? &queueInterfaceTask : nullptr);
}

bool ObsHarness::resetAudio(uint32_t sampleRate, int channels, std::string& error) {
    if (layoutFor(channels) == SPEAKERS_UNKNOWN) {
        error = "unsupported channel count " + std::to_string(channels);
        return false;
    }
    // A source sizes its audio buffers for the layout in force when it is made, so
    // the input and its filters are rebuilt for the new one.
    removeAllFilters();
    if (input_) {
        obs_source_remove_audio_capture_callback(input_, &ObsHarness::onAudio, this);
        obs_source_release(input_);
        input_ = nullptr;
    }
    obs_audio_info ai = {};
    ai.samples_per_sec = sampleRate;
    ai.speakers = layoutFor(channels);
    if (!obs_reset_audio(&ai)) {
        error = "libobs refused the audio format";
        return false;
    }
    sampleRate_ = sampleRate;
    channels_ = channels;
    return true;
}

bool ObsHarness::loadModule(const std::string& path, const std::string& dataPath,
                            std::string& error) {
    namespace fs = std::filesystem;
    std::string data = dataPath;
    if (data.empty()) {
        const fs::path file(path);
        const std::string name = file.stem().string();
        const fs::path buildData = file.parent_path() / "plugin-data" / name;
        const fs::path buildDataUp = file.parent_path().parent_path() / "plugin-data" / name;
        if (fs::exists(buildData)) {
            data = buildData.string();
        } else if (fs::exists(buildDataUp)) {
            data = buildDataUp.string();
        } else {
            data = "/usr/share/obs/obs-plugins/" + name;
        }
    }
    obs_module_t* module = nullptr;
    const int rc = obs_open_module(&module, path.c_str(), data.c_str());
    if (rc != MODULE_SUCCESS) {
        error = "cannot open module " + path + " (code " + std::to_string(rc) + ")";
        return false;
    }
    if (!obs_init_module(module)) {
        error = "module " + path + " failed to initialise";
        return false;
    }
    return true;
}

bool ObsHarness::prepareInput(std::string& error) {
    if (!input_) {
        input_ = obs_source_create_private("lumora_host_input", "input", nullptr);
        if (!input_) {
            error = "cannot create the input source";
            return false;
        }
        obs_source_add_audio_capture_callback(input_, &ObsHarness::onAudio, this);
    }
    return true;
}

obs_source* ObsHarness::addFilter(const std::string& id, const std::string& settingsJson,
                                  std::string& error) {
    if (!prepareInput(error)) {
        return nullptr;
    }
    obs_data_t* settings = nullptr;
    if (!settingsJson.empty()) {
        settings = obs_data_create_from_json(settingsJson.c_str());
        if (!settings) {
            error = "filter settings are not valid JSON: " + settingsJson;
            return nullptr;
        }
    }
    const std::string name = id + " #" + std::to_string(filters_.size() + 1);
    obs_source_t* filter = obs_source_create_private(id.c_str(), name.c_str(), settings);
    obs_data_release(settings);
    if (!filter) {
        error = "no filter with id " + id + " (is its module loaded?)";
        return nullptr;
    }
    obs_source_filter_add(input_, filter);
    filters_.push_back(filter);
    return filter;
}

void ObsHarness::removeFilter(obs_source* filter) {
    for (auto it = filters_.begin(); it != filters_.end(); ++it) {
        if (*it == filter) {
            obs_source_filter_remove(input_, filter);
            obs_source_release(filter);
            filters_.erase(it);
            return;
        }
    }
}

void ObsHarness::removeAllFilters() {
    while (!filters_.empty()) {
        removeFilter(filters_.back());
    }
}

void ObsHarness::onAudio(void* param, obs_source_t*, const audio_data* audio, bool) {
    auto* self = static_cast<ObsHarness*>(param);
    if (!self || !self->capture_) {
        return;
    }
    auto& out = *self->capture_;
    self->lastShiftNs_ =
        static_cast<int64_t>(self->pushedNs_) - static_cast<int64_t>(audio->timestamp);
    for (int c = 0; c < self->channels_ && c < MAX_AV_PLANES; ++c) {
        const auto* plane = reinterpret_cast<const float*>(audio->data[c]);
        if (plane) {
            out[c].insert(out[c].end(), plane, plane + audio->frames);
        } else {
            out[c].insert(out[c].end(), audio->frames, 0.0f);
        }
    }
}

double ObsHarness::push(const std::vector<const float*>& planes, uint32_t frames,
                        std::vector<std::vector<float>>& out) {
    if (!input_) {
        return 0.0;
    }
    out.resize(static_cast<size_t>(channels_));
    obs_source_audio packet = {};
    for (size_t c = 0; c < planes.size() && c < MAX_AV_PLANES; ++c) {
        packet.data[c] = reinterpret_cast<const uint8_t*>(planes[c]);
    }
    packet.frames = frames;
    packet.speakers = layoutFor(channels_);
    packet.format = AUDIO_FORMAT_FLOAT_PLANAR;
    packet.samples_per_sec = sampleRate_;
    packet.timestamp = timestampNs_;
    pushedNs_ = timestampNs_;
    timestampNs_ += static_cast<uint64_t>(frames) * 1000000000ULL / sampleRate_;

    capture_ = &out;
    const double before = threadCpuSeconds();
    obs_source_output_audio(input_, &packet);
    const double spent = threadCpuSeconds() - before;
    capture_ = nullptr;
    return spent;
}

} // namespace Lumora
