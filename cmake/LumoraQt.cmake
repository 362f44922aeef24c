# Picks the Qt major version of the OBS we build for. A plug-in's Qt must be the
# host's own: Debian's OBS 29 links Qt 5, the Windows OBS 31 we ship for links Qt 6.
if(LUMORA_QT STREQUAL "AUTO")
    set(_lumora_qt 6)
    if(UNIX AND NOT APPLE)
        find_program(OBS_EXECUTABLE obs)
        if(OBS_EXECUTABLE)
            execute_process(COMMAND ldd ${OBS_EXECUTABLE} OUTPUT_VARIABLE _obs_ldd
                ERROR_QUIET RESULT_VARIABLE _obs_ldd_rc)
            if(_obs_ldd MATCHES "libQt5Core")
                set(_lumora_qt 5)
            endif()
        endif()
    endif()
    set(LUMORA_QT_MAJOR ${_lumora_qt})
else()
    set(LUMORA_QT_MAJOR ${LUMORA_QT})
endif()
message(STATUS "Lumora: building the interface against Qt ${LUMORA_QT_MAJOR}")

set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
find_package(Qt${LUMORA_QT_MAJOR} REQUIRED COMPONENTS Core Gui Widgets Svg LinguistTools)
set(LUMORA_QT_LIBS Qt${LUMORA_QT_MAJOR}::Core Qt${LUMORA_QT_MAJOR}::Gui
    Qt${LUMORA_QT_MAJOR}::Widgets Qt${LUMORA_QT_MAJOR}::Svg)
