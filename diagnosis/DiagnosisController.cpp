#include "diagnosis/DiagnosisController.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Lumora {

namespace {

// Prompt, text while recording, text when done, duration, records, hint, ordinal.
const WizardStep kSteps[DiagnosisController::kStepCount] = {
    {{"使ってるマイクを教えてね！", "Tell me which mic you use!"},
     {"", ""},
     {"", ""},
     0.0f,
     false,
     {"マイクの種類で判定の精度が上がるよ", "Knowing your mic type improves accuracy"},
     1},
    {{"診断するため、声を聞かせてね🙏\n普通の声の音量でしゃべってね☺"
      "️",
      "Let me hear your voice 🙏\nSpeak at your normal volume ☺️"},
     {"普通に話してみてね〜", "Keep talking naturally~"},
     {"ありがとう！", "Thank you!"},
     3.0f,
     true,
     {"いつも通りの声で OK！", "Your everyday voice is perfect!"},
     2},
    {{"次は大きい声で話してみてね！", "Now speak in a loud voice!"},
     {"もう少し大きく！", "A bit louder!"},
     {"ナイス！", "Nice!"},
     3.0f,
     true,
     {"配信で盛り上がったときの声をイメージして！",
      "Think of how loud you get when excited on stream!"},
     3},
    {{"次は小さい声で話してみてね！", "Now speak in a soft voice!"},
     {"ささやく感じで〜", "Like a whisper~"},
     {"上手！", "Great!"},
     3.0f,
     true,
     {"囁く程度の声でOK", "A whisper-level voice is fine"},
     4},
    {{"「パパパ」って言ってみてね！", "Say \"pa pa pa\"!"},
     {"「パパパ」！", "\"Pa pa pa\"!"},
     {"完璧！", "Perfect!"},
     2.0f,
     true,
     {"マイクに向かって「パ」を繰り返してみて", "Repeat \"pa\" sounds into the mic"},
     5},
    {{"黙ったまま待っててね！", "Stay quiet and wait!"},
     {"しーっ！静かに〜", "Shh! Stay quiet~"},
     {"ありがとう！", "Thank you!"},
     3.0f,
     true,
     {"部屋のノイズを測るよ", "Measuring room noise"},
     6},
    {{"診断結果だよ！", "Here are your results!"}, {"", ""}, {"", ""}, 0.0f, false, {"", ""}, 7},
};

const BilingualText kIntroText{
    "診断中はエフェクトをオフにしました。\n生の声で正確に診断するためです！\nまずはマイクの種類を教"
    "えてね 🎤",
    "Effects were disabled for the diagnosis.\nThis ensures an accurate reading of your raw "
    "voice!\nFirst, tell me your mic type 🎤"};
const BilingualText kAnalysingText{"ちょっと待ってね〜 解析中...", "Just a moment~ Analyzing..."};
const BilingualText kNoResultText{"診断が終わったよ！", "Diagnosis complete!"};
const BilingualText kOfferSaveText{"保存しておく？", "Want to save it?"};
const BilingualText kEndText{"ここまでありがとう！", "Thanks for everything!"};

} // namespace

DiagnosisController::DiagnosisController() {
    reset();
}

void DiagnosisController::appendAudio(const float* samples, size_t n, double sampleRate) {
    if (state_ != kRecording) {
        return;
    }
    session_.sampleRate = sampleRate;
    session_.appendAudio(session_.currentStep, samples, n);
}

const WizardStep& DiagnosisController::step(int index) {
    return kSteps[std::clamp(index, 0, kStepCount - 1)];
}

void DiagnosisController::reset() {
    state_ = kIntro;
    clearTimers();
    latest_ = AudioMetrics{};
    session_.clear();
    hasResult_ = false;
    result_ = DiagnosisResult{};
}

void DiagnosisController::clearTimers() {
    countdownElapsed_ = 0.0;
    recordingElapsed_ = 0.0;
    recordingDuration_ = 3.0;
}

bool DiagnosisController::selectMic(int32_t micType) {
    if (state_ != kIntro) {
        return false;
    }
    session_.micType = micType;
    session_.currentStep = kFirstTake;
    state_ = kPrompt;
    return true;
}

bool DiagnosisController::startTake() {
    if (state_ != kPrompt) {
        return false;
    }
    countdownElapsed_ = 0.0;
    state_ = kCountdown;
    return true;
}

void DiagnosisController::tick(double dt, const AudioMetrics& snapshot) {
    latest_ = snapshot;
    if (!(dt > 0.0)) {
        return; // also rejects NaN
    }
    if (state_ == kCountdown) {
        countdownElapsed_ += dt;
        if (countdownElapsed_ >= kCountdownSeconds) {
            recordingElapsed_ = 0.0;
            recordingDuration_ = step(session_.currentStep).durationS;
            state_ = kRecording;
        }
        return;
    }
    if (state_ == kRecording) {
        recordingElapsed_ += dt;
        // Wrap-safe "not older than the take's restart".
        if (static_cast<int32_t>(snapshot.heldEpoch - takeEpoch_) >= 0) {
            session_.append(session_.currentStep, snapshot);
        }
        if (recordingElapsed_ >= recordingDuration_) {
            state_ = kTakeDone;
        }
    }
}

bool DiagnosisController::retry() {
    if (state_ != kTakeDone) {
        return false;
    }
    session_.steps[static_cast<size_t>(session_.currentStep)].clear();
    session_.audio[static_cast<size_t>(session_.currentStep)].clear();
    state_ = kPrompt;
    return true;
}

bool DiagnosisController::next() {
    if (state_ != kTakeDone) {
        return false;
    }
    if (session_.currentStep >= kLastTake) {
        state_ = kAnalysing;
        return true;
    }
    ++session_.currentStep;
    state_ = kPrompt;
    return true;
}

bool DiagnosisController::cancel() {
    if (state_ != kCountdown && state_ != kRecording && state_ != kAnalysing) {
        return false;
    }
    if (state_ != kAnalysing) {
        session_.steps[static_cast<size_t>(session_.currentStep)].clear();
        session_.audio[static_cast<size_t>(session_.currentStep)].clear();
    }
    clearTimers();
    state_ = kEnd;
    return true;
}

bool DiagnosisController::finish() {
    if (state_ == kCountdown || state_ == kRecording || state_ == kAnalysing || state_ == kEnd) {
        return false;
    }
    state_ = kEnd;
    return true;
}

bool DiagnosisController::deliverResult(DiagnosisResult result) {
    if (state_ != kAnalysing) {
        return false;
    }
    result_ = std::move(result);
    hasResult_ = true;
    state_ = kResult;
    return true;
}

bool DiagnosisController::apply() {
    if (state_ != kResult) {
        return false;
    }
    state_ = kEnd;
    if (callback_ && hasResult_) {
        callback_(result_);
    }
    return true;
}

bool DiagnosisController::offerSave() {
    if (state_ != kResult) {
        return false;
    }
    state_ = kOfferSave;
    return true;
}

bool DiagnosisController::save() {
    if (state_ != kOfferSave) {
        return false;
    }
    state_ = kEnd;
    if (callback_ && hasResult_) {
        callback_(result_);
    }
    return true;
}

int DiagnosisController::countdownSecondsLeft() const {
    if (state_ != kCountdown) {
        return 0;
    }
    const double left = kCountdownSeconds - countdownElapsed_;
    return std::clamp(static_cast<int>(std::ceil(left)), 1, static_cast<int>(kCountdownSeconds));
}

double DiagnosisController::progress() const {
    if (state_ == kCountdown) {
        return std::clamp(countdownElapsed_ / kCountdownSeconds, 0.0, 1.0);
    }
    if (state_ == kRecording && recordingDuration_ > 0.0) {
        return std::clamp(recordingElapsed_ / recordingDuration_, 0.0, 1.0);
    }
    return 0.0;
}

int DiagnosisController::takesCompleted() const {
    switch (state_) {
    case kIntro:
        return 0;
    case kPrompt:
    case kCountdown:
    case kRecording:
        return std::clamp(session_.currentStep - kFirstTake, 0, kLastTake);
    case kTakeDone:
        return std::clamp(session_.currentStep, 0, kLastTake);
    default:
        return session_.currentStep > 0 ? kLastTake : 0;
    }
}

std::string DiagnosisController::currentText(const std::string& language) const {
    const WizardStep& s = step(session_.currentStep);
    switch (state_) {
    case kIntro:
        return kIntroText.pick(language);
    case kPrompt:
        return s.prompt.pick(language);
    case kCountdown:
    case kRecording:
        return s.whileRecording.pick(language);
    case kTakeDone:
        return s.done.pick(language);
    case kAnalysing:
        return kAnalysingText.pick(language);
    case kResult:
        if (!hasResult_) {
            return kNoResultText.pick(language);
        }
        return language == "ja" ? result_.summaryJa : result_.summaryEn;
    case kOfferSave:
        return kOfferSaveText.pick(language);
    case kEnd:
        return kEndText.pick(language);
    }
    return std::string();
}

std::string DiagnosisController::currentHint(const std::string& language) const {
    switch (state_) {
    case kIntro:
        return step(0).hint.pick(language);
    case kPrompt:
    case kCountdown:
    case kRecording:
        return step(session_.currentStep).hint.pick(language);
    case kResult:
        return step(kResultStep).prompt.pick(language);
    default:
        return std::string();
    }
}

} // namespace Lumora
