#include "features/recorder.h"
#include "platform/stand_platform.h"
#include "video/video_thread.h"

#include <QCoreApplication>

namespace {

class InstalledFfmpeg : public StandPlatform
{
public:
    QString recordCommand(const RecordRequest &request) const override
    {
        RecordRequest found = request;
        found.ffmpeg = QStringLiteral("ffmpeg");
        return StandPlatform::recordCommand(found);
    }
};

} // namespace

// killed_recorder PATH: records the stand's camera like the application does, and never stops by
// itself.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    setPlatform(std::make_unique<InstalledFfmpeg>());
    IVideoTread camera;
    camera.openCamera("0", "640x480", "15");
    Recorder recorder;
    recorder.setSource(&camera);
    recorder.setRecordPath(QCoreApplication::arguments().value(1));
    recorder.StartREC();
    return QCoreApplication::exec();
}
