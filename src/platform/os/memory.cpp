#include "platform/os/memory.h"

#include <QByteArray>

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

void giveLargeBlocksBack()
{
#ifdef __GLIBC__
    constexpr int large = 1 << 20;
    ::mallopt(M_MMAP_THRESHOLD, large);
#endif
}

void leaveOutOpenGl()
{
    constexpr const char *integration = "QT_XCB_GL_INTEGRATION";
    if (!qEnvironmentVariableIsSet(integration))
        qputenv(integration, QByteArrayLiteral("none"));
}
