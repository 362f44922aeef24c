#include "ui/WizardTips.h"

#include <cmath>

namespace Lumora {

namespace {

struct MicTip {
    int step;
    int micType;
    BilingualText text;
};

const MicTip kMicTips[] = {
    {1,
     0,
     {"💡 ダイナミックマイクは近めが得意！拳1個分くらいが目安 ✊",
      "💡 Dynamic mics love you close — about a fist away ✊"}},
    {1,
     1,
     {"💡 コンデンサーマイクは部屋の音も拾うよ。マイクの正面で話してね 🎤",
      "💡 Condenser mics hear the whole room, so face the mic 🎤"}},
    {1,
     2,
     {"💡 OBSで選んでいるマイクがそのUSBマイクか確認してね 🔌",
      "💡 Check that OBS is using this USB mic 🔌"}},
    {1,
     3,
     {"💡 マイクの種類がわからなくても大丈夫、いつも通りでOK 😊",
      "💡 Not sure about your mic? No problem, just talk as usual 😊"}},
    {2,
     1,
     {"💡 音が割れたらマイクのPADスイッチが役立つかも 🎚",
      "💡 If it distorts, the mic's PAD switch can help 🎚"}},
    {2,
     2,
     {"💡 USBマイクは本体のゲインつまみも見てみてね 🎚",
      "💡 USB mics often have a gain knob on the body, too 🎚"}},
    {3,
     0,
     {"💡 ダイナミックマイクは小声が苦手。距離はそのままでね 📏",
      "💡 Dynamic mics find whispers hard, so keep your distance the same 📏"}},
    {4,
     0,
     {"💡 ダイナミックマイクは近いぶん息が当たりやすいよ 💨",
      "💡 Up close, a dynamic mic catches every puff of breath 💨"}},
    {4,
     1,
     {"💡 ポップガードやウインドスクリーンで和らげられるよ 🧽",
      "💡 A pop filter or foam cover softens these bursts 🧽"}},
    {5,
     1,
     {"💡 コンデンサーマイクは小さなノイズも拾うから大事なステップだよ 🔍",
      "💡 Condenser mics pick up quiet hums, so this one matters! 🔍"}},
};

const std::vector<BilingualText> kStepTips[6] = {
    {},
    {
        {"💡 視聴者さんと雑談してる感じで話してみてね 🎮",
         "💡 Talk like you're chatting with your viewers 🎮"},
        {"💡 何か読み上げてもOK！今日の予定とかどう？ 📖",
         "💡 Reading something aloud works too — how about today's plans? 📖"},
        {"💡 配信のときと同じ距離で話してね 📏", "💡 Keep the same distance you use on stream 📏"},
    },
    {
        {"💡 ギリギリの勝負に勝った瞬間をイメージして！ 🎉",
         "💡 Imagine the moment you win a close match! 🎉"},
        {"💡 叫ばなくて大丈夫、のどを大事にね 🍵", "💡 Loud, not shouting — look after your throat 🍵"},
        {"💡 大笑いでもOKだよ！ 😆", "💡 A big laugh counts too! 😆"},
    },
    {
        {"💡 夜中に家族を起こさないように話す感じで 🌙",
         "💡 Like talking late at night without waking anyone 🌙"},
        {"💡 小さい声でも、マイクに近づかないでね 📏",
         "💡 Soft voice, same distance — no leaning in 📏"},
        {"💡 小さな声がどれだけ届くかを見るよ 🤫",
         "💡 This shows how well your quiet words come through 🤫"},
    },
    {
        {"💡 「パ・ポ・ボ」の破裂音でポップノイズが出やすいよ 💨",
         "💡 'Pa', 'Po', 'Bo' plosives are prone to pop noise 💨"},
        {"💡 いつも通りマイクの正面に向かって言ってね 🎯",
         "💡 Say it straight at the mic, just like normal 🎯"},
        {"💡 「ぱぴぷぺぽ」や「ばびぶべぼ」でもOK 🎈",
         "💡 \"Pa pi pu pe po\" or \"ba bi bu be bo\" work too 🎈"},
    },
    {
        {"💡 キーボードのカチャカチャも拾うよ。静かに待ってね 👂",
         "💡 Keyboard clicks are picked up too. Stay still 👂"},
        {"💡 PCやエアコンはいつも通りでOK。普段の部屋の音を測るよ 🏠",
         "💡 Leave your PC and AC as usual — we measure your real room 🏠"},
        {"💡 息を止めなくても大丈夫、リラックスしてね 😌",
         "💡 No need to hold your breath — just relax 😌"},
    },
};

} // namespace

std::vector<BilingualText> WizardTips::tipsFor(int step, int micType) {
    std::vector<BilingualText> tips;
    if (step < 1 || step > 5) {
        return tips;
    }
    for (const MicTip& tip : kMicTips) {
        if (tip.step == step && tip.micType == micType) {
            tips.push_back(tip.text);
        }
    }
    const auto& general = kStepTips[step];
    tips.insert(tips.end(), general.begin(), general.end());
    return tips;
}

std::string WizardTips::tipAt(int step, int micType, double elapsedSeconds,
                              const std::string& language) {
    const std::vector<BilingualText> tips = tipsFor(step, micType);
    if (tips.empty()) {
        return std::string();
    }
    const double turns = elapsedSeconds > 0.0 ? std::floor(elapsedSeconds / kRotationSeconds) : 0.0;
    const size_t index = static_cast<size_t>(turns) % tips.size();
    return tips[index].pick(language);
}

} // namespace Lumora
