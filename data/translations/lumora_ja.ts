<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP">
<context>
    <name>Lumora::AdviceCard</name>
    <message>
        <source>Clipping</source>
        <translation>音割れ</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>音量</translation>
    </message>
    <message>
        <source>Background noise</source>
        <translation>環境ノイズ</translation>
    </message>
    <message>
        <source>Mic distance</source>
        <translation>マイクとの距離</translation>
    </message>
    <message>
        <source>Dynamics</source>
        <translation>声の強弱</translation>
    </message>
    <message>
        <source>Pop noise</source>
        <translation>ポップノイズ</translation>
    </message>
</context>
<context>
    <name>Lumora::CreditsDialog</name>
    <message>
        <source>Credits</source>
        <translation>クレジット</translation>
    </message>
    <message>
        <source>Planning &amp; Development</source>
        <translation>企画・開発</translation>
    </message>
    <message>
        <source>Illustration</source>
        <translation>イラスト</translation>
    </message>
    <message>
        <source>Special Thanks</source>
        <translation>スペシャルサンクス</translation>
    </message>
    <message>
        <source>The Lumora team</source>
        <translation>Lumora チーム</translation>
    </message>
    <message>
        <source>The Lumora team (Tindra, the sky and the stars)</source>
        <translation>Lumora チーム（ティンドラ、空と星たち）</translation>
    </message>
    <message>
        <source>Everyone who tried the diagnosis and told us how it felt</source>
        <translation>診断を試して感想を教えてくれたみなさん</translation>
    </message>
    <message>
        <source>Klee One font: Fontworks (SIL Open Font License 1.1)</source>
        <translation>Klee One フォント：フォントワークス（SIL Open Font License 1.1）</translation>
    </message>
</context>
<context>
    <name>Lumora::FxPage</name>
    <message>
        <source>Voice effects</source>
        <translation>ボイスエフェクト</translation>
    </message>
</context>
<context>
    <name>Lumora::HomePanel</name>
    <message>
        <source>Let&apos;s check your voice!</source>
        <translation>声をチェックしよう！</translation>
    </message>
    <message>
        <source>Tell Tindra your mic, then speak, say &quot;pa pa pa&quot; and keep quiet for a few seconds each. You get six verdicts and settings that suit your voice.</source>
        <translation>マイクの種類を教えたら、ふつうに話す・「パパパ」と言う・静かにする、をそれぞれ数秒ずつ。6つの診断と、あなたの声に合った設定が届くよ。</translation>
    </message>
    <message>
        <source>🎤 Start diagnosis</source>
        <translation>🎤 診断をはじめる</translation>
    </message>
    <message>
        <source>Live levels</source>
        <translation>ライブレベル</translation>
    </message>
    <message>
        <source>MIC</source>
        <translation>マイク</translation>
    </message>
    <message>
        <source>OUT</source>
        <translation>出力</translation>
    </message>
    <message>
        <source>Open this window from the Tindra filter to see your levels.</source>
        <translation>Tindra フィルターからこの画面を開くと、レベルが表示されるよ。</translation>
    </message>
</context>
<context>
    <name>Lumora::MainMenu</name>
    <message>
        <source>Language</source>
        <translation>言語</translation>
    </message>
    <message>
        <source>Send Feedback</source>
        <translation>フィードバックを送る</translation>
    </message>
    <message>
        <source>Credits</source>
        <translation>クレジット</translation>
    </message>
    <message>
        <source>🌟 Easy Mode</source>
        <translation>🌟 かんたんモード</translation>
    </message>
    <message>
        <source>⚙ Advanced Mode</source>
        <translation>⚙ 詳細モード</translation>
    </message>
</context>
<context>
    <name>Lumora::MainTabBar</name>
    <message>
        <source>Diagnose</source>
        <translation>診断</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>結果</translation>
    </message>
    <message>
        <source>Sound</source>
        <translation>音質</translation>
    </message>
    <message>
        <source>FX</source>
        <translation>FX</translation>
    </message>
    <message>
        <source>Presets</source>
        <translation>プリセット</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>キー</translation>
    </message>
</context>
<context>
    <name>Lumora::MeterFaderWidget</name>
    <message>
        <source>IN</source>
        <translation>入力</translation>
    </message>
    <message>
        <source>OUT</source>
        <translation>出力</translation>
    </message>
    <message>
        <source>Bypass</source>
        <translation>バイパス</translation>
    </message>
    <message>
        <source>Input gain (double-click for 0 dB)</source>
        <translation>入力ゲイン（ダブルクリックで 0 dB）</translation>
    </message>
    <message>
        <source>Output gain (double-click for 0 dB)</source>
        <translation>出力ゲイン（ダブルクリックで 0 dB）</translation>
    </message>
</context>
<context>
    <name>Lumora::PresetsPage</name>
    <message>
        <source>🎹 Key Assign</source>
        <translation>🎹 キーアサイン</translation>
    </message>
    <message>
        <source>🎛 Sound</source>
        <translation>🎛 音質</translation>
    </message>
    <message>
        <source>🎵 FX</source>
        <translation>🎵 FX</translation>
    </message>
    <message>
        <source>🎹 Assign</source>
        <translation>🎹 アサイン</translation>
    </message>
</context>
<context>
    <name>Lumora::ResultSummaryCard</name>
    <message>
        <source>Dynamic mic</source>
        <translation>ダイナミックマイク</translation>
    </message>
    <message>
        <source>Condenser mic</source>
        <translation>コンデンサーマイク</translation>
    </message>
    <message>
        <source>USB mic</source>
        <translation>USBマイク</translation>
    </message>
    <message>
        <source>Mic type not given</source>
        <translation>マイクの種類はわからない</translation>
    </message>
</context>
<context>
    <name>Lumora::ResultsPage</name>
    <message>
        <source>Run the diagnosis to see advice here.</source>
        <translation>診断するとここにアドバイスが表示されるよ。</translation>
    </message>
    <message>
        <source>🔧 Apply recommended settings</source>
        <translation>🔧 おすすめ設定を適用</translation>
    </message>
    <message>
        <source>💾 Save preset</source>
        <translation>💾 プリセットに保存</translation>
    </message>
    <message>
        <source>🔄 Run diagnosis again</source>
        <translation>🔄 もう一度診断する</translation>
    </message>
</context>
<context>
    <name>Lumora::SoundPage</name>
    <message>
        <source>Voice chain</source>
        <translation>音質チェーン</translation>
    </message>
    <message>
        <source>🔄 Revert to diagnosis settings</source>
        <translation>🔄 診断時の設定に戻す</translation>
    </message>
    <message>
        <source>Reverts to the recommended settings auto-generated by diagnosis.
Use this when you want to undo your manual changes.</source>
        <translation>診断で自動生成したおすすめ設定に戻します。
手動で変えた設定を元に戻したいときに使ってね。</translation>
    </message>
</context>
<context>
    <name>Lumora::WizardDialog</name>
    <message>
        <source>Menu</source>
        <translation>メニュー</translation>
    </message>
    <message>
        <source>Press an arrow key: it lights up here. Assign voices to the keys under Presets.</source>
        <translation>矢印キーを押すと、ここが光るよ。キーへの声の割り当ては「プリセット」からできるよ。</translation>
    </message>
    <message>
        <source>Save Preset</source>
        <translation>プリセットを保存</translation>
    </message>
    <message>
        <source>Enter a preset name:</source>
        <translation>プリセット名を入力してください：</translation>
    </message>
    <message>
        <source>The preset could not be saved. Please try again.</source>
        <translation>プリセットを保存できなかったよ。もう一度試してみてね。</translation>
    </message>
    <message>
        <source>Last diagnosis:</source>
        <translation>前回の診断：</translation>
    </message>
</context>
<context>
    <name>Lumora::WizardPanel</name>
    <message>
        <source>Voice check</source>
        <translation>声の診断</translation>
    </message>
    <message>
        <source>🎙 Dynamic</source>
        <translation>🎙 ダイナミック</translation>
    </message>
    <message>
        <source>🎤 Condenser</source>
        <translation>🎤 コンデンサー</translation>
    </message>
    <message>
        <source>🔌 USB</source>
        <translation>🔌 USB</translation>
    </message>
    <message>
        <source>❓ Not sure</source>
        <translation>❓ わからない</translation>
    </message>
    <message>
        <source>🎙 Start recording</source>
        <translation>🎙 録音スタート</translation>
    </message>
    <message>
        <source>🔁 Try again</source>
        <translation>🔁 もう一回</translation>
    </message>
    <message>
        <source>🔧 Apply recommended settings</source>
        <translation>🔧 おすすめ設定を適用</translation>
    </message>
    <message>
        <source>💾 Save preset</source>
        <translation>💾 プリセットに保存</translation>
    </message>
    <message>
        <source>💬 See the details</source>
        <translation>💬 くわしく見る</translation>
    </message>
    <message>
        <source>💾 Save</source>
        <translation>💾 保存する</translation>
    </message>
    <message>
        <source>Not now</source>
        <translation>今はしない</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Close the diagnosis</source>
        <translation>診断を閉じる</translation>
    </message>
    <message>
        <source>MIC</source>
        <translation>マイク</translation>
    </message>
    <message>
        <source>✨ Analyse</source>
        <translation>✨ 診断する</translation>
    </message>
    <message>
        <source>Next ▶</source>
        <translation>次へ ▶</translation>
    </message>
</context>
</TS>
