# Two Debian packages: `pointloom-cli`, which needs no desktop, and `pointloom`, which needs the former for the
# information dictionary. scripts/package.sh makes them.
include(GNUInstallDirs)

set(generated ${CMAKE_BINARY_DIR}/packaging)
file(MAKE_DIRECTORY ${generated})

# Written by the program itself.
set(program $<TARGET_FILE:pointloom-cli>)
set(shell_files ${generated}/pointloom-cli.1.gz ${generated}/pointloom-cli.bash ${generated}/_pointloom-cli
  ${generated}/pointloom-cli.fish)
add_custom_command(
  OUTPUT ${shell_files}
  COMMAND ${program} manual > ${generated}/pointloom-cli.1
  COMMAND gzip -9nf ${generated}/pointloom-cli.1
  COMMAND ${program} completion bash > ${generated}/pointloom-cli.bash
  COMMAND ${program} completion zsh > ${generated}/_pointloom-cli
  COMMAND ${program} completion fish > ${generated}/pointloom-cli.fish
  DEPENDS pointloom-cli VERBATIM)
add_custom_target(shell_files ALL DEPENDS ${shell_files})

# The changelog, as Debian and as software centres read it.
set(application org.pointloom.Pointloom)
set(desktop ${PROJECT_SOURCE_DIR}/packaging/desktop)
add_custom_command(
  OUTPUT ${generated}/${application}.metainfo.xml ${generated}/changelog.gz
  COMMAND ${CMAKE_COMMAND} -DCHANGELOG=${PROJECT_SOURCE_DIR}/CHANGELOG.md
    -DPATTERN=${desktop}/${application}.metainfo.xml.in -DMETAINFO=${generated}/${application}.metainfo.xml
    -DDEBIAN=${generated}/changelog -P ${PROJECT_SOURCE_DIR}/packaging/ReleaseNotes.cmake
  COMMAND gzip -9nf ${generated}/changelog
  DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${desktop}/${application}.metainfo.xml.in packaging/ReleaseNotes.cmake VERBATIM)
add_custom_target(release_notes ALL DEPENDS ${generated}/${application}.metainfo.xml ${generated}/changelog.gz)

install(TARGETS pointloom-cli RUNTIME COMPONENT cli)
install(FILES ${CMAKE_BINARY_DIR}/Info.json DESTINATION ${CMAKE_INSTALL_DATADIR}/pointloom COMPONENT cli)
install(FILES ${generated}/pointloom-cli.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT cli)
install(FILES ${generated}/pointloom-cli.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
  RENAME pointloom-cli COMPONENT cli)
install(FILES ${generated}/_pointloom-cli DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT cli)
install(FILES ${generated}/pointloom-cli.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT cli)

if(POINTLOOM_DESKTOP)
  add_custom_command(
    OUTPUT ${generated}/pointloom.1.gz
    COMMAND gzip -9nc ${desktop}/pointloom.1 > ${generated}/pointloom.1.gz
    DEPENDS ${desktop}/pointloom.1 VERBATIM)
  add_custom_target(manual_pages ALL DEPENDS ${generated}/pointloom.1.gz)

  install(TARGETS pointloom RUNTIME COMPONENT desktop)
  install(FILES ${desktop}/${application}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT desktop)
  install(FILES ${desktop}/${application}.mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
    RENAME ${application}.xml COMPONENT desktop)
  install(FILES ${generated}/${application}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT desktop)
  install(FILES ${generated}/pointloom.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT desktop)
  set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
  install(FILES ${desktop}/pointloom.svg DESTINATION ${icons}/scalable/apps RENAME ${application}.svg COMPONENT desktop)
  install(FILES ${desktop}/pointloom-document.svg DESTINATION ${icons}/scalable/mimetypes
    RENAME application-x-pointloom-project.svg COMPONENT desktop)
  # Menus that cannot draw SVG take the sizes.
  foreach(size 16 24 32 48 64 128 256)
    add_custom_command(
      OUTPUT ${generated}/app-${size}.png ${generated}/document-${size}.png
      COMMAND icon-sizes ${desktop}/pointloom.svg ${generated}/app-${size}.png ${size}
      COMMAND icon-sizes ${desktop}/pointloom-document.svg ${generated}/document-${size}.png ${size}
      DEPENDS icon-sizes ${desktop}/pointloom.svg ${desktop}/pointloom-document.svg VERBATIM)
    list(APPEND icon_files ${generated}/app-${size}.png)
    install(FILES ${generated}/app-${size}.png DESTINATION ${icons}/${size}x${size}/apps
      RENAME ${application}.png COMPONENT desktop)
    install(FILES ${generated}/document-${size}.png DESTINATION ${icons}/${size}x${size}/mimetypes
      RENAME application-x-pointloom-project.png COMPONENT desktop)
  endforeach()
  add_custom_target(icon_files ALL DEPENDS ${icon_files})
endif()

# What Debian's policy asks of every package. Times come from SOURCE_DATE_EPOCH, so that two builds agree.
foreach(component cli desktop)
  set(name pointloom)
  if(component STREQUAL "cli")
    set(name pointloom-cli)
  endif()
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
  install(FILES ${generated}/changelog.gz DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "The Pointloom developers")
set(CPACK_PACKAGE_CONTACT "The Pointloom developers <developers@pointloom.example>")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://pointloom.example/")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL cli desktop)
if(NOT POINTLOOM_DESKTOP)
  set(CPACK_COMPONENTS_ALL cli)
endif()
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_CLI_PACKAGE_NAME pointloom-cli)
set(CPACK_COMPONENT_CLI_DESCRIPTION "scoreboards for match videos, from the command line
Burns an animated scoreboard into the video of a match: tennis, padel,
badminton, volleyball, table tennis, squash or pickleball. Makes projects from
tables of scores, exports them and shows single frames, without a desktop.")
set(CPACK_DEBIAN_DESKTOP_PACKAGE_NAME pointloom)
set(CPACK_COMPONENT_DESKTOP_DESCRIPTION "scoreboards for match videos
Burns an animated scoreboard into the video of a match: tennis, padel,
badminton, volleyball, table tennis, squash or pickleball. Pick one of thirty
scoreboards, put score markers on the timeline while the clip plays, and
export a video that carries the right score in every frame.")
# Fonts are opened by file, so no library names them.
set(CPACK_DEBIAN_CLI_PACKAGE_DEPENDS "fonts-urw-base35 | fonts-liberation, fonts-noto-color-emoji")
set(CPACK_DEBIAN_CLI_PACKAGE_RECOMMENDS "fonts-dejavu-core")
set(CPACK_DEBIAN_DESKTOP_PACKAGE_DEPENDS "pointloom-cli (= ${PROJECT_VERSION}), hicolor-icon-theme")
set(CPACK_DEBIAN_DESKTOP_PACKAGE_RECOMMENDS "qt6-translations-l10n")
include(CPack)
