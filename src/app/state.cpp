#include "app/state.h"

int colorMode = 0;
std::atomic<int> cutMode{0};
int fNameType = 0;
int fImgformat = 0;
QString fRecformat = QStringLiteral("mov");
int ImgQuality = 80;
int sLanguage = 0;
QString SaveFolderPath;
bool isLoadFormFinish = false;
bool isCanDo = true;
int currentFunMode = 0;
bool isSettingFlag = false;
bool isAssistcamFlag = false;
int SceneShowWidth = 800;
int SceneShowHeight = 600;
bool isPaintMouseDown = false;
bool ismove = false;
std::atomic<bool> isoutlog{true};
int fNumIndex = 0;
int BarQrCodeType = 0;
bool isDelBlackedge = false;
bool isRecogBarQrcode = true;
std::array<int, kCamdeviceMax> Camdevice{};
QStringList CamdeviceName;
int myDevCount = 0;
int allCameraCount = 0;
int camid = -1;
int op_width = 0;
int op_height = 0;
std::atomic<bool> isOpenCamera{false};
std::atomic<bool> isOpenCameraTwo{false};
bool isProcessCmd = true;
bool is500wTo800w, is800wTo1000w, is800wTo1200w, is800wTo1300w, is1100wTo1300w, is1100wTo1400w,
    is1100wTo1500w, is1100wTo1600w, is1100wTo1800w, is1300wTo1600w, is1300wTo1800w, is1300wTo2200w,
    is1600wTo1800w, is1600wTo2000w, is1600wTo2100w;
bool isPhoto500wTo800w, isPhoto800wTo1200w, isPhoto800wTo1300w, isPhoto1100wTo1300w,
    isPhoto1100wTo1400w, isPhoto1100wTo1500w, isPhoto1100wTo1600w, isPhoto1100wTo1800w,
    isPhoto1300wTo1600w, isPhoto1300wTo1800w, isPhoto1300wTo2200w, isPhoto1600wTo1800w,
    isPhoto1600wTo2000w, isPhoto1600wTo2100w;
bool isOpenAssistCam = false;
bool isCamCombine = false;
int camCombinePos = 0;
bool isdown = false;
int mergePages = 2;
int mergeDir = 0;
int mergeCount = 0;
std::vector<QString> combinePathList;
std::atomic<bool> isWiseCaptrue{false};
int wiseCount = 0;
bool isTimerDoing = false;
bool isRecord = false;
int recordNameType = 1;
