# Every library the program stands on, named once. Reasons are in docs/DEPENDENCIES.md,
# Debian package names in scripts/setup.sh.
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Network DBus)
find_package(nlohmann_json 3.11 REQUIRED)
find_package(CLI11 2.1 REQUIRED)
find_package(Threads REQUIRED)

find_package(PkgConfig REQUIRED)
if(POINTLOOM_DESKTOP)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets OpenGLWidgets Svg)
  pkg_check_modules(MPV REQUIRED IMPORTED_TARGET mpv>=2)
endif()
pkg_check_modules(FFMPEG REQUIRED IMPORTED_TARGET
  libavformat>=59 libavcodec>=59 libavfilter>=8 libavutil>=57 libswscale>=6 libswresample>=4)

pkg_check_modules(SODIUM REQUIRED IMPORTED_TARGET libsodium>=1.0.18)
find_package(Qt6Keychain 0.13 REQUIRED)
if(POINTLOOM_LICENCE_SERVER)
  pkg_check_modules(SQLITE REQUIRED IMPORTED_TARGET sqlite3>=3.34)
endif()

if(POINTLOOM_TESTS)
  find_package(GTest REQUIRED)
  if(POINTLOOM_DESKTOP)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
  endif()
endif()
if(POINTLOOM_BENCHMARKS)
  find_package(benchmark REQUIRED)
endif()
