<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>CameraOffer</name>
    <message>
        <source>Use this camera</source>
        <translation>使用此摄像头</translation>
    </message>
</context>
<context>
    <name>CamerasDialog</name>
    <message>
        <source>Cameras</source>
        <translation>摄像头</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>摄像头</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Used as</source>
        <translation>用途</translation>
    </message>
    <message>
        <source>Enlarged sizes</source>
        <translation>放大尺寸</translation>
    </message>
    <message>
        <source>Main camera</source>
        <translation>主摄像头</translation>
    </message>
    <message>
        <source>Assist camera</source>
        <translation>副摄像头</translation>
    </message>
    <message>
        <source>Not at all</source>
        <translation>不使用</translation>
    </message>
    <message>
        <source>None</source>
        <translation>无</translation>
    </message>
    <message>
        <source>No camera is plugged in.</source>
        <translation>没有连接摄像头。</translation>
    </message>
    <message>
        <source>Choose what each camera is used as.</source>
        <translation>选择每个摄像头的用途。</translation>
    </message>
</context>
<context>
    <name>Failure</name>
    <message>
        <source>no document was found</source>
        <translation>没有找到文档</translation>
    </message>
    <message>
        <source>there is no picture to capture</source>
        <translation>没有可拍摄的画面</translation>
    </message>
    <message>
        <source>the crop rectangle lies outside of the frame</source>
        <translation>裁切框在画面之外</translation>
    </message>
    <message>
        <source>the outline cannot be cut out of the frame</source>
        <translation>无法从画面中裁出该文档</translation>
    </message>
    <message>
        <source>the camera delivers no picture</source>
        <translation>摄像头没有画面</translation>
    </message>
    <message>
        <source>a camera delivers no picture to combine</source>
        <translation>有一个摄像头没有画面，无法合并</translation>
    </message>
    <message>
        <source>the PDF library does not start</source>
        <translation>PDF 组件无法启动</translation>
    </message>
    <message>
        <source>a PDF needs at least one page</source>
        <translation>PDF 至少需要一页</translation>
    </message>
    <message>
        <source>the file was not written completely</source>
        <translation>文件没有写完整</translation>
    </message>
    <message>
        <source>only JPG and PNG pictures can become PDF pages</source>
        <translation>只有 JPG 和 PNG 图片能成为 PDF 页面</translation>
    </message>
    <message>
        <source>damaged JPEG data</source>
        <translation>JPEG 数据已损坏</translation>
    </message>
    <message>
        <source>damaged PNG data</source>
        <translation>PNG 数据已损坏</translation>
    </message>
    <message>
        <source>An earlier file was replaced: %1</source>
        <translation>已替换先前的文件：%1</translation>
    </message>
    <message>
        <source>The code &quot;%1&quot; is no file name, used instead: &quot;%2&quot;</source>
        <translation>条码内容“%1”不能用作文件名，已改用“%2”</translation>
    </message>
    <message>
        <source>a PDF page of %1 pixels is not possible, sides must be %2</source>
        <translation>PDF 页面不能是 %1 像素，边长必须为 %2</translation>
    </message>
    <message>
        <source>the file cannot be written (%1)</source>
        <translation>无法写入文件 (%1)</translation>
    </message>
    <message>
        <source>the file cannot be opened (%1)</source>
        <translation>无法打开文件 (%1)</translation>
    </message>
    <message>
        <source>not enough memory (%1)</source>
        <translation>内存不足 (%1)</translation>
    </message>
    <message>
        <source>damaged JPEG data (%1)</source>
        <translation>JPEG 数据已损坏 (%1)</translation>
    </message>
    <message>
        <source>this kind of JPEG is not supported (%1)</source>
        <translation>不支持这种 JPEG 格式 (%1)</translation>
    </message>
    <message>
        <source>the page is too small or too large (%1)</source>
        <translation>页面太小或太大 (%1)</translation>
    </message>
    <message>
        <source>the PDF library failed (%1)</source>
        <translation>PDF 组件出错 (%1)</translation>
    </message>
    <message>
        <source>cannot encode the page of %1</source>
        <translation>无法生成 %1 的页面</translation>
    </message>
    <message>
        <source>cannot process the picture for %1</source>
        <translation>无法处理 %1 的画面</translation>
    </message>
    <message>
        <source>cannot write %1</source>
        <translation>无法写入 %1</translation>
    </message>
    <message>
        <source>cannot read %1</source>
        <translation>无法读取 %1</translation>
    </message>
    <message>
        <source>cannot encode %1</source>
        <translation>无法编码 %1</translation>
    </message>
    <message>
        <source>document %1: %2</source>
        <translation>第 %1 份文档：%2</translation>
    </message>
    <message>
        <source>capture failed: %1</source>
        <translation>拍照出错：%1</translation>
    </message>
    <message>
        <source>cutting a document failed: %1</source>
        <translation>裁切文档出错：%1</translation>
    </message>
    <message>
        <source>No space left on device</source>
        <translation>磁盘空间已满</translation>
    </message>
    <message>
        <source>Disk quota exceeded</source>
        <translation>超出磁盘配额</translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation>没有权限</translation>
    </message>
    <message>
        <source>Operation not permitted</source>
        <translation>不允许此操作</translation>
    </message>
    <message>
        <source>Read-only file system</source>
        <translation>文件系统为只读</translation>
    </message>
    <message>
        <source>No such file or directory</source>
        <translation>文件或文件夹不存在</translation>
    </message>
    <message>
        <source>Not a directory</source>
        <translation>不是文件夹</translation>
    </message>
    <message>
        <source>Is a directory</source>
        <translation>是文件夹</translation>
    </message>
    <message>
        <source>File name too long</source>
        <translation>文件名太长</translation>
    </message>
    <message>
        <source>File too large</source>
        <translation>文件太大</translation>
    </message>
    <message>
        <source>Input/output error</source>
        <translation>读写出错</translation>
    </message>
    <message>
        <source>there are too few pages</source>
        <translation>页数太少</translation>
    </message>
    <message>
        <source>cannot read the page %1</source>
        <translation>无法读取页面 %1</translation>
    </message>
    <message>
        <source>merging failed: %1</source>
        <translation>合并失败：%1</translation>
    </message>
    <message>
        <source>the picture is too small to hold a document</source>
        <translation>图像太小，容不下文档</translation>
    </message>
    <message>
        <source>the crop rectangle is smaller than 4 x 4 pixels</source>
        <translation>裁切框小于 4 x 4 像素</translation>
    </message>
    <message>
        <source>a JPEG picture has at most 65500 pixels a side</source>
        <translation>JPEG 图像每边最多 65500 像素</translation>
    </message>
    <message>
        <source>not enough memory</source>
        <translation>内存不足</translation>
    </message>
    <message>
        <source>the image library failed</source>
        <translation>图像库出错</translation>
    </message>
    <message>
        <source>No readable code, the name is: %1</source>
        <translation>没有可读的条码，文件名为：%1</translation>
    </message>
    <message>
        <source>Documents of exactly equal size, move one a little; not captured: %1</source>
        <translation>有文档大小完全相同，请稍微移动其中一份；未拍摄的份数：%1</translation>
    </message>
    <message>
        <source>More than eight documents, the smallest were not captured: %1</source>
        <translation>文档超过八份，最小的未拍摄，份数：%1</translation>
    </message>
    <message>
        <source>No sheet was seen clearly enough, the whole picture was saved</source>
        <translation>没有足够清楚地看到纸张，已保存整幅画面</translation>
    </message>
    <message>
        <source>the corners enclose no sheet</source>
        <translation>四个角没有围成纸张</translation>
    </message>
    <message>
        <source>cutting a sheet failed</source>
        <translation>裁切纸张失败</translation>
    </message>
    <message>
        <source>Code not certain: &quot;%1&quot;, the name is: %2</source>
        <translation>条码不确定：“%1”，文件名为：%2</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>not captured</source>
        <translation>未拍摄</translation>
    </message>
    <message>
        <source>The files captured so far. Double click opens one, Del removes the selected ones, Ctrl+A selects all.</source>
        <translation>已拍摄的文件。双击打开，Del 键删除选中的文件，Ctrl+A 全选。</translation>
    </message>
    <message>
        <source>Captured files</source>
        <translation>已拍摄的文件</translation>
    </message>
    <message>
        <source>Delete the selected files (Del)</source>
        <translation>删除选中的文件 (Del)</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Select all files (Ctrl+A)</source>
        <translation>选中全部文件 (Ctrl+A)</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Add files from a folder to the list</source>
        <translation>把文件夹中的文件添加到列表</translation>
    </message>
    <message>
        <source>Add file</source>
        <translation>添加文件</translation>
    </message>
    <message>
        <source>Drag to move the picture, turn the wheel to zoom.</source>
        <translation>拖动可移动画面，滚动滚轮可缩放。</translation>
    </message>
    <message>
        <source>Live picture</source>
        <translation>实时画面</translation>
    </message>
    <message>
        <source>Assist camera picture</source>
        <translation>副摄像头画面</translation>
    </message>
    <message>
        <source>Focus the camera once</source>
        <translation>让摄像头对焦一次</translation>
    </message>
    <message>
        <source>Focus</source>
        <translation>对焦</translation>
    </message>
    <message>
        <source>Turn the picture to the left (Ctrl+L)</source>
        <translation>向左旋转画面 (Ctrl+L)</translation>
    </message>
    <message>
        <source>Rotate left</source>
        <translation>左旋转</translation>
    </message>
    <message>
        <source>Turn the picture to the right (Ctrl+R)</source>
        <translation>向右旋转画面 (Ctrl+R)</translation>
    </message>
    <message>
        <source>Rotate right</source>
        <translation>右旋转</translation>
    </message>
    <message>
        <source>Show the picture larger (Ctrl++)</source>
        <translation>放大显示画面 (Ctrl++)</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>放大</translation>
    </message>
    <message>
        <source>Show the picture smaller (Ctrl+-)</source>
        <translation>缩小显示画面 (Ctrl+-)</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>缩小</translation>
    </message>
    <message>
        <source>Show one camera pixel per screen pixel (Ctrl+T, or Ctrl+1 in Document mode)</source>
        <translation>按原始大小显示，一个画面像素对应一个屏幕像素 (Ctrl+T，文档模式下也可用 Ctrl+1)</translation>
    </message>
    <message>
        <source>True size</source>
        <translation>原始大小</translation>
    </message>
    <message>
        <source>1:1</source>
        <translation>1:1</translation>
    </message>
    <message>
        <source>Fit the whole picture into the window (Ctrl+0)</source>
        <translation>让整个画面适应窗口 (Ctrl+0)</translation>
    </message>
    <message>
        <source>Screen adaption</source>
        <translation>适应屏幕</translation>
    </message>
    <message>
        <source>Format type</source>
        <translation>格式类型</translation>
    </message>
    <message>
        <source>File format of the captures</source>
        <translation>拍摄文件的格式</translation>
    </message>
    <message>
        <source>Crop mode</source>
        <translation>裁切模式</translation>
    </message>
    <message>
        <source>How the document is cut out of the picture</source>
        <translation>如何从画面中裁出文档</translation>
    </message>
    <message>
        <source>Whiten dark margins around the document</source>
        <translation>把文档四周的黑边变为白色</translation>
    </message>
    <message>
        <source>Trimming</source>
        <translation>去黑边</translation>
    </message>
    <message>
        <source>Effect mode</source>
        <translation>效果模式</translation>
    </message>
    <message>
        <source>Colours of the saved picture</source>
        <translation>保存图片的色彩</translation>
    </message>
    <message>
        <source>Name type</source>
        <translation>命名方式</translation>
    </message>
    <message>
        <source>How the captured files are named</source>
        <translation>拍摄文件的命名方式</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>自定义</translation>
    </message>
    <message>
        <source>Own text for the file name or folder</source>
        <translation>自定义的文件名或文件夹名</translation>
    </message>
    <message>
        <source>Custom name</source>
        <translation>自定义名称</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>编号</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>编号</translation>
    </message>
    <message>
        <source>Barcode/QR code</source>
        <translation>条码/二维码</translation>
    </message>
    <message>
        <source>Name the file after a code in the picture</source>
        <translation>用画面中的条码或二维码命名文件</translation>
    </message>
    <message>
        <source>Name the file after the barcode in the picture</source>
        <translation>用画面中的条码命名文件</translation>
    </message>
    <message>
        <source>Barcode</source>
        <translation>条码</translation>
    </message>
    <message>
        <source>Name the file after the QR code in the picture</source>
        <translation>用画面中的二维码命名文件</translation>
    </message>
    <message>
        <source>QR code</source>
        <translation>二维码</translation>
    </message>
    <message>
        <source>Write the selected pages, or all of them, into one PDF file</source>
        <translation>把选中的页面（未选中时为全部页面）写入一个 PDF 文件</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>Progress of the export</source>
        <translation>导出进度</translation>
    </message>
    <message>
        <source>Pages written so far</source>
        <translation>已写入的页数</translation>
    </message>
    <message>
        <source>Stop the export and write nothing</source>
        <translation>停止导出，不写入文件</translation>
    </message>
    <message>
        <source>Cancel the export</source>
        <translation>取消导出</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Open the PDF file written last</source>
        <translation>打开最近导出的 PDF 文件</translation>
    </message>
    <message>
        <source>Open the PDF file</source>
        <translation>打开 PDF 文件</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>打开</translation>
    </message>
    <message>
        <source>The pages of the next PDF file. Drag to change their order, Del removes the selected ones, Ctrl+A selects all.</source>
        <translation>下一个 PDF 文件的页面。拖动可调整顺序，Del 键移除选中的页面，Ctrl+A 全选。</translation>
    </message>
    <message>
        <source>PDF pages</source>
        <translation>PDF 页面</translation>
    </message>
    <message>
        <source>Delete the selected pages (Del)</source>
        <translation>删除选中的页面 (Del)</translation>
    </message>
    <message>
        <source>Select all pages (Ctrl+A)</source>
        <translation>选中全部页面 (Ctrl+A)</translation>
    </message>
    <message>
        <source>Add pictures as pages</source>
        <translation>把图片添加为页面</translation>
    </message>
    <message>
        <source>Video format</source>
        <translation>视频格式</translation>
    </message>
    <message>
        <source>File format of the recordings</source>
        <translation>录像文件的格式</translation>
    </message>
    <message>
        <source>How the recordings are named</source>
        <translation>录像文件的命名方式</translation>
    </message>
    <message>
        <source>Recording name type</source>
        <translation>录像命名方式</translation>
    </message>
    <message>
        <source>Own text for the name or folder of the recording</source>
        <translation>自定义的录像名称或文件夹名</translation>
    </message>
    <message>
        <source>Custom recording name</source>
        <translation>自定义录像名称</translation>
    </message>
    <message>
        <source>Time recorded so far</source>
        <translation>已录制的时间</translation>
    </message>
    <message>
        <source>Start recording</source>
        <translation>开始录像</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>开始</translation>
    </message>
    <message>
        <source>Stop recording and keep the file</source>
        <translation>停止录像并保存文件</translation>
    </message>
    <message>
        <source>Stop recording</source>
        <translation>停止录像</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>设备</translation>
    </message>
    <message>
        <source>The camera in use</source>
        <translation>正在使用的摄像头</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>分辨率</translation>
    </message>
    <message>
        <source>Size of the captured picture in pixels</source>
        <translation>拍摄图片的像素大小</translation>
    </message>
    <message>
        <source>Jpg quality</source>
        <translation>JPG 质量</translation>
    </message>
    <message>
        <source>Quality of JPG files in percent: higher means larger files</source>
        <translation>JPG 文件的质量（百分比）：越高文件越大</translation>
    </message>
    <message>
        <source>Save path</source>
        <translation>保存路径</translation>
    </message>
    <message>
        <source>Folder for the captured files</source>
        <translation>保存拍摄文件的文件夹</translation>
    </message>
    <message>
        <source>Choose the folder for the captured files</source>
        <translation>选择保存拍摄文件的文件夹</translation>
    </message>
    <message>
        <source>Select the save path</source>
        <translation>选择保存路径</translation>
    </message>
    <message>
        <source>Show the folder of the captured files</source>
        <translation>显示保存拍摄文件的文件夹</translation>
    </message>
    <message>
        <source>Open the save path</source>
        <translation>打开保存路径</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>语言</translation>
    </message>
    <message>
        <source>Language of the window</source>
        <translation>界面语言</translation>
    </message>
    <message>
        <source>Assist cam</source>
        <translation>副摄像头</translation>
    </message>
    <message>
        <source>Show the assist camera over the preview</source>
        <translation>在预览画面上显示副摄像头</translation>
    </message>
    <message>
        <source>Open the assist camera</source>
        <translation>打开副摄像头</translation>
    </message>
    <message>
        <source>Switch the assist camera off</source>
        <translation>关闭副摄像头</translation>
    </message>
    <message>
        <source>Close the assist camera</source>
        <translation>关闭副摄像头</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Paste the assist picture into every capture</source>
        <translation>每次拍照都合并副摄像头画面</translation>
    </message>
    <message>
        <source>Camera image merging</source>
        <translation>双摄画面合并</translation>
    </message>
    <message>
        <source>Merging position</source>
        <translation>合并位置</translation>
    </message>
    <message>
        <source>Where the assist picture is pasted</source>
        <translation>副摄像头画面的合并位置</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>Size of the assist picture</source>
        <translation>副摄像头画面的大小</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>页数</translation>
    </message>
    <message>
        <source>Merge two pages into one picture</source>
        <translation>把两页合并成一张图片</translation>
    </message>
    <message>
        <source>2</source>
        <translation>2</translation>
    </message>
    <message>
        <source>Merge three pages into one picture</source>
        <translation>把三页合并成一张图片</translation>
    </message>
    <message>
        <source>3</source>
        <translation>3</translation>
    </message>
    <message>
        <source>Merge four pages into one picture</source>
        <translation>把四页合并成一张图片</translation>
    </message>
    <message>
        <source>4</source>
        <translation>4</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>方向</translation>
    </message>
    <message>
        <source>One page under the other</source>
        <translation>各页上下排列</translation>
    </message>
    <message>
        <source>Vertical</source>
        <translation>纵向</translation>
    </message>
    <message>
        <source>The pages side by side</source>
        <translation>各页左右排列</translation>
    </message>
    <message>
        <source>Horizontal</source>
        <translation>横向</translation>
    </message>
    <message>
        <source>Captured pages</source>
        <translation>已拍摄的页面</translation>
    </message>
    <message>
        <source>The pages captured for the merged picture</source>
        <translation>为合并图片拍摄的页面</translation>
    </message>
    <message>
        <source>Page 1</source>
        <translation>第 1 页</translation>
    </message>
    <message>
        <source>Page 1 of the merged picture</source>
        <translation>合并图片的第 1 页</translation>
    </message>
    <message>
        <source>Page 2</source>
        <translation>第 2 页</translation>
    </message>
    <message>
        <source>Page 2 of the merged picture</source>
        <translation>合并图片的第 2 页</translation>
    </message>
    <message>
        <source>Page 3</source>
        <translation>第 3 页</translation>
    </message>
    <message>
        <source>Page 3 of the merged picture</source>
        <translation>合并图片的第 3 页</translation>
    </message>
    <message>
        <source>Page 4</source>
        <translation>第 4 页</translation>
    </message>
    <message>
        <source>Page 4 of the merged picture</source>
        <translation>合并图片的第 4 页</translation>
    </message>
    <message>
        <source>Capture single documents (Ctrl+1)</source>
        <translation>拍摄单份文档 (Ctrl+1)</translation>
    </message>
    <message>
        <source>Document</source>
        <translation>文档</translation>
    </message>
    <message>
        <source>Collect pages for one PDF file (Ctrl+2)</source>
        <translation>收集页面，生成一个 PDF 文件 (Ctrl+2)</translation>
    </message>
    <message>
        <source>Multi-pdf</source>
        <translation>多页PDF</translation>
    </message>
    <message>
        <source>Merge two to four pages into one picture (Ctrl+3)</source>
        <translation>把两到四页合并成一张图片 (Ctrl+3)</translation>
    </message>
    <message>
        <source>Merge image</source>
        <translation>图像合并</translation>
    </message>
    <message>
        <source>Record a video (Ctrl+4)</source>
        <translation>录制视频 (Ctrl+4)</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>录像</translation>
    </message>
    <message>
        <source>Show or hide the panel of the assist camera (Ctrl+5)</source>
        <translation>显示或隐藏副摄像头面板 (Ctrl+5)</translation>
    </message>
    <message>
        <source>Show or hide the settings (Ctrl+6)</source>
        <translation>显示或隐藏设置面板 (Ctrl+6)</translation>
    </message>
    <message>
        <source>Capture every new page by itself as the pages are turned</source>
        <translation>翻页时自动拍摄每一个新页面</translation>
    </message>
    <message>
        <source>Automatic capture</source>
        <translation>自动连拍</translation>
    </message>
    <message>
        <source>Start captrue</source>
        <translation>开始连拍</translation>
    </message>
    <message>
        <source>Capture the document (Space or Return)</source>
        <translation>拍摄文档（空格键或回车键）</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>拍照</translation>
    </message>
    <message>
        <source>Captrue</source>
        <translation>拍照</translation>
    </message>
    <message>
        <source>No folder is chosen for the captures. Choose one under Setting, Save path.</source>
        <translation>还没有选择保存文件夹。请在“设置”的“保存路径”中选择。</translation>
    </message>
    <message>
        <source>The name &quot;%1&quot; cannot be used: a file name cannot contain &quot;%2&quot;.</source>
        <translation>名称“%1”不能使用：文件名不能包含“%2”。</translation>
    </message>
    <message>
        <source>The name cannot be used: it contains an invisible control character.</source>
        <translation>此名称不能使用：其中含有不可见的控制字符。</translation>
    </message>
    <message>
        <source>The name &quot;%1&quot; cannot be used: files whose name begins with a dot are hidden.</source>
        <translation>名称“%1”不能使用：以点开头的文件会被隐藏。</translation>
    </message>
    <message>
        <source>The name &quot;%1...&quot; is too long for a file name.</source>
        <translation>名称“%1…”太长，不能用作文件名。</translation>
    </message>
    <message numerus="yes">
        <source>Move %n captured file(s) to the trash?</source>
        <translation>
            <numerusform>要把 %n 个拍摄的文件移到回收站吗？</numerusform>
        </translation>
    </message>
    <message>
        <source>Image list</source>
        <translation>图像列表</translation>
    </message>
    <message>
        <source>&quot;%1&quot; does not exist (any more).</source>
        <translation>“%1”不存在或已被删除。</translation>
    </message>
    <message>
        <source>No program could be found to open &quot;%1&quot;.</source>
        <translation>找不到能打开“%1”的程序。</translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) could not be moved to the trash and stay in the list: </source>
        <translation>
            <numerusform>%n 个文件无法移到回收站，仍保留在列表中：</numerusform>
        </translation>
    </message>
    <message>
        <source>File missing</source>
        <translation>文件已丢失</translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) cannot be shown in this list: </source>
        <translation>
            <numerusform>%n 个文件不能显示在此列表中：</numerusform>
        </translation>
    </message>
    <message>
        <source>Free</source>
        <translation>自由</translation>
    </message>
    <message>
        <source>Upper left</source>
        <translation>左上</translation>
    </message>
    <message>
        <source>Upper right</source>
        <translation>右上</translation>
    </message>
    <message>
        <source>Middle</source>
        <translation>中间</translation>
    </message>
    <message>
        <source>Bottom left</source>
        <translation>左下</translation>
    </message>
    <message>
        <source>Bottom right</source>
        <translation>右下</translation>
    </message>
    <message>
        <source>No camera!</source>
        <translation>没有摄像头！</translation>
    </message>
    <message>
        <source>Connecting to the camera...</source>
        <translation>正在连接摄像头…</translation>
    </message>
    <message>
        <source>The camera could not be opened.</source>
        <translation>无法打开摄像头。</translation>
    </message>
    <message>
        <source>The camera could not be opened. Another program may be using it: close that program, or plug the camera in again.</source>
        <translation>摄像头可能正被其他程序使用：请关闭该程序，或重新插拔摄像头。</translation>
    </message>
    <message>
        <source>The camera offers no usable resolution.</source>
        <translation>摄像头没有可用的分辨率。</translation>
    </message>
    <message>
        <source>This camera cannot be told to focus</source>
        <translation>此摄像头不支持对焦指令</translation>
    </message>
    <message>
        <source>The camera did not focus.</source>
        <translation>摄像头没有对焦成功。</translation>
    </message>
    <message>
        <source>Not captured: no camera is open.</source>
        <translation>未拍照：没有打开的摄像头。</translation>
    </message>
    <message>
        <source>Not captured: %1</source>
        <translation>未拍照：%1</translation>
    </message>
    <message>
        <source>Not captured.</source>
        <translation>未拍照。</translation>
    </message>
    <message>
        <source>Connect the document camera to a USB port and switch it on: it is found by itself.
Without a camera, start the virtual stand (pictor-stand).</source>
        <translation>请把高拍仪接到 USB 接口并打开电源，程序会自动识别。
没有高拍仪时，可以启动虚拟拍摄台 (pictor-stand)。</translation>
    </message>
    <message>
        <source>Close other programs that use it, or plug it in again. The next try follows by itself.</source>
        <translation>请关闭正在使用它的其他程序，或重新插拔。程序会自动重试。</translation>
    </message>
    <message>
        <source>No crop</source>
        <translation>不裁切</translation>
    </message>
    <message>
        <source>Automatic crop</source>
        <translation>自动裁切</translation>
    </message>
    <message>
        <source>Manual crop</source>
        <translation>手动裁切</translation>
    </message>
    <message>
        <source>Multi-graph crop</source>
        <translation>多图裁切</translation>
    </message>
    <message>
        <source>Original color</source>
        <translation>原生色彩</translation>
    </message>
    <message>
        <source>Gray</source>
        <translation>灰度</translation>
    </message>
    <message>
        <source>Binarization</source>
        <translation>黑白</translation>
    </message>
    <message>
        <source>Document optimization</source>
        <translation>文档优化</translation>
    </message>
    <message>
        <source>Date and time</source>
        <translation>时间</translation>
    </message>
    <message>
        <source>Name as folder</source>
        <translation>以文件夹命名</translation>
    </message>
    <message>
        <source>Barcode number</source>
        <translation>条码二维码</translation>
    </message>
    <message>
        <source>Open a folder</source>
        <translation>打开所在文件夹</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>全选</translation>
    </message>
    <message>
        <source>Export PDF</source>
        <translation>导出 PDF</translation>
    </message>
    <message>
        <source>Insert photo</source>
        <translation>插入图片</translation>
    </message>
    <message>
        <source>Shift up</source>
        <translation>上移</translation>
    </message>
    <message>
        <source>Shift down</source>
        <translation>下移</translation>
    </message>
    <message>
        <source>Not added, since they are no pictures: %1</source>
        <translation>以下文件不是图片，未添加：%1</translation>
    </message>
    <message>
        <source>Pictures (*.jpg *.jpeg *.png *.bmp *.tif *.tiff)</source>
        <translation>图片 (*.jpg *.jpeg *.png *.bmp *.tif *.tiff)</translation>
    </message>
    <message>
        <source>%1 pages are captured already. Choose more pages to go on.</source>
        <translation>已经拍摄了 %1 页。要继续，请选择更多页数。</translation>
    </message>
    <message>
        <source>Stop captrue</source>
        <translation>停止连拍</translation>
    </message>
    <message>
        <source>English</source>
        <translation>English</translation>
    </message>
    <message>
        <source>中文</source>
        <translation>中文</translation>
    </message>
    <message>
        <source>There are no pages to export.</source>
        <translation>没有可导出的页面。</translation>
    </message>
    <message>
        <source>Not exported, since these pages are missing: %1</source>
        <translation>未导出，以下页面的文件不存在：%1</translation>
    </message>
    <message>
        <source>PDF files (*.pdf)</source>
        <translation>PDF 文件 (*.pdf)</translation>
    </message>
    <message>
        <source>Export PDF failed!</source>
        <translation>导出 PDF 失败！</translation>
    </message>
    <message>
        <source>Drag the frame around the document: %1 x %2 pixels</source>
        <translation>拖动裁切框围住文档：%1 x %2 像素</translation>
    </message>
    <message>
        <source>Recording failed!</source>
        <translation>录像失败！</translation>
    </message>
    <message>
        <source>Drag the frame or its handles. Arrow keys move it by one pixel, Shift and arrow keys change its size.</source>
        <translation>拖动裁切框或其控制点。方向键每次移动一个像素，Shift 加方向键改变大小。</translation>
    </message>
    <message>
        <source>%1, %2 fps</source>
        <translation>%1，%2 帧/秒</translation>
    </message>
    <message>
        <source>Zoom %1 %</source>
        <translation>缩放 %1 %</translation>
    </message>
    <message>
        <source>%1 free</source>
        <translation>可用空间 %1</translation>
    </message>
    <message>
        <source>These pages are missing:</source>
        <translation>以下页面的文件不存在：</translation>
    </message>
    <message>
        <source>There is no page to export.</source>
        <translation>没有可导出的页面。</translation>
    </message>
    <message>
        <source>%1 is not a picture that can be read.</source>
        <translation>%1 不是可读取的图片。</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>帮助</translation>
    </message>
    <message>
        <source>Read how the program is used (F1)</source>
        <translation>阅读程序的使用说明 (F1)</translation>
    </message>
    <message>
        <source>User guide</source>
        <translation>使用说明</translation>
    </message>
    <message>
        <source>Versions of the program and its libraries, places of its files</source>
        <translation>程序和组件的版本、文件的位置</translation>
    </message>
    <message>
        <source>About the program</source>
        <translation>关于本程序</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>Captures documents with a USB document camera.</source>
        <translation>用 USB 高拍仪拍摄文档。</translation>
    </message>
    <message>
        <source>Libraries</source>
        <translation>组件</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>日志</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>设置文件</translation>
    </message>
    <message>
        <source>Chapters of the user guide</source>
        <translation>使用说明的章节</translation>
    </message>
    <message>
        <source>The user guide was not found: %1</source>
        <translation>找不到使用说明：%1</translation>
    </message>
    <message>
        <source>The pages of the next PDF appear here.
Press Captrue to add one, or drop pictures in.</source>
        <translation>PDF 的页面显示在这里。
按“拍照”添加，
或拖入图片。</translation>
    </message>
    <message>
        <source>Captured files appear here.
Press Captrue or the space bar to take the first one.</source>
        <translation>拍摄的文件显示在这里。
请按“拍照”或空格键。</translation>
    </message>
    <message>
        <source>About Pictor</source>
        <translation>关于 Pictor</translation>
    </message>
    <message>
        <source>Plug it in again, or choose another camera under Setting, Device.</source>
        <translation>请重新插拔，或在“设置”的“设备”中选择其他摄像头。</translation>
    </message>
    <message>
        <source>No folder is chosen for the recordings. Choose one under Setting, Save path.</source>
        <translation>还没有选择录像的保存文件夹。请在“设置”的“保存路径”中选择。</translation>
    </message>
    <message>
        <source>The camera does not tell its resolutions.</source>
        <translation>无法获知摄像头支持的分辨率。</translation>
    </message>
    <message>
        <source>Saved, but not enlarged: %1</source>
        <translation>已保存，但未能放大：%1</translation>
    </message>
    <message>
        <source>%1 of %2 pages</source>
        <translation>%2 页中的 %1 页</translation>
    </message>
    <message>
        <source>%1 is written, %2.</source>
        <translation>%1 已导出，%2。</translation>
    </message>
    <message>
        <source>Every page gets the same name and replaces the one before. Choose another naming to keep them all.</source>
        <translation>每一页的文件名都相同，后一页会替换前一页。要保留全部页面，请选择其他命名方式。</translation>
    </message>
    <message>
        <source>A page was not captured.</source>
        <translation>有一页没有拍到。</translation>
    </message>
    <message>
        <source>Check the pages from here on.</source>
        <translation>请检查此后的各页。</translation>
    </message>
    <message>
        <source>Wait for the next page...</source>
        <translation>等待翻页...</translation>
    </message>
    <message>
        <source>The assist picture was not captured: %1</source>
        <translation>副摄像头的图像未拍摄：%1</translation>
    </message>
    <message>
        <source>Not all documents were captured: %1</source>
        <translation>有文档未能拍摄：%1</translation>
    </message>
    <message>
        <source>Only the largest document is merged. The others are in the list.</source>
        <translation>只合并最大的文档，其余文档已加入列表。</translation>
    </message>
    <message>
        <source>The pages were not merged: %1
They are kept in %2.</source>
        <translation>页面未能合并：%1
这些页面保留在 %2。</translation>
    </message>
    <message>
        <source>A PDF is being written. Wait for it, or cancel it.</source>
        <translation>正在导出 PDF。请等待完成，或取消导出。</translation>
    </message>
    <message>
        <source>A PDF is still being written. Close and give it up?</source>
        <translation>PDF 尚未导出完成。要放弃导出并关闭吗？</translation>
    </message>
    <message>
        <source>%1 cannot be converted: there is no room in %2.</source>
        <translation>无法转换 %1：%2 的空间不足。</translation>
    </message>
    <message>
        <source>Recorded time: %1</source>
        <translation>已录时间：%1</translation>
    </message>
    <message>
        <source>Document camera</source>
        <translation>高拍仪</translation>
    </message>
    <message>
        <source>Space or Return captures the document.</source>
        <translation>按空格键或回车键拍照。</translation>
    </message>
    <message>
        <source>The disk is full.</source>
        <translation>磁盘已满。</translation>
    </message>
    <message>
        <source>The ffmpeg program is missing or cannot be started.</source>
        <translation>找不到 ffmpeg 程序，或者它无法启动。</translation>
    </message>
    <message>
        <source>The camera is not connected any more.</source>
        <translation>摄像头已断开。</translation>
    </message>
    <message>
        <source>The camera sent pictures that cannot be read.</source>
        <translation>摄像头发送的画面无法读取。</translation>
    </message>
    <message>
        <source>A folder or a protected file has the name of the recording.</source>
        <translation>录像的名称已被一个文件夹或受保护的文件占用。</translation>
    </message>
    <message>
        <source>The recording stopped at once.</source>
        <translation>录像一开始就停止了。</translation>
    </message>
    <message>
        <source>The recording ended by itself.</source>
        <translation>录像自行结束了。</translation>
    </message>
    <message>
        <source>The log says more.</source>
        <translation>详情请看日志。</translation>
    </message>
    <message>
        <source>What was recorded so far is kept.</source>
        <translation>已录制的部分已保留。</translation>
    </message>
    <message>
        <source>Nothing was recorded.</source>
        <translation>没有录到任何内容。</translation>
    </message>
    <message>
        <source>The recording goes on.</source>
        <translation>录像仍在继续。</translation>
    </message>
    <message>
        <source>Recording, %1</source>
        <translation>正在录像，%1</translation>
    </message>
    <message>
        <source>Smart crop</source>
        <translation>智能裁切</translation>
    </message>
    <message>
        <source>Sheets at an angle or on a light desk? Try &quot;Smart crop&quot;.</source>
        <translation>纸张是斜的，或者放在浅色桌面上？试试“智能裁切”。</translation>
    </message>
    <message>
        <source>Choose which camera is used, also one that the program does not know</source>
        <translation>选择使用哪个摄像头，包括程序不认识的摄像头</translation>
    </message>
    <message>
        <source>Cameras</source>
        <translation>摄像头</translation>
    </message>
    <message>
        <source>Cameras...</source>
        <translation>摄像头...</translation>
    </message>
    <message>
        <source>You are not permitted to use %1. Have your user added to the group &quot;video&quot; (sudo usermod -aG video NAME), then log in again.</source>
        <translation>您没有使用 %1 的权限。请将您的用户加入 &quot;video&quot; 组（sudo usermod -aG video 用户名），然后重新登录。</translation>
    </message>
    <message>
        <source>Another program is using it. Close that program; the next try follows by itself.</source>
        <translation>另一个程序正在使用它。请关闭该程序，随后会自动重试。</translation>
    </message>
    <message>
        <source>The program &quot;%1&quot; is using it. Close that program; the next try follows by itself.</source>
        <translation>程序“%1”正在使用它。请关闭该程序，随后会自动重试。</translation>
    </message>
    <message>
        <source>The camera is connected, but sends no picture.</source>
        <translation>摄像头已连接，但没有传来画面。</translation>
    </message>
    <message>
        <source>Switch it on or plug it in again: its picture comes back by itself.</source>
        <translation>请打开它的电源或重新插拔：画面会自动恢复。</translation>
    </message>
    <message>
        <source>A hand in it?</source>
        <translation>有手？</translation>
    </message>
    <message>
        <source>Not captured</source>
        <translation>未拍摄</translation>
    </message>
    <message>
        <source>Not captured, %1</source>
        <translation>未拍摄，%1</translation>
    </message>
    <message>
        <source>%1: a hand may be in the picture. Look at it.</source>
        <translation>%1：画面中可能有手，请查看。</translation>
    </message>
    <message>
        <source>The camera delivers no picture.</source>
        <translation>摄像头没有画面。</translation>
    </message>
    <message>
        <source>The settings could not all be read. Those that could not are at their defaults.</source>
        <translation>部分设置无法读取，已恢复为默认值。</translation>
    </message>
    <message>
        <source>%1 cannot be replaced, the next number is taken.</source>
        <translation>%1 无法替换，已使用下一个编号。</translation>
    </message>
    <message>
        <source>The earlier %1 is in the trash.</source>
        <translation>原来的 %1 已放入回收站。</translation>
    </message>
    <message>
        <source>The earlier %1 is now %2.</source>
        <translation>原来的 %1 已改名为 %2。</translation>
    </message>
    <message>
        <source>Pictor is running already, but does not answer. End it first.</source>
        <translation>Pictor 已在运行，但没有响应。请先结束它。</translation>
    </message>
    <message>
        <source>Pictor is running already on %1. Settings changed here are not kept.</source>
        <translation>Pictor 已在 %1 上运行。此处更改的设置不会保存。</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>Add the pages to the list</source>
        <translation>把这些页面加入列表</translation>
    </message>
    <message>
        <source>The pages of a merge that was not finished are in the list.</source>
        <translation>上次未完成合并的页面已在列表中。</translation>
    </message>
    <message>
        <source>Not while the assist camera is open</source>
        <translation>副摄像头打开时不能使用</translation>
    </message>
    <message>
        <source>Brightness, flicker of the light, exposure and focus of the camera</source>
        <translation>摄像头的亮度、灯光频闪、曝光和对焦</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>画面</translation>
    </message>
    <message>
        <source>Picture...</source>
        <translation>画面...</translation>
    </message>
    <message>
        <source>Type a number, 0 to 100000, to go on from it; after a capture, the last one taken</source>
        <translation>输入 0 到 100000 之间的编号即从它继续；拍照后显示最近使用的编号</translation>
    </message>
    <message>
        <source>%1 does not exist (any more).</source>
        <translation>%1 已不存在。</translation>
    </message>
    <message>
        <source>No program could be found to open %1.</source>
        <translation>找不到可以打开 %1 的程序。</translation>
    </message>
    <message>
        <source>Export: %1</source>
        <translation>导出：%1</translation>
    </message>
    <message>
        <source>Being written...</source>
        <translation>正在写入…</translation>
    </message>
    <message>
        <source>Not captured: the program is about to end.</source>
        <translation>未拍摄：程序即将结束。</translation>
    </message>
    <message>
        <source>Not captured: the captures before are still being written. Wait a moment.</source>
        <translation>未拍摄：之前拍摄的图像仍在写入，请稍候。</translation>
    </message>
    <message numerus="yes">
        <source>%n capture(s) are still being written. The program ends when they are done.</source>
        <translation>
            <numerusform>还有 %n 个拍摄正在写入，完成后程序将结束。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n capture(s) are still being written. Close and give them up?</source>
        <translation>
            <numerusform>还有 %n 个拍摄正在写入，是否关闭并放弃？</numerusform>
        </translation>
    </message>
    <message>
        <source>A page more than the merge takes is in the list.</source>
        <translation>多出的一页未合并，已放入列表。</translation>
    </message>
    <message>
        <source>%1, being written</source>
        <translation>%1，正在写入</translation>
    </message>
</context>
<context>
    <name>PictureDialog</name>
    <message>
        <source>Brightness</source>
        <translation>亮度</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>对比度</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>饱和度</translation>
    </message>
    <message>
        <source>Sharpness</source>
        <translation>锐度</translation>
    </message>
    <message>
        <source>Flicker of lamps</source>
        <translation>灯光频闪</translation>
    </message>
    <message>
        <source>Automatic exposure</source>
        <translation>自动曝光</translation>
    </message>
    <message>
        <source>Exposure</source>
        <translation>曝光</translation>
    </message>
    <message>
        <source>Automatic white balance</source>
        <translation>自动白平衡</translation>
    </message>
    <message>
        <source>White balance</source>
        <translation>白平衡</translation>
    </message>
    <message>
        <source>Automatic focus</source>
        <translation>自动对焦</translation>
    </message>
    <message>
        <source>Focus</source>
        <translation>对焦</translation>
    </message>
    <message>
        <source>Not corrected</source>
        <translation>不校正</translation>
    </message>
    <message>
        <source>50 Hz (Europe, China)</source>
        <translation>50 Hz（中国、欧洲）</translation>
    </message>
    <message>
        <source>60 Hz (America)</source>
        <translation>60 Hz（美洲）</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>自动</translation>
    </message>
    <message>
        <source>Defaults</source>
        <translation>恢复默认值</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>画面</translation>
    </message>
    <message>
        <source>This camera lets nothing be chosen.</source>
        <translation>此摄像头没有可以调节的项目。</translation>
    </message>
</context>
</TS>
