# Pictor.app: the program, what it looks for in its bundle (ffmpeg beside it, Contents/Resources), its
# icon, and the texts with which the system asks for the camera and the microphone. `cpack` makes the
# disk image from it, with Qt inside when macdeployqt is there.
set(PICTOR_MAC_FFMPEG ${FFMPEG_PROGRAM} CACHE FILEPATH
    "ffmpeg to ship; one that needs no other libraries runs on every Mac")

set(MACOSX_BUNDLE_GUI_IDENTIFIER org.pictor.Pictor)
set_target_properties(pictor PROPERTIES
  MACOSX_BUNDLE ON
  OUTPUT_NAME Pictor
  MACOSX_BUNDLE_INFO_PLIST ${CMAKE_CURRENT_LIST_DIR}/Info.plist.in)

# Resources, and the icon in all its sizes from the drawing.
set(contents $<TARGET_BUNDLE_CONTENT_DIR:pictor>)
set(iconset ${CMAKE_CURRENT_BINARY_DIR}/pictor.iconset)
add_custom_target(pictor_bundle ALL
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Resources
          ${contents}/Resources
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${CMAKE_CURRENT_LIST_DIR}/zh-Hans.lproj
          ${contents}/Resources/zh-Hans.lproj
  COMMAND pictor-iconset ${CMAKE_SOURCE_DIR}/src/resources/icon/pictor.svg ${iconset}
  COMMAND iconutil --convert icns --output ${contents}/Resources/pictor.icns ${iconset}
  DEPENDS pictor pictor_resources pictor-iconset)

install(TARGETS pictor BUNDLE DESTINATION .)
install(CODE "
  set(bundle \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/Pictor.app\")
  file(REMOVE \"\${bundle}/Contents/MacOS/ffmpeg\") # a link into the building machine
  file(REAL_PATH \"${PICTOR_MAC_FFMPEG}\" ffmpeg)
  file(COPY_FILE \"\${ffmpeg}\" \"\${bundle}/Contents/MacOS/ffmpeg\")")

get_target_property(qmake Qt5::qmake IMPORTED_LOCATION)
get_filename_component(qt_programs ${qmake} DIRECTORY)
find_program(MACDEPLOYQT macdeployqt HINTS ${qt_programs})
if(MACDEPLOYQT)
  install(CODE "execute_process(COMMAND ${MACDEPLOYQT}
      \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/Pictor.app\" COMMAND_ERROR_IS_FATAL ANY)")
endif()

set(CPACK_GENERATOR DragNDrop)
set(CPACK_PACKAGE_NAME Pictor)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
include(CPack)
