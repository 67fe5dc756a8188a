#pragma once

#include <cstddef>

/// At least `size` bytes, in large pages where the system offers them; null when there is no
/// memory. Freed with std::free. Any thread.
void *allocateInLargePages(std::size_t size);

/// From now on pixels of large pictures (cv::Mat of 4 MB and more) are kept in large memory pages
/// where the system offers them. An 8-megapixel picture is 6,000 ordinary pages, and the first
/// write to each costs a trap into the system: more time than decoding the picture. Call once, at
/// the start of the program, before there are other threads. Does nothing on other systems than
/// Linux.
void useLargePagesForPictures();
