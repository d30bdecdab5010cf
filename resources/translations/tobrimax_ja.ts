<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en_GB">
<context>
    <name>AboutBox</name>
    <message>
        <source>windows, BMP and WebP pictures</source>
        <translation>ウインドウ、BMP・WebP 画像</translation>
    </message>
    <message>
        <source>SVG pictures</source>
        <translation>SVG 画像</translation>
    </message>
    <message>
        <source>fonts of SVG pictures</source>
        <translation>SVG 画像のフォント</translation>
    </message>
    <message>
        <source>limits of what draws SVG pictures</source>
        <translation>SVG 画像を描くプログラムの制限</translation>
    </message>
    <message>
        <source>colour profiles</source>
        <translation>カラープロファイル</translation>
    </message>
    <message>
        <source>PNG pictures</source>
        <translation>PNG 画像</translation>
    </message>
    <message>
        <source>JPEG pictures</source>
        <translation>JPEG 画像</translation>
    </message>
    <message>
        <source>TIFF pictures</source>
        <translation>TIFF 画像</translation>
    </message>
    <message>
        <source>GIF pictures</source>
        <translation>GIF 画像</translation>
    </message>
    <message>
        <source>JPEG 2000 pictures</source>
        <translation>JPEG 2000 画像</translation>
    </message>
    <message>
        <source>PNG compression, compressed SVG pictures</source>
        <translation>PNG の圧縮、圧縮された SVG 画像</translation>
    </message>
    <message>
        <source>PNG decompression</source>
        <translation>PNG の展開</translation>
    </message>
    <message>
        <source>property lists</source>
        <translation>プロパティリスト</translation>
    </message>
    <message>
        <source>portable SIMD</source>
        <translation>移植性のある SIMD</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>バージョン %1</translation>
    </message>
    <message>
        <source>Libraries</source>
        <translation>ライブラリ</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>ライブラリ</translation>
    </message>
    <message>
        <source>For</source>
        <translation>用途</translation>
    </message>
    <message>
        <source>Licence</source>
        <translation>ライセンス</translation>
    </message>
    <message>
        <source>About Tobrimax</source>
        <translation>Tobrimax について</translation>
    </message>
    <message>
        <source>One picture in, the app icons of every platform out. Free software under the MIT licence. It is made with these libraries:</source>
        <translation>1 枚の画像から、各プラットフォームのアプリアイコンを作成します。MIT ライセンスのフリーソフトウェアで、次のライブラリを使用しています。</translation>
    </message>
</context>
<context>
    <name>BFPageControl</name>
    <message>
        <source>Page</source>
        <translation>ページ</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 / %2</translation>
    </message>
</context>
<context>
    <name>BorderImageView</name>
    <message>
        <source>%1 or %2</source>
        <extracomment>The end of a list of formats.</extracomment>
        <translation>%1、%2</translation>
    </message>
    <message>
        <source>%1.
Best: square, 1024 × 1024 or larger.</source>
        <translation>%1
1024 × 1024 以上の正方形が最適です。</translation>
    </message>
    <message>
        <source>Empty. Drop a picture here, or press Space to choose one.</source>
        <translation>空です。画像をここにドロップするか、スペースキーを押して選択してください。</translation>
    </message>
    <message>
        <source>A picture of %1 × %2</source>
        <translation>%1 × %2 の画像</translation>
    </message>
</context>
<context>
    <name>ColorWell</name>
    <message>
        <source>%1, alpha %2 %</source>
        <translation>%1、不透明度 %2%</translation>
    </message>
</context>
<context>
    <name>FloatSlider</name>
    <message>
        <source>%1 %</source>
        <translation>%1%</translation>
    </message>
</context>
<context>
    <name>LayoutList</name>
    <message>
        <source>Layout</source>
        <translation>レイアウト</translation>
    </message>
    <message>
        <source>For</source>
        <translation>用途</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>&amp;File</source>
        <translation>ファイル(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Open Picture…</source>
        <translation>画像を開く(&amp;O)…</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>最近使った画像を開く(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Generate…</source>
        <translation>アイコンを生成(&amp;G)…</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>閉じる(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Save Application Data</source>
        <translation>アプリケーションデータを保存(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Quit Tobrimax</source>
        <translation>Tobrimax を終了(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>編集(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>元に戻す(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>やり直す(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>コピー(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>貼り付け(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>表示(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Platform</source>
        <translation>プラットフォーム(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Rounded Corner</source>
        <translation>角を丸くする(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Border</source>
        <translation>枠線(&amp;B)</translation>
    </message>
    <message>
        <source>Border &amp;Colour…</source>
        <translation>枠線の色(&amp;C)…</translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation>ウインドウ(&amp;W)</translation>
    </message>
    <message>
        <source>&amp;Minimise</source>
        <translation>最小化(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>ヘルプ(&amp;H)</translation>
    </message>
    <message>
        <source>Tobrimax &amp;Guide</source>
        <translation>Tobrimax ガイド(&amp;G)</translation>
    </message>
    <message>
        <source>Tobrimax &amp;Web Site</source>
        <translation>Tobrimax の Web サイト(&amp;W)</translation>
    </message>
    <message>
        <source>&amp;More from Varnholt…</source>
        <translation>Varnholt のほかのアプリ(&amp;M)…</translation>
    </message>
    <message>
        <source>&amp;About Tobrimax</source>
        <translation>Tobrimax について(&amp;A)</translation>
    </message>
    <message>
        <source>Generate for a &amp;Project…</source>
        <translation>プロジェクト用に生成(&amp;P)…</translation>
    </message>
</context>
<context>
    <name>MainWindowController</name>
    <message>
        <source>Source picture</source>
        <translation>元の画像</translation>
    </message>
    <message>
        <source>Drop or paste a picture, or click to choose one</source>
        <translation>画像をドロップまたは貼り付けるか、クリックして選択します</translation>
    </message>
    <message>
        <source>Drop a picture here
or click to choose one</source>
        <translation>ここに画像をドロップ
またはクリックして選択</translation>
    </message>
    <message>
        <source>&amp;Platform</source>
        <translation>プラットフォーム(&amp;P)</translation>
    </message>
    <message>
        <source>Platform</source>
        <translation>プラットフォーム</translation>
    </message>
    <message>
        <source>The devices that the icons are for</source>
        <translation>アイコンを使うデバイス</translation>
    </message>
    <message>
        <source>iPhone and iPad</source>
        <translation>iPhone と iPad</translation>
    </message>
    <message>
        <source>&amp;Rounded corner</source>
        <translation>角を丸くする(&amp;R)</translation>
    </message>
    <message>
        <source>R&amp;adius</source>
        <translation>半径(&amp;A)</translation>
    </message>
    <message>
        <source>Corner radius</source>
        <translation>角の半径</translation>
    </message>
    <message>
        <source>Corner radius, as a part of the icon&apos;s side</source>
        <translation>アイコンの一辺に対する、角の半径の割合</translation>
    </message>
    <message>
        <source>&amp;Border</source>
        <translation>枠線(&amp;B)</translation>
    </message>
    <message>
        <source>Wi&amp;dth</source>
        <translation>太さ(&amp;D)</translation>
    </message>
    <message>
        <source>Border width</source>
        <translation>枠線の太さ</translation>
    </message>
    <message>
        <source>Line width, as a part of the icon&apos;s width; its inner half shows</source>
        <translation>アイコンの幅に対する、線の太さの割合。内側の半分だけが見えます</translation>
    </message>
    <message>
        <source>&amp;Colour</source>
        <translation>色(&amp;C)</translation>
    </message>
    <message>
        <source>Border colour</source>
        <translation>枠線の色</translation>
    </message>
    <message>
        <source>Border colour and its opacity</source>
        <translation>枠線の色と不透明度</translation>
    </message>
    <message>
        <source>&amp;Generate</source>
        <translation>アイコンを生成(&amp;G)</translation>
    </message>
    <message>
        <source>Choose a folder and write the icons into it</source>
        <translation>フォルダを選び、そこにアイコンを書き出します</translation>
    </message>
</context>
<context>
    <name>PictureCaption</name>
    <message>
        <source>Reading %1…</source>
        <extracomment>%1 is the name of a picture.</extracomment>
        <translation>%1 を読み込み中…</translation>
    </message>
    <message>
        <source>Pasted picture</source>
        <translation>貼り付けた画像</translation>
    </message>
    <message>
        <source>Not square: will be stretched.</source>
        <translation>正方形でないため、引き伸ばされます。</translation>
    </message>
    <message>
        <source>Smaller than %1 px: will be enlarged.</source>
        <translation>%1 px より小さいため、拡大されます。</translation>
    </message>
    <message>
        <source>Transparent: the App Store refuses such icons.</source>
        <translation>透明部分あり：App Store では使えません。</translation>
    </message>
    <message>
        <source>, %1 × %2</source>
        <translation>、%1 × %2</translation>
    </message>
    <message>
        <source>%1.</source>
        <extracomment>A sentence and its end.</extracomment>
        <translation>%1。</translation>
    </message>
</context>
<context>
    <name>PictureFiles</name>
    <message>
        <source>Pictures (*.png *.jpg *.jpeg *.tif *.tiff *.gif *.bmp *.webp *.icns *.svg *.svgz)</source>
        <translation>画像 (*.png *.jpg *.jpeg *.tif *.tiff *.gif *.bmp *.webp *.icns *.svg *.svgz)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>すべてのファイル (*)</translation>
    </message>
</context>
<context>
    <name>PictureWell</name>
    <message>
        <source>Empty. Drop a picture here, or press Space to choose one.</source>
        <translation>空です。ここに画像をドロップするか、スペースキーで画像を選びます。</translation>
    </message>
    <message>
        <source>%1, %2 × %3. Delete removes it.</source>
        <translation>%1、%2 × %3。Delete キーで取り除きます。</translation>
    </message>
    <message>
        <source>&amp;Choose Another…</source>
        <translation>別の画像を選択(&amp;C)…</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>取り除く(&amp;R)</translation>
    </message>
</context>
<context>
    <name>PlanCaption</name>
    <message>
        <source>1 PNG file, %1 px, in %2</source>
        <translation>PNG ファイル 1 個（%1 px）：%2</translation>
    </message>
    <message>
        <source>%1 PNG files, %2 to %3 px, in %4</source>
        <translation>PNG ファイル %1 個（%2～%3 px）：%4</translation>
    </message>
    <message>
        <source>, and %1/%2Application.icns</source>
        <translation>、および %1/%2Application.icns</translation>
    </message>
</context>
<context>
    <name>PreviewStrip</name>
    <message>
        <source>Icons as they will be written, at 16, 32, 64 and 128 pixels</source>
        <translation>書き出されるアイコン。16、32、64、128 ピクセル</translation>
    </message>
    <message>
        <source>%1 px</source>
        <translation>%1 px</translation>
    </message>
</context>
<context>
    <name>ProjectResult</name>
    <message>
        <source>Files</source>
        <translation>ファイル</translation>
    </message>
    <message>
        <source>File</source>
        <translation>ファイル</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>サイズ</translation>
    </message>
    <message>
        <source>1 file was written</source>
        <translation>1 個のファイルを書き込みました</translation>
    </message>
    <message>
        <source>%1 files were written</source>
        <translation>%1 個のファイルを書き込みました</translation>
    </message>
    <message>
        <source>%1 × %2</source>
        <translation>%1 × %2</translation>
    </message>
    <message>
        <source>Not written: %1: %2.</source>
        <translation>書き込めませんでした: %1: %2。</translation>
    </message>
    <message>
        <source>Failures</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>Warnings</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>%1 lacks this line. Tobrimax does not change it.</source>
        <translation>%1 に次の行がありません。Tobrimax はこのファイルを変更しません。</translation>
    </message>
    <message>
        <source>%1 lacks these lines. Tobrimax does not change it.</source>
        <translation>%1 に次の各行がありません。Tobrimax はこのファイルを変更しません。</translation>
    </message>
    <message>
        <source>Cop&amp;y</source>
        <translation>コピー(&amp;Y)</translation>
    </message>
    <message>
        <source>Copy for %1</source>
        <extracomment>%1 is the name of a file.</extracomment>
        <translation>%1 用にコピー</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>メッセージ</translation>
    </message>
</context>
<context>
    <name>ProjectSheet</name>
    <message>
        <source>Generate for a Project</source>
        <translation>プロジェクト用に生成</translation>
    </message>
    <message>
        <source>&amp;Layouts</source>
        <translation>レイアウト(&amp;L)</translation>
    </message>
    <message>
        <source>Layouts</source>
        <translation>レイアウト</translation>
    </message>
    <message>
        <source>&amp;Fit</source>
        <translation>合わせ方(&amp;F)</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>合わせ方</translation>
    </message>
    <message>
        <source>How a picture that is not square lies on its icons</source>
        <translation>正方形でない画像をアイコンにどう合わせるか</translation>
    </message>
    <message>
        <source>Stretch to the square</source>
        <translation>正方形に引き伸ばす</translation>
    </message>
    <message>
        <source>Show all of it</source>
        <translation>全体を表示する</translation>
    </message>
    <message>
        <source>Fill the square, cut off the rest</source>
        <translation>正方形を満たし、はみ出しを切り取る</translation>
    </message>
    <message>
        <source>&amp;Padding</source>
        <translation>余白(&amp;P)</translation>
    </message>
    <message>
        <source>Padding</source>
        <translation>余白</translation>
    </message>
    <message>
        <source>Free margin at each edge, as a part of the icon&apos;s side</source>
        <translation>アイコンの一辺に対する、各辺の余白の割合</translation>
    </message>
    <message>
        <source>&amp;Background</source>
        <translation>背景(&amp;B)</translation>
    </message>
    <message>
        <source>Background</source>
        <translation>背景</translation>
    </message>
    <message>
        <source>The colour below icons that have no alpha channel</source>
        <translation>アルファチャンネルのないアイコンの下地の色</translation>
    </message>
    <message>
        <source>Further pictures</source>
        <translation>ほかの画像</translation>
    </message>
    <message>
        <source>Dark picture</source>
        <translation>ダーク用の画像</translation>
    </message>
    <message>
        <source>The picture for dark icons; without it none are made</source>
        <translation>ダークアイコン用の画像。ない場合は作られません</translation>
    </message>
    <message>
        <source>&amp;Dark</source>
        <translation>ダーク(&amp;D)</translation>
    </message>
    <message>
        <source>Tinted picture</source>
        <translation>色合い用の画像</translation>
    </message>
    <message>
        <source>The picture for tinted icons; without it none are made</source>
        <translation>色合いアイコン用の画像。ない場合は作られません</translation>
    </message>
    <message>
        <source>&amp;Tinted</source>
        <translation>色合い(&amp;T)</translation>
    </message>
    <message>
        <source>Foreground picture</source>
        <translation>前景の画像</translation>
    </message>
    <message>
        <source>The front layer of Android&apos;s icons; without it, the main picture</source>
        <translation>Android アイコンの前面レイヤー。ない場合は元の画像</translation>
    </message>
    <message>
        <source>F&amp;oreground</source>
        <translation>前景(&amp;O)</translation>
    </message>
    <message>
        <source>Monochrome picture</source>
        <translation>単色の画像</translation>
    </message>
    <message>
        <source>The shape of Android&apos;s themed icons; without it, that of the front layer</source>
        <translation>Android のテーマアイコンの形。ない場合は前面レイヤーの形</translation>
    </message>
    <message>
        <source>&amp;Monochrome</source>
        <translation>単色(&amp;M)</translation>
    </message>
    <message>
        <source>Proj&amp;ect folder</source>
        <translation>プロジェクトのフォルダー(&amp;E)</translation>
    </message>
    <message>
        <source>Project folder</source>
        <translation>プロジェクトのフォルダー</translation>
    </message>
    <message>
        <source>The folder of the project</source>
        <translation>プロジェクトのフォルダー</translation>
    </message>
    <message>
        <source>&amp;Choose…</source>
        <translation>選択(&amp;C)…</translation>
    </message>
    <message>
        <source>P&amp;roof</source>
        <translation>校正(&amp;R)</translation>
    </message>
    <message>
        <source>Proof</source>
        <translation>校正</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>&amp;Generate</source>
        <translation>生成(&amp;G)</translation>
    </message>
    <message>
        <source>&amp;Open Folder</source>
        <translation>フォルダーを開く(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Done</source>
        <translation>完了(&amp;D)</translation>
    </message>
    <message>
        <source>Tick what the project needs.</source>
        <translation>プロジェクトに必要なものにチェックを入れてください。</translation>
    </message>
    <message>
        <source>Choose the project&apos;s folder.</source>
        <translation>プロジェクトのフォルダーを選んでください。</translation>
    </message>
    <message>
        <source>The icons of the layouts that are ticked</source>
        <translation>チェックを入れたレイアウトのアイコン</translation>
    </message>
    <message>
        <source>The folder could not be opened.</source>
        <translation>フォルダーを開けませんでした。</translation>
    </message>
</context>
<context>
    <name>PromotionWindow</name>
    <message>
        <source>More from Varnholt</source>
        <translation>Varnholt のほかのアプリ</translation>
    </message>
    <message>
        <source>Logo</source>
        <translation>ロゴ</translation>
    </message>
    <message>
        <source>&amp;Open in Store</source>
        <translation>ストアで開く(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Don’t show this again</source>
        <translation>今後表示しない(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>戻る(&amp;B)</translation>
    </message>
    <message>
        <source>Hide this window</source>
        <translation>このウインドウを隠す</translation>
    </message>
    <message>
        <source>&amp;Quit Tobrimax</source>
        <translation>Tobrimax を終了(&amp;Q)</translation>
    </message>
    <message>
        <source>You have them all</source>
        <translation>すべてお持ちです</translation>
    </message>
    <message>
        <source>Every other application of ours is installed already. Thank you!</source>
        <translation>ほかのアプリはすべてインストール済みです。ありがとうございます。</translation>
    </message>
</context>
<context>
    <name>ProofPreview</name>
    <message>
        <source>Proof of the icons</source>
        <translation>アイコンの校正</translation>
    </message>
    <message>
        <source>dark</source>
        <translation>ダーク</translation>
    </message>
    <message>
        <source>tinted</source>
        <translation>色合い</translation>
    </message>
    <message>
        <source>front layer</source>
        <translation>前面レイヤー</translation>
    </message>
    <message>
        <source>themed</source>
        <translation>テーマ</translation>
    </message>
    <message>
        <source>back layer</source>
        <translation>背面レイヤー</translation>
    </message>
    <message>
        <source>%1 px</source>
        <translation>%1 px</translation>
    </message>
    <message>
        <source>%1–%2 px</source>
        <extracomment>Sizes of icons in pixels, from the smallest to the largest.</extracomment>
        <translation>%1–%2 px</translation>
    </message>
</context>
<context>
    <name>Sentences</name>
    <message>
        <source>not a picture but text</source>
        <translation>画像ではなくテキストです</translation>
    </message>
    <message>
        <source>not a picture but an HTML page; save the picture itself</source>
        <translation>画像ではなく HTML ページです。画像そのものを保存してください</translation>
    </message>
    <message>
        <source>not a picture but %1; %2</source>
        <translation>画像ではなく%1です。%2</translation>
    </message>
    <message>
        <source>not a picture but %1</source>
        <translation>画像ではなく%1です</translation>
    </message>
    <message>
        <source>%1 is not read here; %2</source>
        <translation>%1は読み込めません。%2</translation>
    </message>
    <message>
        <source>not a picture of a known format (%1)</source>
        <translation>対応する形式の画像ではありません（%1）</translation>
    </message>
    <message>
        <source>the file is empty</source>
        <translation>ファイルが空です</translation>
    </message>
    <message>
        <source>the %1 picture is truncated or damaged (%2)</source>
        <translation>%1 画像が途中で切れているか、壊れています（%2）</translation>
    </message>
    <message>
        <source>the file was changed while it was read</source>
        <translation>読み込み中にファイルが変更されました</translation>
    </message>
    <message>
        <source>No such file or directory</source>
        <translation>ファイルまたはフォルダが見つかりません</translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation>アクセス権がありません</translation>
    </message>
    <message>
        <source>Is a directory</source>
        <translation>ファイルではなくフォルダです</translation>
    </message>
    <message>
        <source>Not a regular file</source>
        <translation>通常のファイルではありません</translation>
    </message>
    <message>
        <source>save it as SVG or PNG</source>
        <translation>SVG または PNG で保存してください</translation>
    </message>
    <message>
        <source>save it as PNG</source>
        <translation>PNG で保存してください</translation>
    </message>
    <message>
        <source>save one frame as PNG</source>
        <translation>1 コマを PNG で保存してください</translation>
    </message>
    <message>
        <source>unpack it and take the picture in it</source>
        <translation>展開して中の画像を使ってください</translation>
    </message>
    <message>
        <source>a video</source>
        <translation>動画</translation>
    </message>
    <message>
        <source>a sound</source>
        <translation>音声</translation>
    </message>
    <message>
        <source>a sound or video</source>
        <translation>音声または動画</translation>
    </message>
    <message>
        <source>a program</source>
        <translation>プログラム</translation>
    </message>
    <message>
        <source>a font</source>
        <translation>フォント</translation>
    </message>
    <message>
        <source>a Windows cursor</source>
        <translation>Windows のカーソル</translation>
    </message>
    <message>
        <source>a camera&apos;s raw picture</source>
        <translation>カメラの RAW 画像</translation>
    </message>
    <message>
        <source>a %1 picture</source>
        <translation>%1 画像</translation>
    </message>
    <message>
        <source>an %1 picture</source>
        <translation>%1 画像</translation>
    </message>
    <message>
        <source>a %1 document</source>
        <translation>%1 文書</translation>
    </message>
    <message>
        <source>an %1 document</source>
        <translation>%1 文書</translation>
    </message>
    <message>
        <source>a %1 archive</source>
        <translation>%1 アーカイブ</translation>
    </message>
    <message>
        <source>an %1 archive</source>
        <translation>%1 アーカイブ</translation>
    </message>
    <message>
        <source>the picture (%1) is %2 and will be enlarged</source>
        <translation>画像 (%1) は%2ため、拡大されます</translation>
    </message>
    <message>
        <source>smaller than the largest icon (%1)</source>
        <translation>最大のアイコン (%1) より小さい</translation>
    </message>
    <message>
        <source>narrower than the widest icon (%1)</source>
        <translation>最も幅の広いアイコン (%1) より幅が狭い</translation>
    </message>
    <message>
        <source>lower than the highest icon (%1)</source>
        <translation>最も高いアイコン (%1) より低い</translation>
    </message>
    <message>
        <source>drawn as large as %1</source>
        <translation>%1 の大きさで描かれる</translation>
    </message>
    <message>
        <source>the picture (%1) is not square and will be stretched</source>
        <translation>画像 (%1) は正方形でないため、引き伸ばされます</translation>
    </message>
    <message>
        <source>the picture (%1) is not square and is drawn whole, with two edges of its icons free</source>
        <translation>画像 (%1) は正方形でないため、全体が描かれ、アイコンの二辺が空きます</translation>
    </message>
    <message>
        <source>the picture (%1) is not square and is cut off at two edges</source>
        <translation>画像 (%1) は正方形でないため、二辺が切り取られます</translation>
    </message>
    <message>
        <source>the picture is empty: all that icons show of it is transparent</source>
        <translation>画像が空です。アイコンに見える部分はすべて透明です</translation>
    </message>
    <message>
        <source>the picture has transparent parts; where icons need a ground it is white</source>
        <translation>画像に透明な部分があります。アイコンに下地が要る所では白になります</translation>
    </message>
    <message>
        <source>icons that fill their square get rounded corners on the background, but stores and systems cut corners themselves</source>
        <translation>正方形を満たすアイコンは背景の上で角が丸くなりますが、ストアやシステムは角を自分で切り取ります</translation>
    </message>
    <message>
        <source>the picture&apos;s corners leave the circle that every launcher shows, and may be cut off in adaptive and maskable icons</source>
        <translation>画像の角が、どのランチャーでも表示される円からはみ出すため、アダプティブアイコンとマスカブルアイコンで切り取られることがあります</translation>
    </message>
    <message>
        <source>%1 is there already, and a build takes only one of the two; remove it first</source>
        <translation>%1 がすでにあり、ビルドはどちらか一つしか使いません。先に取り除いてください</translation>
    </message>
    <message>
        <source>circle</source>
        <translation>円</translation>
    </message>
    <message>
        <source>squircle</source>
        <translation>スクワークル</translation>
    </message>
    <message>
        <source>rounded square</source>
        <translation>角丸の正方形</translation>
    </message>
    <message>
        <source>teardrop</source>
        <translation>しずく形</translation>
    </message>
    <message>
        <source>Android: launcher icons below res/, and Google Play&apos;s picture</source>
        <translation>Android: res/ 以下のランチャーアイコンと Google Play の画像</translation>
    </message>
    <message>
        <source>A Capacitor project: iOS and Android</source>
        <translation>Capacitor プロジェクト: iOS と Android</translation>
    </message>
    <message>
        <source>An Electron project: the build/ folder of electron-builder</source>
        <translation>Electron プロジェクト: electron-builder の build/ フォルダー</translation>
    </message>
    <message>
        <source>An Expo project: the pictures that app.json names</source>
        <translation>Expo プロジェクト: app.json が指す画像</translation>
    </message>
    <message>
        <source>A Flutter project: all platforms</source>
        <translation>Flutter プロジェクト: すべてのプラットフォーム</translation>
    </message>
    <message>
        <source>Linux: the hicolor icon theme</source>
        <translation>Linux: hicolor アイコンテーマ</translation>
    </message>
    <message>
        <source>A React Native project: iOS and Android</source>
        <translation>React Native プロジェクト: iOS と Android</translation>
    </message>
    <message>
        <source>A Tauri 2 project: desktop and mobile</source>
        <translation>Tauri 2 プロジェクト: デスクトップとモバイル</translation>
    </message>
    <message>
        <source>A web site: favicon, touch icon, web app manifest</source>
        <translation>ウェブサイト: ファビコン、タッチアイコン、ウェブアプリマニフェスト</translation>
    </message>
    <message>
        <source>Windows: app.ico, and the pictures of a package</source>
        <translation>Windows: app.ico とパッケージの画像</translation>
    </message>
    <message>
        <source>macOS: an icon set with all sizes</source>
        <translation>macOS: すべてのサイズのアイコンセット</translation>
    </message>
    <message>
        <source>iPhone and iPad: an icon set with one 1024 for all sizes</source>
        <translation>iPhone と iPad: 1024 一つで全サイズを兼ねるアイコンセット</translation>
    </message>
    <message>
        <source>Apple Watch: an icon set with one 1024 for all sizes</source>
        <translation>Apple Watch: 1024 一つで全サイズを兼ねるアイコンセット</translation>
    </message>
    <message>
        <source>Apple Watch: an icon set with all sizes</source>
        <translation>Apple Watch: すべてのサイズのアイコンセット</translation>
    </message>
    <message>
        <source>iPhone, iPad and the App Store: an icon set with all sizes</source>
        <translation>iPhone、iPad、App Store: すべてのサイズのアイコンセット</translation>
    </message>
    <message>
        <source>the picture has several frames; the first is taken</source>
        <translation>画像に複数のフレームがあります。最初のフレームを使います</translation>
    </message>
    <message>
        <source>the picture&apos;s colour profile could not be used; its colours are taken as sRGB</source>
        <translation>画像のカラープロファイルを使えません。色を sRGB として扱います</translation>
    </message>
    <message>
        <source>the picture shows nothing of the files that it links to: %1</source>
        <translation>画像がリンクしているファイルは表示されません: %1</translation>
    </message>
    <message>
        <source>the picture&apos;s foreignObject is left out</source>
        <translation>画像の foreignObject は省かれます</translation>
    </message>
    <message>
        <source>the picture has styles with var(), which are left out</source>
        <translation>画像に var() を使うスタイルがあり、省かれます</translation>
    </message>
    <message>
        <source>the picture&apos;s text is drawn with other fonts, since these are not installed: %1</source>
        <translation>次のフォントがインストールされていないため、画像の文字は別のフォントで描かれます: %1</translation>
    </message>
    <message>
        <source>%1 and %2 more</source>
        <translation>%1 ほか %2 件</translation>
    </message>
    <message>
        <source>the picture takes more than %1 s to draw</source>
        <translation>画像の描画に %1 秒より長くかかります</translation>
    </message>
    <message>
        <source>the picture takes more memory to draw than %1 GiB</source>
        <translation>画像の描画に %1 GiB より多くのメモリが要ります</translation>
    </message>
    <message>
        <source>the SVG document is larger than %1 MiB</source>
        <translation>SVG 文書が %1 MiB を超えています</translation>
    </message>
    <message>
        <source>the SVG document is nested deeper than %1 elements</source>
        <translation>SVG 文書の入れ子が %1 要素より深くなっています</translation>
    </message>
    <message>
        <source>the SVG document declares an external entity</source>
        <translation>SVG 文書が外部エンティティを宣言しています</translation>
    </message>
</context>
<context>
    <name>SuggestedApp</name>
    <message>
        <source>Folds a paper model of any shape that you draw, and prints the sheets to cut out.</source>
        <translation>描いた形を紙の模型に展開し、切り抜き用のシートを印刷します。</translation>
    </message>
    <message>
        <source>A quiet place to write: one page, one font, and a word count when you ask for it.</source>
        <translation>静かに書くための場所。1 ページ、1 書体、語数は必要なときだけ。</translation>
    </message>
    <message>
        <source>Tides and daylight for every harbour of your coast, for the week ahead.</source>
        <translation>近くの海岸のすべての港の潮と日照を、1 週間先まで。</translation>
    </message>
    <message>
        <source>Connects the sound of one program with the input of another, cable by cable.</source>
        <translation>あるアプリの音声を別のアプリの入力へ、ケーブルを 1 本ずつつなぐように。</translation>
    </message>
    <message>
        <source>Keeps your garden&apos;s diary: what was sown, where it stands, and when to pick it.</source>
        <translation>庭の日記。何をまき、どこに植え、いつ収穫するかを記録します。</translation>
    </message>
    <message>
        <source>The time wherever your friends are, on one small globe in the menu bar.</source>
        <translation>友だちのいる場所の時刻を、メニューバーの小さな地球儀に。</translation>
    </message>
    <message>
        <source>Timers with names. Start three at once and know which one is ringing.</source>
        <translation>名前付きタイマー。同時に 3 つ動かしても、どれが鳴っているかわかります。</translation>
    </message>
    <message>
        <source>Lays out labels, badges and name tags from a list, ready for the printer.</source>
        <translation>リストからラベル、バッジ、名札をレイアウトし、すぐに印刷できます。</translation>
    </message>
</context>
</TS>
