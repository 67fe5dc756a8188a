#pragma once

/// From now on every large block of memory goes back to the system when it is freed. By itself
/// glibc raises the size from which it does so to that of the largest block freed (mallopt(3)),
/// which after the first frame is nearly all of them: each time a camera is opened again the holes
/// they leave are filled otherwise, and the program grows. Call once, at the start of the program.
/// Does nothing with other C libraries.
void giveLargeBlocksBack();
