# Every outside library, found once. What a fresh machine needs for them stands in
# packaging/debian-packages.txt.
find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Multimedia SerialPort Network Svg
                                          LinguistTools Test)
find_package(OpenCV 4.5 REQUIRED COMPONENTS core imgproc imgcodecs)
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

pkg_check_modules(FFMPEG REQUIRED IMPORTED_TARGET libavformat libavcodec libavutil libswscale)
pkg_check_modules(AVDEVICE REQUIRED IMPORTED_TARGET libavdevice) # on Linux loaded when needed
pkg_check_modules(TURBOJPEG REQUIRED IMPORTED_TARGET libturbojpeg)
pkg_check_modules(JPEG REQUIRED IMPORTED_TARGET libjpeg>=2.1)
pkg_check_modules(ZBAR REQUIRED IMPORTED_TARGET zbar)
pkg_check_modules(ZXING REQUIRED IMPORTED_TARGET zxing>=1.4)

# libharu ships no .pc file on every system.
find_path(HPDF_INCLUDE_DIR hpdf.h REQUIRED)
find_library(HPDF_LIBRARY hpdf REQUIRED)
add_library(hpdf::hpdf UNKNOWN IMPORTED)
set_target_properties(hpdf::hpdf PROPERTIES IMPORTED_LOCATION ${HPDF_LIBRARY}
                                            INTERFACE_INCLUDE_DIRECTORIES ${HPDF_INCLUDE_DIR})
