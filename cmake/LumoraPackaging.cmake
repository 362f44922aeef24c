# The Debian package of the OBS plug-in: what `cmake --install` puts in place
# (the module and its data folder, see module/CMakeLists.txt), staged under /usr
# where Debian's OBS Studio looks for plug-ins.
#   cpack --config build-ci/CPackConfig.cmake -B build-ci/package
# or scripts/package-deb.sh, which builds the module first.
#
# Named obs-lumora as Debian names OBS Studio's plug-ins (obs-move-transition,
# obs-gradient-source, ...), so it sorts beside them and beside obs-studio.
if(NOT (CMAKE_SYSTEM_NAME STREQUAL "Linux" AND TARGET lumora))
    return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME obs-lumora)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Lumora team")
set(CPACK_PACKAGE_CONTACT "Lumora team")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# Debug information stays in the build tree; the package ships stripped binaries.
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "microphone cleaning, voice effects and voice diagnosis for OBS Studio")
# The long description; CPack puts the summary above it as the synopsis.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Adds one audio filter to OBS Studio, shown as Tindra. It runs a microphone
through a cleaning chain (gain, spectral noise reduction, gate, equaliser,
compressor, limiter) and a voice-effects chain (pitch and formant shift,
modulation, radio, delay, reverb), with a safety limiter after both. Its
dialog diagnoses the raw voice in five short guided takes, explains the
verdicts in Japanese and English and recommends settings; presets are kept
and voices switched with the arrow keys.")

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Lumora team")
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The libraries the module links (libobs, Qt 5, SoundTouch, libebur128) come
# from dpkg-shlibdeps; OBS Studio itself, which loads the module, is named here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "obs-studio (>= 29)")

# CPack installs what is built and builds nothing: build the module first
# (scripts/package-deb.sh does).
include(CPack)
