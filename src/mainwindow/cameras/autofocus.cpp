#include "mainwindow/cameras/autofocus.h"

#include "platform/platform.h"

#include <memory>

Autofocus::~Autofocus()
{
    if (m_run)
        m_run->wait();
}

void Autofocus::start(int camera)
{
    if (m_run)
        return;
    const auto isDone = std::make_shared<bool>(false);
    m_run = QThread::create([=] { *isDone = platform().focus(camera); });
    m_run->setParent(this);
    connect(m_run, &QThread::finished, this, [this, isDone] {
        m_run->deleteLater();
        m_run.clear();
        if (!*isDone)
            emit failed();
    });
    m_run->start();
}
