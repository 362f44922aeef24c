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
    <name>Lumora::DiagnosisHistoryList</name>
    <message>
        <source>Dynamic</source>
        <translation>ダイナミック</translation>
    </message>
    <message>
        <source>Condenser</source>
        <translation>コンデンサー</translation>
    </message>
    <message>
        <source>Unknown mic</source>
        <translation>マイク不明</translation>
    </message>
    <message>
        <source>Applied</source>
        <translation>適用済み</translation>
    </message>
    <message>
        <source>The recommended settings were applied</source>
        <translation>おすすめ設定を適用しました</translation>
    </message>
    <message>
        <source>Diagnosis history</source>
        <translation>診断の履歴</translation>
    </message>
    <message>
        <source>No diagnosis yet.</source>
        <translation>まだ診断していません。</translation>
    </message>
</context>
<context>
    <name>Lumora::DiagnosisPresenter</name>
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
    <name>Lumora::DynamicsControls</name>
    <message>
        <source>Compressor threshold
Louder than this gets turned down
Lower = more evening out</source>
        <translation>コンプのスレッショルド
これより大きい音を抑えます
低いほど音量がそろう</translation>
    </message>
    <message>
        <source>How strongly loud parts are turned down
2:1 = gentle, 6:1 = strong</source>
        <translation>大きな音を抑える強さ
2:1 = やさしく、6:1 = 強く</translation>
    </message>
    <message>
        <source>Softens the start of compression
0 = hard, higher = smoother</source>
        <translation>圧縮のかかり始めをなめらかに
0 = くっきり、大きいほど自然</translation>
    </message>
    <message>
        <source>How fast the compressor reacts
Shorter = catches peaks; longer = keeps the punch</source>
        <translation>コンプが反応する速さ
短い = ピークを逃さない、長い = 勢いを残す</translation>
    </message>
    <message>
        <source>Gain after compression
Brings the evened-out voice back up</source>
        <translation>圧縮後のゲイン
そろえた声の音量を持ち上げます</translation>
    </message>
    <message>
        <source>Limiter ceiling
The output never goes above this: no clipping!</source>
        <translation>リミッターの天井
出力がこれを超えないので音割れしない！</translation>
    </message>
    <message>
        <source>🎙 Talk Mode</source>
        <translation>🎙 トークモード</translation>
    </message>
    <message>
        <source>Gentle ratio from a deep threshold, soft knee, fast attack:
evens out a talking voice</source>
        <translation>深めのスレッショルドからゆるい比率、ソフトニー、速いアタック：
トーク配信の声をそろえます</translation>
    </message>
    <message>
        <source>🎤 Singing Mode</source>
        <translation>🎤 歌枠モード</translation>
    </message>
    <message>
        <source>Middle threshold, 4:1, small knee, 30 ms attack:
holds belted notes and keeps the song&apos;s dynamics</source>
        <translation>中くらいのスレッショルド、4:1、小さめのニー、アタック30ms：
歌の抑揚を残しつつ張り上げた声を抑えます</translation>
    </message>
    <message>
        <source>Limiter on/off</source>
        <translation>リミッターのオン/オフ</translation>
    </message>
    <message>
        <source>Limiter</source>
        <translation>リミッター</translation>
    </message>
</context>
<context>
    <name>Lumora::EffectPanel</name>
    <message>
        <source>Manual adjustment preset</source>
        <translation>手動調整プリセット</translation>
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
        <source>The preset could not be saved.</source>
        <translation>プリセットを保存できませんでした。</translation>
    </message>
    <message>
        <source>Noise Reduction</source>
        <translation>ノイズ対策</translation>
    </message>
    <message>
        <source>【Noise Reduction】
Remove the noise behind your voice!
The ambient filter removes the room&apos;s steady noise, the AI filter all kinds of noise,
and the gate mutes the mic while you are not speaking🔇</source>
        <translation>【ノイズ対策】
声の後ろのノイズを消そう！
環境ノイズフィルターは部屋の定常ノイズを、AIフィルターはいろいろなノイズを、
ゲートは話していない間のマイクを消します🔇</translation>
    </message>
    <message>
        <source>EQ / Filters</source>
        <translation>EQ / フィルター</translation>
    </message>
    <message>
        <source>【EQ / Filters】
Adjust volume by frequency!
Low Cut removes low-frequency noise; bands boost or cut specific ranges🎚️</source>
        <translation>【EQ / フィルター】
周波数ごとに音量を調整！
ローカットは低音ノイズを除去、バンドで特定の帯域を持ち上げたり削ったりできます🎚️</translation>
    </message>
    <message>
        <source>EQ overall on/off</source>
        <translation>EQ全体のオン/オフ</translation>
    </message>
    <message>
        <source>Compressor / Limiter</source>
        <translation>コンプ・リミッター</translation>
    </message>
    <message>
        <source>【Compressor / Limiter】
Even out loud and quiet!
The compressor turns loud parts down, the limiter stops clipping at its ceiling🛡️</source>
        <translation>【コンプ・リミッター】
声の大小をそろえよう！
コンプは大きな声を抑え、リミッターは天井で音割れを防ぎます🛡️</translation>
    </message>
    <message>
        <source>Compressor / Limiter overall on/off</source>
        <translation>コンプ・リミッター全体のオン/オフ</translation>
    </message>
    <message>
        <source>Save preset</source>
        <translation>プリセットを保存</translation>
    </message>
    <message>
        <source>Reset to defaults</source>
        <translation>デフォルトに戻す</translation>
    </message>
</context>
<context>
    <name>Lumora::EqBandRow</name>
    <message>
        <source>Freq</source>
        <translation>周波数</translation>
    </message>
    <message>
        <source>Band centre frequency
Where this band boosts or cuts</source>
        <translation>バンドの中心周波数
このバンドが持ち上げたり削ったりする場所</translation>
    </message>
    <message>
        <source>Gain</source>
        <translation>ゲイン</translation>
    </message>
    <message>
        <source>Band gain
+ = boost, - = cut</source>
        <translation>バンドのゲイン
+ = 持ち上げ、- = カット</translation>
    </message>
    <message>
        <source>Band width (Q)
Higher = narrower, sharper</source>
        <translation>バンド幅 (Q)
大きいほど狭く鋭く</translation>
    </message>
    <message>
        <source>Delete band</source>
        <translation>バンドを削除</translation>
    </message>
</context>
<context>
    <name>Lumora::EqControls</name>
    <message>
        <source>Low cut frequency
Removes rumble, desk knocks and pops below it</source>
        <translation>ローカット周波数
これより下のゴロゴロ音・机の振動・吹かれを除去</translation>
    </message>
    <message>
        <source>High cut frequency
Removes hiss above it</source>
        <translation>ハイカット周波数
これより上のサーッというノイズを除去</translation>
    </message>
    <message>
        <source>High cut resonance (Q)
0.707 = flat; higher = a small peak before the cut</source>
        <translation>ハイカットのレゾナンス (Q)
0.707 = フラット、大きいほどカット手前に小さな山</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>デフォルト</translation>
    </message>
    <message>
        <source>Resets every EQ setting to its starting value.</source>
        <translation>EQ 設定をすべて初期値にリセットします。</translation>
    </message>
    <message>
        <source>🔇 De-essing</source>
        <translation>🔇 ディエッシング</translation>
    </message>
    <message>
        <source>🎙 Male Voice</source>
        <translation>🎙 男性の声</translation>
    </message>
    <message>
        <source>👩 Female Voice</source>
        <translation>👩 女性の声</translation>
    </message>
    <message>
        <source>Cuts the sibilance band of 5 to 8 kHz:
softer &quot;s&quot; and &quot;sh&quot; sounds</source>
        <translation>5〜8kHzの歯擦音の帯域をカット：
「サ行」の刺さりをやわらげます</translation>
    </message>
    <message>
        <source>Warm lows, clearer mids and presence at 2.5 kHz</source>
        <translation>あたたかい低音、すっきりした中音、2.5kHzの存在感</translation>
    </message>
    <message>
        <source>More air and clarity, less muffling</source>
        <translation>空気感と明瞭さをアップ、こもりを軽減</translation>
    </message>
    <message>
        <source>Low cut on/off</source>
        <translation>ローカットのオン/オフ</translation>
    </message>
    <message>
        <source>High cut on/off</source>
        <translation>ハイカットのオン/オフ</translation>
    </message>
    <message>
        <source>+ Add Band</source>
        <translation>＋ バンドを追加</translation>
    </message>
</context>
<context>
    <name>Lumora::FxModulationControls</name>
    <message>
        <source>Type</source>
        <translation>タイプ</translation>
    </message>
    <message>
        <source>Rate</source>
        <translation>レート</translation>
    </message>
    <message>
        <source>Speed of the sweep</source>
        <translation>揺れの速さ</translation>
    </message>
    <message>
        <source>Depth</source>
        <translation>深さ</translation>
    </message>
    <message>
        <source>How far the sweep swings</source>
        <translation>揺れの大きさ</translation>
    </message>
    <message>
        <source>Feedback</source>
        <translation>フィードバック</translation>
    </message>
    <message>
        <source>How much of the effect is fed back
Higher = more metallic</source>
        <translation>エフェクトを戻す量
高いほど金属的に</translation>
    </message>
    <message>
        <source>Wet</source>
        <translation>ウェット</translation>
    </message>
    <message>
        <source>Share of the effect in the output</source>
        <translation>出力に混ぜるエフェクトの割合</translation>
    </message>
    <message>
        <source>Chorus</source>
        <translation>コーラス</translation>
    </message>
    <message>
        <source>Flanger</source>
        <translation>フランジャー</translation>
    </message>
    <message>
        <source>Tremolo</source>
        <translation>トレモロ</translation>
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
    <name>Lumora::FxPitchControls</name>
    <message>
        <source>Pitch A</source>
        <translation>ピッチA</translation>
    </message>
    <message>
        <source>Layer A pitch in semitones
+12 = an octave up, -12 = an octave down</source>
        <translation>レイヤーAのピッチ（半音）
+12 = 1オクターブ上、-12 = 1オクターブ下</translation>
    </message>
    <message>
        <source>st</source>
        <translation>半音</translation>
    </message>
    <message>
        <source>Formant A</source>
        <translation>フォルマントA</translation>
    </message>
    <message>
        <source>Layer A voice character
+ = brighter, smaller; - = darker, bigger</source>
        <translation>レイヤーAの声質
+ = 明るく小柄に、- = 暗く大柄に</translation>
    </message>
    <message>
        <source>Blend of the two layers
0% = layer A only, 100% = layer B only</source>
        <translation>2つのレイヤーのバランス
0% = Aだけ、100% = Bだけ</translation>
    </message>
    <message>
        <source>Pitch B</source>
        <translation>ピッチB</translation>
    </message>
    <message>
        <source>Layer B pitch in semitones</source>
        <translation>レイヤーBのピッチ（半音）</translation>
    </message>
    <message>
        <source>Formant B</source>
        <translation>フォルマントB</translation>
    </message>
    <message>
        <source>Layer B voice character</source>
        <translation>レイヤーBの声質</translation>
    </message>
    <message>
        <source>Dry/wet
100% = only the shifted voice</source>
        <translation>ドライ/ウェット
100% = 変えた声だけ</translation>
    </message>
    <message>
        <source>Enable Layer B</source>
        <translation>Layer B を有効にする</translation>
    </message>
    <message>
        <source>Splits audio into 2 layers with independent pitch shifting
Use the MIX knob to blend the two layers!</source>
        <translation>音声を2つのレイヤーに分けて別々にピッチシフト
MIXノブで2つのレイヤーを混ぜよう！</translation>
    </message>
    <message>
        <source>Formant EQ (5 bands)</source>
        <translation>フォルマントEQ (5バンド)</translation>
    </message>
    <message>
        <source>5-band formant EQ
Enable to expand the analyzer and knobs
Fine-tune voice texture by frequency band!</source>
        <translation>5バンドのフォルマントEQ
オンにするとノブが開きます
帯域ごとに声の質感を細かく調整！</translation>
    </message>
    <message>
        <source>Band %1 center frequency
Adjust to match voice formants</source>
        <translation>バンド%1の中心周波数
声のフォルマントに合わせて調整</translation>
    </message>
    <message>
        <source>Gain%1</source>
        <translation>ゲイン%1</translation>
    </message>
    <message>
        <source>Band %1 gain
+ = boost, - = cut</source>
        <translation>バンド%1のゲイン
+ = 持ち上げ、- = カット</translation>
    </message>
    <message>
        <source>Band %1 bandwidth (Q)
Higher = narrower, sharper EQ curve</source>
        <translation>バンド%1の帯域幅 (Q)
大きいほど狭く鋭いカーブ</translation>
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
    <name>Lumora::KeyAssignPanel</name>
    <message>
        <source>(none)</source>
        <translation>（なし）</translation>
    </message>
    <message>
        <source>▼ Click a key to configure</source>
        <translation>▼ キーをクリックして設定してね</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>上</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>下</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>左</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>右</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>デフォルト</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>キー</translation>
    </message>
    <message>
        <source> (missing)</source>
        <translation>（見つかりません）</translation>
    </message>
    <message>
        <source>Save assign preset</source>
        <translation>アサインプリセットを保存</translation>
    </message>
    <message>
        <source>Enter a preset name:</source>
        <translation>プリセット名を入力してください：</translation>
    </message>
    <message>
        <source>The preset could not be saved.</source>
        <translation>プリセットを保存できませんでした。</translation>
    </message>
    <message>
        <source>No key assign presets yet.</source>
        <translation>アサインプリセットはまだありません。</translation>
    </message>
    <message>
        <source>Key Assign</source>
        <translation>キーアサイン</translation>
    </message>
    <message>
        <source>💾 Save</source>
        <translation>💾 保存</translation>
    </message>
    <message>
        <source>📂 Load</source>
        <translation>📂 読込</translation>
    </message>
    <message>
        <source>Load assign preset</source>
        <translation>アサインプリセットを読み込み</translation>
    </message>
    <message>
        <source>🏷 Key name:</source>
        <translation>🏷 キー名:</translation>
    </message>
    <message>
        <source>e.g. Singing Mode</source>
        <translation>例: 歌枠モード</translation>
    </message>
    <message>
        <source>⏱ Trigger:</source>
        <translation>⏱ トリガー:</translation>
    </message>
    <message>
        <source>🔁 Toggle</source>
        <translation>🔁 切り替え</translation>
    </message>
    <message>
        <source>Press once to apply, press again to disable</source>
        <translation>1度押して適用、もう1度押すと解除</translation>
    </message>
    <message>
        <source>◎ Momentary</source>
        <translation>◎ 押した時だけ</translation>
    </message>
    <message>
        <source>Apply only while held</source>
        <translation>押している間だけ適用</translation>
    </message>
    <message>
        <source>🎛 Sound:</source>
        <translation>🎛 音質:</translation>
    </message>
    <message>
        <source>Default state settings
Preset applied when no key is pressed</source>
        <translation>デフォルト状態の設定
キー未押下時に適用されるプリセット</translation>
    </message>
</context>
<context>
    <name>Lumora::KeyAssignPresetsPanel</name>
    <message>
        <source>&quot;%1&quot; is built in: it comes back at once, and the arrow keys return to the built-in assignment. Delete it anyway?</source>
        <translation>「%1」は組み込みプリセットです。削除してもすぐに戻り、矢印キーも組み込みの割り当てに戻ります。それでも削除しますか？</translation>
    </message>
    <message>
        <source>Key assign presets</source>
        <translation>アサインプリセット</translation>
    </message>
    <message>
        <source>No key assign presets yet.
Save one on the key assign page.</source>
        <translation>アサインプリセットはまだありません。
キーアサインのページで保存できます。</translation>
    </message>
</context>
<context>
    <name>Lumora::KeysPage</name>
    <message>
        <source>Press an arrow key: it lights up here. Assign voices to the keys under Presets.</source>
        <translation>矢印キーを押すと、ここが光るよ。キーへの声の割り当ては「プリセット」からできるよ。</translation>
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
    <message>
        <source>How late your voice leaves the filter.
OBS moves the sound&apos;s timestamps by as much, so picture and voice stay together: no sync offset to set.</source>
        <translation>フィルターを通った声の遅れです。
OBSが音のタイムスタンプを同じだけずらすので、映像と声はずれません（同期オフセットの設定は不要）。</translation>
    </message>
    <message>
        <source>Delay: %1 ms</source>
        <translation>遅延: %1ms</translation>
    </message>
</context>
<context>
    <name>Lumora::NoiseControls</name>
    <message>
        <source>Strength</source>
        <translation>強さ</translation>
    </message>
    <message>
        <source>Ambient filter strength
Higher = more room noise removed;
too high makes the voice sound watery</source>
        <translation>環境ノイズフィルターの強さ
高いほど部屋のノイズを消す
上げすぎると声が水っぽくなります</translation>
    </message>
    <message>
        <source>Attenuation</source>
        <translation>減衰量</translation>
    </message>
    <message>
        <source>How far the AI filter may turn noise down
Higher = quieter background; lower = more natural</source>
        <translation>AIフィルターがノイズを下げる最大量
高い = 背景が静か、低い = 自然</translation>
    </message>
    <message>
        <source>Blend</source>
        <translation>ブレンド</translation>
    </message>
    <message>
        <source>Share of the AI-filtered voice
100% = fully filtered; lower mixes the original back in</source>
        <translation>AIで処理した声の割合
100% = 全部処理、下げると元の声を混ぜます</translation>
    </message>
    <message>
        <source>Gate threshold
Sounds quieter than this are cut!
Lower = more delicate sounds pass; higher = more noise cut</source>
        <translation>ゲートのしきい値
これより小さい音はカット！
低い = 小さな音も通る、高い = ノイズをよりカット</translation>
    </message>
    <message>
        <source>How fast the gate opens when you start speaking
Shorter = the first sound is not cut</source>
        <translation>話し始めにゲートが開く速さ
短い = 最初の音が欠けない</translation>
    </message>
    <message>
        <source>How long the gate stays open after you stop
Longer = word endings are not cut</source>
        <translation>話し終えてからゲートが開いている時間
長い = 語尾が切れない</translation>
    </message>
    <message>
        <source>How fast the gate closes
Longer = a smoother fade-out</source>
        <translation>ゲートが閉じる速さ
長い = なめらかに消える</translation>
    </message>
    <message>
        <source>⚠️ No sound reached the filter</source>
        <translation>⚠️ 音が届いていません</translation>
    </message>
    <message>
        <source>✅ Learned</source>
        <translation>✅ 学習済み</translation>
    </message>
    <message>
        <source>⬜ Not learned</source>
        <translation>⬜ 未学習</translation>
    </message>
    <message>
        <source>Noise Learn</source>
        <translation>ノイズ学習</translation>
    </message>
    <message>
        <source>🤫 Stay quiet… %1 s</source>
        <translation>🤫 静かにしてね… 残り%1秒</translation>
    </message>
    <message>
        <source>🚫🔊 Zero-Tolerance Noise Mode</source>
        <translation>🚫🔊 ノイズ絶対許さないモード</translation>
    </message>
    <message>
        <source>💡 Best for: game streams, chatting, noisy rooms
Turns every noise stage on and strong: ambient filter, AI filter and gate</source>
        <translation>💡 向いてる場面：ゲーム配信、雑談、騒がしい部屋
ノイズ対策を全部強めにオン（環境ノイズフィルター・AIフィルター・ゲート）</translation>
    </message>
    <message>
        <source>👂✨ Catch-Every-Detail Mode</source>
        <translation>👂✨ 細かい音まで拾うモード</translation>
    </message>
    <message>
        <source>💡 Best for: singing, ASMR, instruments
Keeps breaths and reverb tails; only a light ambient filter removes the room&apos;s steady hum</source>
        <translation>💡 向いてる場面：歌枠、ASMR、楽器演奏
息づかいや余韻を残し、軽い環境ノイズフィルターで部屋の定常ノイズだけを除去</translation>
    </message>
    <message>
        <source>Ambient Noise Filter</source>
        <translation>環境ノイズフィルター</translation>
    </message>
    <message>
        <source>Ambient noise filter on/off</source>
        <translation>環境ノイズフィルターのオン/オフ</translation>
    </message>
    <message>
        <source>Learn your room&apos;s noise to improve the Ambient Noise Filter accuracy!
Records 3 seconds of silence to measure the room&apos;s noise profile.</source>
        <translation>部屋のノイズを学習して環境ノイズフィルターの精度を上げよう！
3秒間の無音を録音して、部屋のノイズの特徴を測ります。</translation>
    </message>
    <message>
        <source>(Needs the filter running in OBS.)</source>
        <translation>（OBSでフィルターが動いている必要があります）</translation>
    </message>
    <message>
        <source>AI Noise Filter</source>
        <translation>AI学習ノイズフィルター</translation>
    </message>
    <message>
        <source>AI noise filter on/off</source>
        <translation>AIノイズフィルターのオン/オフ</translation>
    </message>
    <message>
        <source>✅ AI filter ready</source>
        <translation>✅ AIフィルター使用可能</translation>
    </message>
    <message>
        <source>⏳ Starts with the filter in OBS</source>
        <translation>⏳ OBSでフィルターが動くと使えます</translation>
    </message>
    <message>
        <source>⚠️ Not available: the DeepFilterNet library was not found</source>
        <translation>⚠️ 使用不可：DeepFilterNetライブラリが見つかりません</translation>
    </message>
    <message>
        <source>⚠️ Not available: the model file is missing</source>
        <translation>⚠️ 使用不可：モデルファイルがありません</translation>
    </message>
    <message>
        <source>⚠️ Not available: needs 48 kHz audio (set OBS to 48 kHz)</source>
        <translation>⚠️ 使用不可：48kHzの音声が必要です（OBSを48kHzに設定）</translation>
    </message>
    <message>
        <source>⚠️ Not available: the model could not be loaded</source>
        <translation>⚠️ 使用不可：モデルを読み込めませんでした</translation>
    </message>
    <message>
        <source>Noise Gate</source>
        <translation>ノイズゲート</translation>
    </message>
    <message>
        <source>Noise gate on/off</source>
        <translation>ノイズゲートのオン/オフ</translation>
    </message>
    <message>
        <source>No room noise learned yet: press &quot;Noise Learn&quot; and stay quiet for 3 seconds</source>
        <translation>まだ部屋のノイズを学習していません：「ノイズ学習」を押して3秒間静かにしてね</translation>
    </message>
    <message>
        <source>① Latency: ~%1ms</source>
        <translation>① レイテンシ: ~%1ms</translation>
    </message>
    <message>
        <source>② Latency: ~%1ms</source>
        <translation>② レイテンシ: ~%1ms</translation>
    </message>
</context>
<context>
    <name>Lumora::PresetListPanel</name>
    <message>
        <source>Import</source>
        <translation>インポート</translation>
    </message>
    <message>
        <source>Add presets from a preset file (.json)</source>
        <translation>プリセットファイル(.json)からプリセットを追加</translation>
    </message>
    <message>
        <source>Enter a preset name:</source>
        <translation>プリセット名を入力してください：</translation>
    </message>
    <message>
        <source>Rename preset</source>
        <translation>プリセット名を変更</translation>
    </message>
    <message>
        <source>A preset named &quot;%1&quot; already exists. Replace it?</source>
        <translation>「%1」という名前のプリセットがすでにあります。置き換えますか？</translation>
    </message>
    <message>
        <source>Delete the preset &quot;%1&quot;?</source>
        <translation>プリセット「%1」を削除しますか？</translation>
    </message>
    <message>
        <source>Delete preset</source>
        <translation>プリセットを削除</translation>
    </message>
    <message>
        <source>No settings folder</source>
        <translation>設定フォルダーがありません</translation>
    </message>
    <message>
        <source>The file cannot be read.</source>
        <translation>ファイルを読み込めません。</translation>
    </message>
    <message>
        <source>The file holds no presets of this kind.</source>
        <translation>このファイルにはこの種類のプリセットがありません。</translation>
    </message>
    <message>
        <source>The settings could not be saved.</source>
        <translation>設定を保存できませんでした。</translation>
    </message>
    <message>
        <source>No preset named &quot;%1&quot;.</source>
        <translation>「%1」という名前のプリセットはありません。</translation>
    </message>
    <message>
        <source>The file cannot be written.</source>
        <translation>ファイルに書き込めません。</translation>
    </message>
    <message>
        <source>Import presets</source>
        <translation>プリセットをインポート</translation>
    </message>
    <message>
        <source>Preset files (*.json);;All files (*)</source>
        <translation>プリセットファイル (*.json);;すべてのファイル (*)</translation>
    </message>
    <message>
        <source>Export preset</source>
        <translation>プリセットをエクスポート</translation>
    </message>
    <message>
        <source>Preset files (*.json)</source>
        <translation>プリセットファイル (*.json)</translation>
    </message>
</context>
<context>
    <name>Lumora::PresetRow</name>
    <message>
        <source>Click to apply</source>
        <translation>クリックで適用</translation>
    </message>
    <message>
        <source>In use</source>
        <translation>使用中</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>名前を変更</translation>
    </message>
    <message>
        <source>Export to a file</source>
        <translation>ファイルにエクスポート</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>削除</translation>
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
    <name>Lumora::PresetsPanel</name>
    <message>
        <source>Sound presets</source>
        <translation>音質プリセット</translation>
    </message>
    <message>
        <source>No sound presets yet.
Save one from the Sound tab or from the diagnosis results.</source>
        <translation>音質プリセットはまだありません。
音質タブや診断結果から保存できます。</translation>
    </message>
</context>
<context>
    <name>Lumora::ResetPrompt</name>
    <message>
        <source>Reset</source>
        <translation>リセット</translation>
    </message>
    <message>
        <source>Reset to defaults?</source>
        <translation>デフォルトに戻しますか？</translation>
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
    <message>
        <source>🎤 Start diagnosis</source>
        <translation>🎤 診断をはじめる</translation>
    </message>
</context>
<context>
    <name>Lumora::SaveFailure</name>
    <message>
        <source>The settings file was written by a newer version of Lumora. It is kept as it is and nothing is saved over it; update Lumora to save again.
%1</source>
        <translation>設定ファイルは新しいバージョンの Lumora で書かれています。ファイルはそのまま残し、上書きはしません。保存するには Lumora を更新してください。
%1</translation>
    </message>
</context>
<context>
    <name>Lumora::SoundFxPanel</name>
    <message>
        <source>No effects</source>
        <translation>エフェクトなし</translation>
    </message>
    <message>
        <source>Save Sound FX Preset</source>
        <translation>FXプリセットを保存</translation>
    </message>
    <message>
        <source>Enter a preset name:</source>
        <translation>プリセット名を入力してください：</translation>
    </message>
    <message>
        <source>The preset could not be saved.</source>
        <translation>プリセットを保存できませんでした。</translation>
    </message>
    <message>
        <source>Drag to reorder</source>
        <translation>ドラッグして並び替え</translation>
    </message>
    <message>
        <source>Presets</source>
        <translation>プリセット</translation>
    </message>
    <message>
        <source>Built-in presets</source>
        <translation>組み込みプリセット</translation>
    </message>
    <message>
        <source>Save FX preset</source>
        <translation>FXプリセットを保存</translation>
    </message>
    <message>
        <source>Reset to defaults</source>
        <translation>デフォルトに戻す</translation>
    </message>
    <message>
        <source>Feedback</source>
        <translation>フィードバック</translation>
    </message>
    <message>
        <source>Wet</source>
        <translation>ウェット</translation>
    </message>
    <message>
        <source>Low Cut</source>
        <translation>ローカット</translation>
    </message>
    <message>
        <source>The radio&apos;s lowest frequency
Higher = thinner, smaller speaker</source>
        <translation>ラジオの一番低い周波数
高いほど細く小さなスピーカーに</translation>
    </message>
    <message>
        <source>High Cut</source>
        <translation>ハイカット</translation>
    </message>
    <message>
        <source>The radio&apos;s highest frequency
Lower = duller, older radio</source>
        <translation>ラジオの一番高い周波数
低いほどこもった古いラジオに</translation>
    </message>
    <message>
        <source>Drive</source>
        <translation>歪み</translation>
    </message>
    <message>
        <source>Distortion of the radio</source>
        <translation>ラジオの歪み</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>タイム</translation>
    </message>
    <message>
        <source>Time until the echo returns</source>
        <translation>エコーが返ってくるまでの時間</translation>
    </message>
    <message>
        <source>How much each echo repeats
Higher = more repeats</source>
        <translation>エコーの繰り返しの量
高いほど何度も返る</translation>
    </message>
    <message>
        <source>Loudness of the echoes</source>
        <translation>エコーの音量</translation>
    </message>
    <message>
        <source>Room Size</source>
        <translation>部屋サイズ</translation>
    </message>
    <message>
        <source>Size of the room
Larger = longer reverb</source>
        <translation>部屋の大きさ
大きいほど長い残響</translation>
    </message>
    <message>
        <source>Damping</source>
        <translation>吸音</translation>
    </message>
    <message>
        <source>How much the walls absorb the highs
Higher = darker</source>
        <translation>壁が高音を吸う量
高いほど暗い響き</translation>
    </message>
    <message>
        <source>Removes the lows from the reverb only
Keeps it from booming</source>
        <translation>リバーブだけの低音をカット
モコモコを防ぎます</translation>
    </message>
    <message>
        <source>Ducking</source>
        <translation>ダッキング</translation>
    </message>
    <message>
        <source>Lowers the reverb while you speak
Higher = clearer words</source>
        <translation>話している間はリバーブを下げる
高いほど言葉がはっきり</translation>
    </message>
    <message>
        <source>Share of the reverb in the output</source>
        <translation>出力に混ぜるリバーブの割合</translation>
    </message>
    <message>
        <source>Pitch Shifter &amp; Formant</source>
        <translation>ピッチシフター &amp; フォルマント</translation>
    </message>
    <message>
        <source>Modulation</source>
        <translation>モジュレーション</translation>
    </message>
    <message>
        <source>Radio</source>
        <translation>ラジオ</translation>
    </message>
    <message>
        <source>Delay &amp; Echo</source>
        <translation>ディレイ &amp; エコー</translation>
    </message>
    <message>
        <source>Reverb</source>
        <translation>リバーブ</translation>
    </message>
    <message>
        <source>Pitch shifter on/off</source>
        <translation>ピッチシフターのオン/オフ</translation>
    </message>
    <message>
        <source>Modulation on/off</source>
        <translation>モジュレーションのオン/オフ</translation>
    </message>
    <message>
        <source>Radio effect on/off</source>
        <translation>ラジオエフェクトのオン/オフ</translation>
    </message>
    <message>
        <source>Delay &amp; Echo on/off</source>
        <translation>ディレイ &amp; エコーのオン/オフ</translation>
    </message>
    <message>
        <source>Reverb on/off</source>
        <translation>リバーブのオン/オフ</translation>
    </message>
</context>
<context>
    <name>Lumora::SoundFxPresetsPanel</name>
    <message>
        <source>Sound FX presets</source>
        <translation>FXプリセット</translation>
    </message>
    <message>
        <source>No Sound FX presets yet.
Save one from the FX tab.</source>
        <translation>FXプリセットはまだありません。
FXタブから保存できます。</translation>
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
