#pragma once

#include "app/state.h"

/// Marks the time in which the program itself fills the device or resolution box.
class FillingBox
{
public:
    FillingBox() { isCanDo = false; }
    ~FillingBox() { isCanDo = m_before; }
    FillingBox(const FillingBox &) = delete;
    FillingBox &operator=(const FillingBox &) = delete;

private:
    const bool m_before = isCanDo;
};
